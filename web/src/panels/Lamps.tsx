// The outputs of the active field at this moment.

import { lampsOf } from '../app/counts';
import { set, type State } from '../app/state';
import { fieldColour } from '../scene/colours';

export function Lamps({ state }: { state: State }) {
  const { doc, activeField } = state;
  return (
    <div class="lamps" role="group" aria-label="Outputs">
      <label>
        <span class="unseen">Active field</span>
        <select
          value={String(activeField)}
          onChange={(event) => set({ activeField: Number(event.currentTarget.value) })}
        >
          {doc.fields.map((field) => (
            <option key={field.index} value={String(field.index)}>{`Field ${field.index}: ${field.name}`}</option>
          ))}
        </select>
      </label>
      {lampsOf(state).map((lamp, i) => (
        <span
          key={i}
          class={`lamp ${lamp?.isOccupied ? 'on' : ''} ${lamp ? '' : 'none'}`}
          style={{ '--own': fieldColour(activeField) }}
        >
          <i aria-hidden="true" />
          {lamp
            ? `${lamp.name}: ${lamp.isOccupied ? 'occupied' : 'clear'}, ${lamp.isHigh ? 'high' : 'low'}`
            : `output ${i}: no zone`}
        </span>
      ))}
    </div>
  );
}
