// What unfolds the compressions of recordings.

import { unfoldBzip2 } from './bzip2';
import { unfoldLz4 } from './lz4';
import { ENDING, type Unfolded } from './unfolding';
import { unfoldZstd } from './zstd';

const DECODERS = [unfoldLz4, unfoldZstd, unfoldBzip2];

/** @param kind 0: lz4, 1: zstd, 2: bz2 */
export function unfold(kind: number, from: Uint8Array, room: Uint8Array): Unfolded {
  return DECODERS[kind]?.(from, room) ?? { ending: ENDING.damaged, size: 0 };
}
