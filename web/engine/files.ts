// Files that the module reads, by the numbers by which it knows them.

import { isFoldedWhole, unfoldWhole } from './decoders/whole';
import type { LinkedFile, Source } from './types';

/** Bytes that are read by ranges. */
export interface Slices {
  readonly name: string;
  readonly size: number;
  /** Copies what there is from an offset on; how many bytes. Throws when the file cannot be read. */
  read(offset: number, to: Uint8Array): number;
}

/** What the module is told of a file. */
export interface FileEntry {
  readonly name: string;
  readonly file: number;
  readonly size: number;
}

export class Files {
  readonly #open = new Map<number, Slices>();
  #next = 1;

  add(source: Source | Slices): FileEntry {
    const slices = unfolded(slicesOf(source));
    const file = this.#next++;
    this.#open.set(file, slices);
    return { name: slices.name, file, size: slices.size };
  }

  remove(entries: Iterable<FileEntry>): void {
    for (const entry of entries) {
      this.#open.delete(entry.file);
    }
  }

  get size(): number {
    return this.#open.size;
  }

  read(file: number, offset: number, to: Uint8Array): number {
    try {
      return this.#open.get(file)?.read(offset, to) ?? -1;
    } catch {
      return -1; // moved, changed or removed since it was opened
    }
  }
}

// The module waits for the bytes that it asks for, so the request has to wait as well; a worker may.
function linked({ name, size, link }: LinkedFile): Slices {
  return {
    name,
    size,
    read(offset, to) {
      const end = Math.min(offset + to.length, size);
      if (end <= offset) {
        return 0;
      }
      const request = new XMLHttpRequest();
      request.open('GET', link, false);
      request.responseType = 'arraybuffer';
      request.setRequestHeader('Range', `bytes=${offset}-${end - 1}`);
      request.send();
      if (request.status !== 206) {
        throw new Error(`${name} cannot be read: the server answers ${request.status}`);
      }
      const part = new Uint8Array(request.response as ArrayBuffer);
      to.set(part.subarray(0, to.length));
      return Math.min(part.length, to.length);
    },
  };
}

// Such a file is read forwards alone, and the module reads to and fro.
function unfolded(slices: Slices): Slices {
  const begin = new Uint8Array(4);
  try {
    slices.read(0, begin);
  } catch {
    return slices; // told when it is read
  }
  const { name } = slices;
  return isFoldedWhole(begin) ? held(name, unfoldWhole(name, (offset, to) => slices.read(offset, to))) : slices;
}

function held(name: string, bytes: Uint8Array): Slices {
  return {
    name,
    size: bytes.length,
    read(offset, to) {
      const part = bytes.subarray(offset, offset + to.length);
      to.set(part);
      return part.length;
    },
  };
}

function slicesOf(source: Source | Slices): Slices {
  if ('read' in source) {
    return source;
  }
  if ('bytes' in source && source.bytes instanceof Uint8Array) {
    return held(source.name, source.bytes);
  }
  if ('link' in source) {
    return linked(source);
  }
  const file = source as File;
  const reader = new FileReaderSync(); // there is one in workers only
  return {
    name: file.name,
    size: file.size,
    read(offset, to) {
      const part = new Uint8Array(reader.readAsArrayBuffer(file.slice(offset, offset + to.length)));
      to.set(part);
      return part.length;
    },
  };
}
