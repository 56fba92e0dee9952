import { render } from 'preact';
import { openEngine } from '../engine/engine';
import { App } from './App';
import { say, sayError } from './app/actions';
import { keepWork, restored } from './app/autosave';
import { EXAMPLE_NAME, exampleDocument, exampleSources } from './app/example';
import { openSources } from './app/files';
import { followDocument } from './app/follow';
import { obeyKeys } from './app/keys';
import { kindOf } from './app/kinds';
import { textIn } from './app/link';
import { type Host, hostOfPage } from './app/host';
import { fitZones } from './app/look';
import { asOpened, get, set } from './app/state';
import { begin, stepped } from './edit/history';
import './styles.css';

interface First {
  readonly text: string;
  readonly savedText: string;
  readonly fileName: string;
  readonly note: string;
}

// What a link holds, else what the user named, else work that was not saved, else the example.
async function firstDocument(host: Host | null): Promise<First> {
  const linked = await textIn(location.hash).catch((error: unknown) => {
    sayError(error);
    return null;
  });
  if (linked !== null)
    return { text: linked, savedText: '', fileName: 'linked.json', note: 'This document came with the link.' };
  const kept = await restored();
  const named = host?.document;
  if (named && (kept?.fileName !== named.name || kept.savedText !== named.text))
    return { text: named.text, savedText: named.text, fileName: named.name, note: '' };
  if (kept)
    return {
      ...kept,
      note: `Work on ${kept.fileName} that was not saved is here again. Undo leads back to what was saved.`,
    };
  const text = await exampleDocument();
  return { text, savedText: text, fileName: EXAMPLE_NAME, note: '' };
}

// Gives whether the page may be kept for later: the command's has another address each time.
async function start(): Promise<boolean> {
  const host = await hostOfPage();
  const first = await firstDocument(host);
  const { text, savedText, fileName, note } = first;
  // Work that was restored is one step after what was saved, so that it can be undone.
  set({
    history: begin(savedText && note ? savedText : text),
    savedText,
    fileName,
    before: asOpened(savedText || text),
  });
  set({ history: stepped(get().history, 'Work that was not saved', text) });
  set({ activeField: get().doc.fields[0]?.index ?? 0 });
  fitZones();
  if (note) say(note);
  keepWork();
  followDocument();
  const engine = await openEngine();
  set({ engine, engineVersion: `engine ${(await engine.version()).version}` });
  if (host && (host.frames.length > 0 || host.tracks)) {
    const names = [...host.frames, ...(host.tracks ? [host.tracks] : [])].map((source) => source.name);
    const isKitti = host.tracks !== null && (await kindOf(host.tracks)) === 'labels';
    await openSources(
      { clouds: host.frames, tracks: host.tracks, tracksFormat: isKitti ? 'kitti' : 'csv', stamps: null },
      names.length > 1 ? `${names[0]} and ${names.length - 1} more` : names[0]!,
    );
  }
  if (host?.document || fileName !== EXAMPLE_NAME) return host === null;
  const { clouds, tracks } = await exampleSources();
  if (get().recording === null && get().scene === null)
    await openSources({ clouds, tracks, tracksFormat: 'csv', stamps: null }, 'The crossing');
  return host === null;
}

render(<App />, document.getElementById('page')!);
obeyKeys();
start()
  .then((isKept) => {
    if (isKept && 'serviceWorker' in navigator && import.meta.env.PROD)
      return navigator.serviceWorker.register(new URL('sw.js', document.baseURI)).catch(() => undefined);
  })
  .catch(sayError);
