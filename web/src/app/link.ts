// A document in the hash of a link: compressed, in letters that links may hold. It never reaches a server.

import { joined } from '../../engine/bytes';

const MOST = 8000;

async function through(
  bytes: Uint8Array<ArrayBuffer>,
  way: ReadableWritablePair<Uint8Array, BufferSource>,
  most: number,
): Promise<Uint8Array> {
  const parts: Uint8Array[] = [];
  let length = 0;
  const reader = new Blob([bytes]).stream().pipeThrough(way).getReader();
  for (;;) {
    const { done, value } = await reader.read();
    if (done) break;
    parts.push(value);
    length += value.length;
    if (length > most) {
      await reader.cancel();
      throw new Error('The document in the link is too large.');
    }
  }
  return joined(parts);
}

/** The hash, with its sign. Throws where the document is too large for a link. */
export async function linkOf(text: string): Promise<string> {
  const packed = await through(new TextEncoder().encode(text), new CompressionStream('deflate-raw'), 1 << 20);
  const letters = btoa(String.fromCharCode(...packed))
    .replaceAll('+', '-')
    .replaceAll('/', '_')
    .replace(/=+$/, '');
  if (letters.length > MOST)
    throw new Error(`The document needs ${letters.length} letters; a link holds ${MOST}. Send the file instead.`);
  return `#document=${letters}`;
}

/** The text in a hash; null: there is none. Throws where it is damaged. */
export async function textIn(hash: string): Promise<string | null> {
  const letters = /^#document=([A-Za-z0-9_-]+)$/.exec(hash)?.[1];
  if (!letters) return null;
  try {
    const bytes = Uint8Array.from(atob(letters.replaceAll('-', '+').replaceAll('_', '/')), (c) => c.charCodeAt(0));
    const text = await through(bytes, new DecompressionStream('deflate-raw'), 1 << 20);
    return new TextDecoder('utf-8', { fatal: true }).decode(text);
  } catch {
    throw new Error('The document in the link is damaged or cut short.');
  }
}
