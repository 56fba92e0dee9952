// The document, what can be done with it as a whole, and what was just done.

import { isUnsaved, redoStep, undoStep } from '../app/actions';
import { compareWith, pick, pickPlain } from '../app/files';
import { copyLink, save, saveEvents, savePng, saveSvg } from '../app/save';
import { set, type State } from '../app/state';

function compareOther(): void {
  pickPlain(false, ([file]) => {
    if (file) void compareWith(file);
  });
}

export function Bar({ state }: { state: State }) {
  const { history, fileName, showBefore, before } = state;
  const unsaved = isUnsaved();
  return (
    <header class="bar">
      <h1>Zone studio</h1>
      <span class="file" title={unsaved ? 'Not saved yet; kept in this browser meanwhile' : 'Saved'}>
        {fileName}
        {unsaved ? ' •' : ''}
        <span class="unseen">{unsaved ? ', not saved' : ', saved'}</span>
      </span>
      <button type="button" onClick={() => void pick()} title="Documents, frames, recordings and tracks (Ctrl+O)">
        Open
      </button>
      <button type="button" onClick={() => void save()} title="Save the document (Ctrl+S)">
        Save
      </button>
      <button
        type="button"
        onClick={undoStep}
        disabled={history.done.length === 0}
        title={`Undo ${history.done.at(-1)?.label ?? ''} (Ctrl+Z)`}
      >
        Undo
      </button>
      <button
        type="button"
        onClick={redoStep}
        disabled={history.undone.length === 0}
        title={`Redo ${history.undone.at(-1)?.label ?? ''} (Ctrl+Y)`}
      >
        Redo
      </button>
      <details class="menu">
        <summary>More</summary>
        <div
          role="group"
          aria-label="More"
          onClick={(event) => event.currentTarget.closest('details')?.removeAttribute('open')}
        >
          <button type="button" onClick={() => void save(true)}>
            Save as another file
          </button>
          <button type="button" onClick={() => void saveSvg()}>
            Plan as SVG
          </button>
          <button type="button" onClick={() => void savePng()}>
            Plan as PNG
          </button>
          <button type="button" onClick={() => void saveEvents()}>
            Events as CSV
          </button>
          <button type="button" onClick={() => void copyLink()}>
            Link that holds the document
          </button>
          <button type="button" onClick={compareOther}>
            Compare with another document
          </button>
          <button
            type="button"
            onClick={() => set({ before: { label: 'this point', text: history.text, session: null } })}
          >
            Compare with the document as it is now
          </button>
        </div>
      </details>
      <label class="check">
        <input
          type="checkbox"
          checked={showBefore}
          onChange={(event) => set({ showBefore: event.currentTarget.checked })}
        />{' '}
        dashed: {before.label}
      </label>
      <span class="gap" />
      <button type="button" onClick={() => set({ showHelp: true })} title="Keys (?)">
        Keys
      </button>
    </header>
  );
}
