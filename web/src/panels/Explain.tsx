// Why a zone, a line or a track is as it is at this moment, in the engine's words.

import { explain } from '../app/explain';
import type { State } from '../app/state';

export function Explain({ state }: { state: State }) {
  const { doc, objects, session, explanation, explained } = state;
  if (!session) return <p class="note">There is nothing to explain without a recording.</p>;
  return (
    <div class="explain">
      <div class="choices">
        <button type="button" onClick={() => void explain({ kind: 'zones' })}>
          All zones
        </button>
        {doc.lines.map((line) => (
          <button key={line.id} type="button" onClick={() => void explain({ kind: 'line', line: line.name })}>
            {line.name}
          </button>
        ))}
      </div>
      {doc.lines.length > 0 && objects.length > 0 ? (
        <details>
          <summary>One track at one line</summary>
          {doc.lines.map((line) => (
            <p key={line.id} class="choices">
              {line.name}:{' '}
              {objects.map((object) => (
                <button
                  key={object.id}
                  type="button"
                  aria-label={`Track ${object.id} at ${line.name}`}
                  onClick={() => void explain({ kind: 'track', line: line.name, track: object.id })}
                >
                  {object.id}
                </button>
              ))}
            </p>
          ))}
        </details>
      ) : null}
      {explanation ? <h2>{explained}</h2> : <p class="note">Choose what is to be explained.</p>}
      {explanation ? <pre tabindex={0}>{explanation.text}</pre> : null}
    </div>
  );
}
