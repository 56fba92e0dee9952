// Files that are compressed as a whole.

import { Decompress, ZstdErrorCode } from 'fzstd';

import { joined } from '../bytes';
import { EngineError } from '../module';
import { ENDING, Stop } from './unfolding';

const ZSTD = [0x28, 0xb5, 0x2f, 0xfd];

/** So many bytes of one file are held at most: such a file can only be read from its begin on. */
export const MOST_UNFOLDED = 2 ** 28;

export function isFoldedWhole(begin: Uint8Array): boolean {
  return ZSTD.every((byte, i) => begin[i] === byte);
}

function refusal(path: string, reason: string): EngineError {
  return new EngineError({ message: `${path}: ${reason}`, path, line: 0, column: 0, reason });
}

/**
 * The content of a file that is compressed with Zstandard as a whole, and as far as it goes of one that is cut off.
 * @param read copies what there is from an offset on
 */
export function unfoldWhole(name: string, read: (offset: number, to: Uint8Array) => number, most = MOST_UNFOLDED): Uint8Array {
  const parts: Uint8Array[] = [];
  let size = 0;
  const stream = new Decompress((part) => {
    size += part.length;
    if (size > most) {
      throw new Stop(ENDING.full);
    }
    parts.push(part.slice());
  });
  const step = new Uint8Array(2 ** 20);
  try {
    for (let offset = 0, count = -1; count !== 0; offset += count) {
      count = read(offset, step);
      stream.push(step.slice(0, count), count === 0);
    }
  } catch (error) {
    if (error instanceof Stop) {
      throw refusal(name, `holds more than ${most / 2 ** 20} MiB when it is unfolded; unfold it with: zstd -d`);
    }
    if ((error as { code?: number }).code !== ZstdErrorCode.UnexpectedEOF) {
      throw refusal(name, 'the compressed bytes are damaged');
    }
  }
  if (size === 0) {
    throw refusal(name, 'the compressed bytes end before there is a recording in them');
  }
  return joined(parts);
}
