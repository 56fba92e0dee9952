// The document as text, always in step with the picture.

import { useRef } from 'preact/hooks';
import { typed } from '../app/actions';
import { type State, textOf } from '../app/state';
import { lineAndColumn } from '../text/json';

const ONE_GO = 1500; // milliseconds between two keys

export function TextPanel({ state }: { state: State }) {
  const lastTyped = useRef(0);
  const text = textOf(state);
  const place = state.fault ? lineAndColumn(text, state.fault.at) : null;
  return (
    <div class="textpanel">
      {place && state.fault ? (
        <p class="note wrong" role="status">
          Not JSON, line {place.line}, column {place.column}: {state.fault.message}. The picture shows the last text
          that was.
        </p>
      ) : null}
      <textarea
        class="document"
        aria-label="Document as text"
        spellcheck={false}
        autocomplete="off"
        wrap="off"
        value={text}
        onInput={(event) => {
          const now = Date.now();
          typed(event.currentTarget.value, now - lastTyped.current < ONE_GO);
          lastTyped.current = now;
        }}
        onBlur={() => (lastTyped.current = 0)}
      />
    </div>
  );
}
