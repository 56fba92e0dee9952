// Opening what is dropped or picked: documents, frames, recordings, tracks. Nothing leaves the computer.

import type { Engine, Recording, Session, Source } from '../../engine/types';
import { stepped } from '../edit/history';
import { NO_MARKS } from '../edit/marks';
import { read } from '../edit/model';
import { JsonFault } from '../text/json';
import { say, sayError } from './actions';
import { type Kind, kindOf } from './kinds';
import { evaluated, forgetScenes } from './follow';
import { leaveHostDocument } from './host';
import { pause } from './play';
import { fitZones } from './look';
import { asOpened, get, set, textOf } from './state';

export interface Opened {
  readonly file: File;
  /** Writes the same file again. */
  readonly handle?: FileSystemFileHandle;
}

const RECORDING = /\.(mcap|bag)$/i;

const byName = new Intl.Collator('en', { numeric: true });

/** A document takes the place of the one that is open, as one step that can be undone. */
export function openDocument(text: string, fileName: string, isSaved: boolean): void {
  const { history } = get();
  try {
    read(text);
  } catch (error) {
    if (!(error instanceof JsonFault)) throw error;
    set({ tab: 'text' });
  }
  set({
    history: stepped(history, `Open ${fileName}`, text),
    live: null,
    fileName,
    ...(isSaved ? { savedText: text } : {}),
    selection: [],
    vertex: -1,
    sketch: [],
    marks: NO_MARKS,
    before: asOpened(text),
    target: { kind: 'field', field: 0 },
    activeField: get().doc.fields[0]?.index ?? 0,
  });
  const { doc, activeField } = get();
  if (!doc.fields.some((field) => field.index === activeField)) set({ activeField: doc.fields[0]?.index ?? 0 });
  fitZones();
}

const LARGEST_READ = 8 << 20;

async function documentText(file: File): Promise<string> {
  if (file.size > LARGEST_READ)
    throw new Error(`${file.name} has ${file.size} bytes; a document has fewer than 102400.`);
  const bytes = await file.arrayBuffer();
  try {
    return new TextDecoder('utf-8', { fatal: true, ignoreBOM: true }).decode(bytes);
  } catch {
    throw new Error(`${file.name} is not UTF-8 text.`);
  }
}

let handle: FileSystemFileHandle | null = null;
let writtenAt = 0;

export function documentHandle(): { handle: FileSystemFileHandle | null; writtenAt: number } {
  return { handle, writtenAt };
}
export function setDocumentHandle(to: FileSystemFileHandle | null, at: number): void {
  [handle, writtenAt] = [to, at];
  leaveHostDocument();
}

/** What belongs together. */
export interface Sources {
  readonly clouds: readonly Source[];
  readonly tracks: Source | null;
  readonly tracksFormat: 'csv' | 'kitti';
  /** A list of frames and their stamps. */
  readonly stamps: Source | null;
}

/** Tells frames, tracks and lists apart. Throws where there is more of something than can be taken. */
export async function sourcesOf(files: readonly Source[]): Promise<Sources> {
  const kinds = await Promise.all(files.map(kindOf));
  const of = (...wanted: Kind[]): Source[] => files.filter((_, i) => wanted.includes(kinds[i]!));
  const [tracks, stamps] = [of('tracks', 'labels'), of('stamps')];
  if (tracks.length > 1) throw new Error('One file of tracks at a time.');
  if (stamps.length > 1) throw new Error('One list of stamps at a time.');
  return {
    clouds: of('points').sort((a, b) => byName.compare(a.name, b.name)),
    tracks: tracks[0] ?? null,
    tracksFormat: kinds.includes('labels') ? 'kitti' : 'csv',
    stamps: stamps[0] ?? null,
  };
}

let clouds: readonly Source[] = [];

function isFrame({ clouds: all, tracks, stamps }: Sources): boolean {
  return all.length === 1 && !tracks && !stamps && !RECORDING.test(all[0]!.name);
}

/** Gives what was opened, in words. Throws what the engine refuses; the work before is still there then. */
export async function openSources(given: Sources, name: string): Promise<string> {
  const { engine } = get();
  if (!engine) throw new Error('The engine is not ready yet.');
  const sources = { ...given, clouds: given.clouds.length > 0 ? given.clouds : clouds };
  if (isFrame(sources)) {
    const scene = await engine.openFrame(sources.clouds[0]!);
    forget();
    clouds = sources.clouds;
    set({
      scene,
      counts: null,
      sceneName: name,
      recording: null,
      session: null,
      objects: [],
      before: { ...get().before, session: null },
    });
    return scene.positions.length === 0
      ? `${name} has no finite point: there is nothing to see.`
      : `${name}: ${scene.points} points, ${scene.noReturns} no returns.`;
  }
  const { tracks, stamps, tracksFormat } = sources;
  const recording = await engine.openRecording(
    {
      ...(sources.clouds.length > 0 ? { clouds: sources.clouds } : {}),
      ...(tracks ? { tracks } : {}),
      ...(stamps ? { stamps } : {}),
    },
    tracks ? { tracksFormat } : {},
  );
  const { session, isOfDocument } = await firstSession(engine, recording);
  forget();
  clouds = sources.clouds;
  const { before } = get();
  set({
    recording,
    session,
    recordingName: name,
    sceneName: name,
    scene: null,
    counts: null,
    objects: [],
    moment: 0,
    explanation: null,
    before: { ...before, session: null },
  });
  return lengthText(name, session) + (isOfDocument ? '' : ' It is evaluated when the document has no error any more.');
}

