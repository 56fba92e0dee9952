import { Decompress, ZstdErrorCode } from 'fzstd';

import { ENDING, Stop, type Unfolded } from './unfolding';

/** Any number of frames into room. Check sums are passed over: recordings have their own. */
export function unfoldZstd(from: Uint8Array, room: Uint8Array): Unfolded {
  let size = 0;
  const stream = new Decompress((part) => {
    const fitting = Math.min(part.length, room.length - size);
    room.set(part.subarray(0, fitting), size);
    size += fitting;
    if (fitting < part.length) {
      throw new Stop(ENDING.full);
    }
  });
  try {
    stream.push(from, true);
    return { ending: ENDING.complete, size };
  } catch (error) {
    if (error instanceof Stop) {
      return { ending: error.ending, size };
    }
    const isCutOff = (error as { code?: number }).code === ZstdErrorCode.UnexpectedEOF;
    return { ending: isCutOff ? ENDING.cutOff : ENDING.damaged, size };
  }
}
