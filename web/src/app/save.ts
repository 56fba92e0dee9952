// Keeping work: the document into its file, pictures and tables as downloads, a link that holds the document.

import { bytesOf, LARGEST_DOCUMENT } from '../edit/limits';
import { say, sayError } from './actions';
import { documentHandle, setDocumentHandle } from './files';
import { hostDocument, saveToHost } from './host';
import { linkOf } from './link';
import { get, set, textOf } from './state';

function download(name: string, blob: Blob): void {
  const link = document.createElement('a');
  link.href = URL.createObjectURL(blob);
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10000);
}

type Picker = (options: object) => Promise<FileSystemFileHandle>;

// The browser writes beside the file and puts the whole in its place at the end.
async function write(handle: FileSystemFileHandle, text: string): Promise<void> {
  const file = await handle.createWritable();
  try {
    await file.write(text);
  } catch (error) {
    await file.abort();
    throw error;
  }
  await file.close();
  setDocumentHandle(handle, (await handle.getFile()).lastModified);
}

async function handleToWrite(isAs: boolean): Promise<FileSystemFileHandle | null> {
  const { handle, writtenAt } = documentHandle();
  if (handle && !isAs) {
    const now = (await handle.getFile()).lastModified;
    if (
      now === writtenAt ||
      confirm(`${handle.name} was changed by another program since it was opened. Write over it?`)
    )
      return handle;
    throw new Error('Not saved: the file was changed by another program.');
  }
  const picker = (window as { showSaveFilePicker?: Picker }).showSaveFilePicker;
  return picker ? picker({ suggestedName: get().fileName }) : null;
}

export async function save(isAs = false): Promise<void> {
  const text = textOf();
  if (bytesOf(text) > LARGEST_DOCUMENT)
    return say(`Not saved: a document has at most ${LARGEST_DOCUMENT} bytes; this one has ${bytesOf(text)}.`, true);
  try {
    const hosted = isAs ? null : hostDocument();
    if (hosted !== null) {
      await saveToHost(text);
      set({ savedText: text });
      return say(`${hosted} is saved.`);
    }
    const handle = await handleToWrite(isAs);
    if (handle) await write(handle, text);
    else download(get().fileName, new Blob([text], { type: 'application/json' }));
    const fileName = handle?.name ?? get().fileName;
    set({ savedText: text, fileName });
    say(handle ? `${fileName} is saved.` : `${fileName} was given to the browser as a download.`);
  } catch (error) {
    if (!(error instanceof DOMException && error.name === 'AbortError')) sayError(error);
  }
}

function stem(): string {
  return get().fileName.replace(/\.json$/i, '');
}

async function planSvg(): Promise<string> {
  const { engine, scene, fileName } = get();
  if (!engine) throw new Error('The engine is not ready yet.');
  return engine.planSvg(textOf(), { title: fileName, ...(scene ? { scene: scene.id } : {}) });
}

/** The picture that the command draws. */
export async function saveSvg(): Promise<void> {
  await planSvg().then((svg) => download(`${stem()}.svg`, new Blob([svg], { type: 'image/svg+xml' })), sayError);
}

export async function savePng(): Promise<void> {
  try {
    const url = URL.createObjectURL(new Blob([await planSvg()], { type: 'image/svg+xml' }));
    const image = new Image();
    image.src = url;
    await image.decode();
    const canvas = document.createElement('canvas');
    [canvas.width, canvas.height] = [2 * image.width, 2 * image.height];
    canvas.getContext('2d')!.drawImage(image, 0, 0, canvas.width, canvas.height);
    URL.revokeObjectURL(url);
    const blob = await new Promise<Blob | null>((done) => canvas.toBlob(done, 'image/png'));
    if (!blob) throw new Error('The picture cannot be made.');
    download(`${stem()}.png`, blob);
  } catch (error) {
    sayError(error);
  }
}

export async function saveEvents(): Promise<void> {
  const { engine, session } = get();
  if (!engine || !session) return say('Events come with a recording.', true);
  await engine
    .eventTable(session.id)
    .then((csv) => download(`${stem()}-events.csv`, new Blob([csv], { type: 'text/csv' })), sayError);
}

export async function copyLink(): Promise<void> {
  try {
    const link = await linkOf(textOf());
    history.replaceState(null, '', link);
    await navigator.clipboard?.writeText(location.href).catch(() => undefined);
    say('The link in the address bar holds the document; it is copied where the browser allows it.');
  } catch (error) {
    sayError(error);
  }
}
