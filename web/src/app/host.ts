// What `zone-detector studio` serves beside the page: the files that the user named, and the way back into the document.

import type { Source } from '../../engine/types';

interface Named {
  readonly name: string;
  readonly link: string;
  readonly size: number;
}

interface HostSession {
  readonly document: Named | null;
  readonly frames: readonly Named[];
  readonly tracks: Named | null;
}

export interface HostDocument {
  readonly text: string;
  readonly name: string;
}

export interface Host {
  /** Null: the user named none. */
  readonly document: HostDocument | null;
  readonly frames: readonly Source[];
  readonly tracks: Source | null;
}

// The server's links begin with its token; another host has no session to ask for.
function isServed(): boolean {
  return /^\/[0-9a-f]{32}\//.test(location.pathname) && location.hostname === '127.0.0.1';
}

let open: { readonly link: URL; readonly name: string; version: string } | null = null;

function linkTo(path: string): URL {
  return new URL(path, document.baseURI);
}

function sourceOf({ name, link, size }: Named): Source {
  return { name, size, link: linkTo(link).href };
}

/** Null: the page does not come from `zone-detector studio`. */
export async function hostOfPage(): Promise<Host | null> {
  if (!isServed()) return null;
  const answer = await fetch(linkTo('session.json'));
  if (!answer.ok) throw new Error('The files that were named cannot be asked for.');
  const session = (await answer.json()) as HostSession;
  return {
    document: session.document ? await read(session.document) : null,
    frames: session.frames.map(sourceOf),
    tracks: session.tracks ? sourceOf(session.tracks) : null,
  };
}

async function read(named: Named): Promise<HostDocument> {
  const answer = await fetch(linkTo(named.link));
  if (!answer.ok) throw new Error(`${named.name} cannot be read: ${await answer.text()}`);
  open = { link: linkTo(named.link), name: named.name, version: answer.headers.get('ETag') ?? '' };
  return { text: await answer.text(), name: named.name };
}

/** The name of the document that is saved through the server; null: it is not. */
export function hostDocument(): string | null {
  return open?.name ?? null;
}

/** Another document is open: what is saved next must not take the place of the one that was named. */
export function leaveHostDocument(): void {
  open = null;
}

/** Writes the document whole or not at all, and only over the version that was read. */
export async function saveToHost(text: string): Promise<void> {
  if (!open) throw new Error('Not saved: no document was named.');
  const answer = await fetch(open.link, { method: 'PUT', body: text, headers: { 'If-Match': open.version } });
  if (!answer.ok) throw new Error(`Not saved: ${(await answer.text()).trim()}.`);
  open.version = answer.headers.get('ETag') ?? '';
}
