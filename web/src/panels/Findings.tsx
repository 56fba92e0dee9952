// What the engine finds wrong or doubtful; each leads to its place.

import type { Finding } from '../../engine/types';
import { isChecked } from '../app/checked';
import { get, set, type State, textOf } from '../app/state';
import { ringOf } from '../edit/geometry';
import { itemAt } from '../edit/model';
import { boundsOf } from '../edit/moves';
import { placeOf } from '../text/json';
import { isPlaced } from '../scene/Shapes';

/** Selects the shape, brings it into the middle, and shows the place in the text where there is no shape. */
export function jumpTo(state: State, finding: Finding): void {
  const item = itemAt(state.doc, finding.path);
  if (item && isPlaced(item) && ringOf(item).length > 0) {
    const [low, high] = boundsOf([item]);
    set({
      selection: [item.id],
      vertex: -1,
      view: 'plan',
      camera: { ...get().camera, x: (low.x + high.x) / 2, y: (low.y + high.y) / 2 },
    });
    return;
  }
  set({ tab: 'text' });
  const at = placeOf(textOf(), finding.line, finding.column);
  setTimeout(() => {
    const area = document.querySelector<HTMLTextAreaElement>('textarea.document');
    area?.focus();
    area?.setSelectionRange(at, at + 1);
  }, 60);
}

export function Findings({ state }: { state: State }) {
  if (!state.engine || !state.checked) return <p class="note">The engine is not ready yet.</p>;
  const { findings, complaint } = state.checked;
  const isOld = !isChecked(state);
  return (
    <div class="findings" aria-busy={isOld}>
      {findings.length === 0 ? <p class="note">Nothing is wrong with this document.</p> : null}
      <ul>
        {findings.map((finding, i) => (
          <li key={i} class={finding.severity}>
            <button type="button" onClick={() => (isOld ? undefined : jumpTo(state, finding))}>
              <span class="severity">{finding.severity}</span>
              <span class="where">
                {finding.line}:{finding.column} {finding.path}
              </span>
              <span class="text">{finding.text}</span>
              {finding.excerpt ? <pre>{finding.excerpt}</pre> : null}
            </button>
          </li>
        ))}
      </ul>
      {complaint ? <p class="note">A host is told: {complaint}</p> : null}
    </div>
  );
}
