// The options of the detector as sliders; while one is dragged the recording is evaluated again.

import { useRef } from 'preact/hooks';
import { beginDrag, type Drag, dragTo, edit, endDrag } from '../app/actions';
import type { State } from '../app/state';
import { withOption } from '../edit/values';
import { NumberField } from './NumberField';

type Key = 'sensitivity' | 'debounceTimeMs';

function Slider({
  name,
  label,
  value,
  least,
  most,
  step,
  text,
}: {
  name: Key;
  label: string;
  value: number;
  least: number;
  most: number;
  step: number;
  text: string;
}) {
  const drag = useRef<Drag | null>(null);
  return (
    <label class="slider">
      <span>{label}</span>
      <input
        type="range"
        min={least}
        max={most}
        step={step}
        value={value}
        aria-label={label}
        aria-valuetext={text}
        onInput={(event) => {
          const to = Number(event.currentTarget.value);
          drag.current ??= beginDrag(label);
          if (drag.current) dragTo(drag.current, (doc) => withOption(doc, name, to));
        }}
        onChange={() => {
          if (drag.current) endDrag(drag.current);
          drag.current = null;
        }}
      />
      <output>{text}</output>
    </label>
  );
}

export function OptionFields({ state }: { state: State }) {
  const { sensitivity, debounceTimeMs, triggerActiveLevel } = state.doc.options;
  const least = 11 - sensitivity;
  return (
    <section class="group options" aria-label="Detector">
      <header>
        <h2>Detector</h2>
      </header>
      <Slider
        name="sensitivity"
        label="Sensitivity"
        value={sensitivity}
        least={1}
        most={10}
        step={1}
        text={`${sensitivity}: from ${least} ${least === 1 ? 'point' : 'points'} on`}
      />
      <Slider
        name="debounceTimeMs"
        label="Debounce"
        value={Math.min(2000, debounceTimeMs)}
        least={0}
        most={2000}
        step={50}
        text={`${debounceTimeMs} ms`}
      />
      <NumberField
        label="Debounce, exactly"
        value={debounceTimeMs}
        unit="ms"
        onCommit={(ms) => edit('Debounce', (doc) => withOption(doc, 'debounceTimeMs', Math.round(ms)))}
      />
      <label class="choice">
        <span>An occupied zone drives its output</span>
        <select
          value={triggerActiveLevel}
          onChange={(event) =>
            edit('Active level', (doc) => withOption(doc, 'triggerActiveLevel', event.currentTarget.value))
          }
        >
          <option value="high">high</option>
          <option value="low">low</option>
        </select>
      </label>
    </section>
  );
}