function lengthText(name: string, { moments, stamps }: Session): string {
  const seconds = moments > 0 ? Number(stamps[moments - 1]! - stamps[0]!) / 1e9 : 0;
  return `${name}: ${moments} ${moments === 1 ? 'moment' : 'moments'}, ${seconds.toFixed(2)} s.`;
}

// A document must hold something; this holds what nobody sees.
const NO_ZONES =
  '{"ZoneDetector": {"ExclusionZone": {"name": "None", "zMin": 0, "zMax": 0, "shape": "sector", ' +
  '"Sector": {"minAngle": 0, "maxAngle": 1, "radius": 0.001}}}}';

// Evaluated once before it takes the place of what is there, so that what cannot be read changes nothing.
// A document with errors lets it be looked at all the same.
async function firstSession(
  engine: Engine,
  recording: Recording,
): Promise<{ readonly session: Session; readonly isOfDocument: boolean }> {
  try {
    const whole = await evaluated(recording, textOf());
    if (whole) return { session: whole, isOfDocument: true };
    const bare = await evaluated(recording, NO_ZONES);
    if (bare) return { session: { ...bare, events: [] }, isOfDocument: false };
    throw new Error('The recording cannot be evaluated.');
  } catch (error) {
    void engine.closeRecording(recording.id);
    throw error;
  } finally {
    set({ progress: '' });
  }
}

function forget(): void {
  pause();
  forgetScenes();
  const { engine, recording } = get();
  if (recording) void engine?.closeRecording(recording.id);
}

/** Whatever it is, in any mixture. */
export async function open(files: readonly Opened[]): Promise<void> {
  try {
    const documents = files.filter(({ file }) => /\.json$/i.test(file.name));
    const others = files.filter((one) => !documents.includes(one)).map(({ file }) => file);
    if (documents.length > 1) throw new Error('One document at a time: drop the other one on "Compare".');
    const sources = await sourcesOf(others);
    const [first] = documents;
    if (first) {
      openDocument(await documentText(first.file), first.file.name, true);
      setDocumentHandle(first.handle ?? null, first.file.lastModified);
      say(`${first.file.name} is open.`);
    }
    const { clouds: frames, stamps, tracks } = sources;
    const name = (frames[0] ?? stamps ?? tracks)?.name ?? '';
    if (name) say(await openSources(sources, frames.length > 1 ? `${name} and ${frames.length - 1} more` : name));
  } catch (error) {
    sayError(error);
  }
}

/** Another document beneath this one, dashed, and its events beside these. */
export async function compareWith(file: File): Promise<void> {
  try {
    const text = await documentText(file);
    read(text);
    set({ before: { label: file.name, text, session: null }, showBefore: true });
    say(`Compared with ${file.name}: it is drawn dashed.`);
  } catch (error) {
    sayError(error instanceof JsonFault ? new Error(`${file.name} is not JSON: ${error.message}.`) : error);
  }
}

/** Files of the computer, by the browser's own dialogue. */
export async function pick(): Promise<void> {
  const picker = (window as { showOpenFilePicker?: (options: object) => Promise<FileSystemFileHandle[]> })
    .showOpenFilePicker;
  if (picker) {
    const handles = await picker({ multiple: true }).catch(() => []);
    if (handles.length > 0)
      await open(await Promise.all(handles.map(async (one) => ({ file: await one.getFile(), handle: one }))));
    return;
  }
  pickPlain(true, (files) => void open(files.map((file) => ({ file }))));
}

export function pickPlain(isMany: boolean, take: (files: readonly File[]) => void): void {
  const input = document.createElement('input');
  input.type = 'file';
  input.multiple = isMany;
  input.addEventListener('change', () => take([...(input.files ?? [])]));
  input.click();
}

/** What was dropped; with handles where the browser gives them. */
export async function dropped(data: DataTransfer): Promise<void> {
  type Item = DataTransferItem & { getAsFileSystemHandle?: () => Promise<FileSystemHandle | null> };
  const found = [...data.items]
    .filter((one) => one.kind === 'file')
    .map((one: Item) => ({ file: one.getAsFile(), handle: one.getAsFileSystemHandle?.() }));
  const files: Opened[] = [];
  for (const { file, handle: later } of found) {
    const given = await later?.catch(() => null);
    if (given?.kind === 'directory') say('A folder cannot be dropped; drop the files in it.', true);
    else if (file) files.push(given ? { file, handle: given as FileSystemFileHandle } : { file });
  }
  if (files.length > 0) await open(files);
}
