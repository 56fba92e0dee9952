// Everything that the document holds, by field, with counts; what is not wanted in view is hidden here.

import { edit } from '../app/actions';
import { objectsIn, pointsIn } from '../app/counts';
import { set, type State } from '../app/state';
import { MOST_EXCLUSIONS, MOST_FIELDS, MOST_ZONES } from '../edit/limits';
import { toggled } from '../edit/marks';
import type { Field, Item } from '../edit/model';
import { renamed } from '../edit/values';
import { EXCLUSION, fieldColour, LINE } from '../scene/colours';
import { NameField } from './NameField';
import { OptionFields } from './OptionFields';
import { Values } from './Values';

function Row({ item, state, colour }: { item: Item; state: State; colour: string }) {
  const { marks } = state;
  const isSelected = state.selection.includes(item.id);
  const [isHidden, isLocked] = [marks.hidden.has(item.id), marks.locked.has(item.id)];
  const points = item.kind === 'zone' ? pointsIn(state, item) : null;
  const objects = item.kind === 'zone' ? objectsIn(state, item) : 0;
  const select = (event: MouseEvent): void => {
    const { selection } = state;
    const isMore = event.shiftKey || event.ctrlKey || event.metaKey;
    set({
      selection: !isMore ? [item.id] : isSelected ? selection.filter((id) => id !== item.id) : [...selection, item.id],
      vertex: -1,
    });
  };
  return (
    <li class={isSelected ? 'chosen' : ''}>
      <button type="button" class="pick" aria-pressed={isSelected} onClick={select}>
        <span class={`swatch ${item.kind}`} style={{ '--own': colour }} aria-hidden="true" />
        <span class="what">{item.name || '(no name)'}</span>
        <span class="count">
          {points === null ? '' : `${points} pt`}
          {objects > 0 ? `, ${objects} in` : ''}
        </span>
      </button>
      <button
        type="button"
        class="mark"
        aria-pressed={isHidden}
        aria-label={`Hide ${item.name}`}
        title={isHidden ? 'Hidden; show it' : 'Hide it'}
        onClick={() => set({ marks: { ...marks, hidden: toggled(marks.hidden, [item.id]) } })}
      >
        {isHidden ? '◌' : '●'}
      </button>
      <button
        type="button"
        class="mark"
        aria-pressed={isLocked}
        aria-label={`Lock ${item.name}`}
        title={isLocked ? 'Locked; free it' : 'Lock it'}
        onClick={() => set({ marks: { ...marks, locked: toggled(marks.locked, [item.id]) } })}
      >
        {isLocked ? '▣' : '▢'}
      </button>
    </li>
  );
}

function FieldRows({ field, state }: { field: Field; state: State }) {
  const isActive = field.index === state.activeField;
  return (
    <section class="group" aria-label={`Field ${field.index}`}>
      <header>
        <NameField
          label={`Field ${field.index}`}
          name={field.name}
          isLimited
          onCommit={(name) =>
            edit('Rename a field', (doc) =>
              renamed(
                doc,
                doc.fields.find((one) => one.id === field.id)!,
                name,
              ),
            )
          }
        />
        <span class="tally">
          {field.zones.length} of {MOST_ZONES}
        </span>
        <label class="radio">
          <input type="radio" name="active" checked={isActive} onChange={() => set({ activeField: field.index })} />{' '}
          active
        </label>
      </header>
      <ul>
        {field.zones.map((zone) => (
          <Row key={zone.id} item={zone} state={state} colour={fieldColour(field.index)} />
        ))}
      </ul>
    </section>
  );
}

export function Zones({ state }: { state: State }) {
  const { doc } = state;
  return (
    <div class="zones">
      <Values state={state} />
      <p class="tally">
        {doc.fields.length} of {MOST_FIELDS} fields
      </p>
      {doc.fields.map((field) => (
        <FieldRows key={field.id} field={field} state={state} />
      ))}
      <section class="group" aria-label="Exclusion zones">
        <header>
          <h2>Exclusion zones</h2>
          <span class="tally">
            {doc.exclusions.length} of {MOST_EXCLUSIONS}
          </span>
        </header>
        <ul>
          {doc.exclusions.map((zone) => (
            <Row key={zone.id} item={zone} state={state} colour={EXCLUSION} />
          ))}
        </ul>
      </section>
      <section class="group" aria-label="Counter lines">
        <header>
          <h2>Counter lines</h2>
        </header>
        <ul>
          {doc.lines.map((line) => (
            <Row key={line.id} item={line} state={state} colour={LINE} />
          ))}
        </ul>
      </section>
      <OptionFields state={state} />
    </div>
  );
}
