// Unsaved work survives a crash: each step is kept in the browser until it is saved.

import { get, type State, subscribe, textOf } from './state';

export interface Kept {
  readonly text: string;
  readonly savedText: string;
  readonly fileName: string;
}

const [BASE, STORE, KEY] = ['zone-studio', 'work', 'current'];

function opened(): Promise<IDBDatabase> {
  return new Promise((done, failed) => {
    const request = indexedDB.open(BASE, 1);
    request.onupgradeneeded = () => request.result.createObjectStore(STORE);
    request.onsuccess = () => done(request.result);
    request.onerror = () => failed(request.error);
  });
}

function asked<T>(request: IDBRequest<T>): Promise<T> {
  return new Promise((done, failed) => {
    request.onsuccess = () => done(request.result);
    request.onerror = () => failed(request.error);
  });
}

function isKept(value: unknown): value is Kept {
  const one = value as Partial<Kept> | undefined;
  return typeof one?.text === 'string' && typeof one.savedText === 'string' && typeof one.fileName === 'string';
}

/** The work that was not saved; null: there is none, or the browser keeps nothing. */
export async function restored(): Promise<Kept | null> {
  try {
    const base = await opened();
    const value: unknown = await asked(base.transaction(STORE).objectStore(STORE).get(KEY));
    base.close();
    return isKept(value) && value.text !== value.savedText ? value : null;
  } catch {
    return null;
  }
}

async function keep(kept: Kept): Promise<void> {
  const base = await opened();
  await asked(base.transaction(STORE, 'readwrite').objectStore(STORE).put(kept, KEY));
  base.close();
}

/** From now on. */
export function keepWork(): void {
  let last: Promise<void> = Promise.resolve();
  subscribe((now: State, before: State) => {
    if (now.history === before.history && now.savedText === before.savedText) return;
    const kept = { text: now.history.text, savedText: now.savedText, fileName: now.fileName };
    last = last.then(() => keep(kept)).catch(() => undefined);
  });
  window.addEventListener('beforeunload', (event) => {
    if (textOf() !== get().savedText) event.preventDefault();
  });
}
