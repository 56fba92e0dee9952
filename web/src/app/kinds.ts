// What a file is: points, or what goes with points. Frames and recordings are told apart by the engine, by their bytes.

import type { Source } from '../../engine/types';

export type Kind = 'points' | 'tracks' | 'labels' | 'stamps';

const ENOUGH = 2000; // bytes of the first lines

/** By the first line that says something. */
export function kindOfText(name: string, head: string): Kind {
  if (!/\.(csv|txt)$/i.test(name)) return 'points';
  const line = head
    .replace(/^\uFEFF/, '')
    .split(/\r?\n/)
    .find((one) => one.trim() !== '' && !one.startsWith('#'));
  if (line === undefined) return 'points';
  const names = line.toLowerCase().split(/[,;\s]+/);
  if (names.includes('stamp') && names.includes('id')) return 'tracks';
  // KITTI labels: number of the frame, number of the track, a word, and numbers.
  const words = line.trim().split(/\s+/);
  if ((words.length === 17 || words.length === 18) && /^-?\d+ -?\d+ [a-z_]+$/i.test(words.slice(0, 3).join(' ')))
    return 'labels';
  // Rows of points end with a number, never with the name of a frame.
  return /^-?\d+(\.\d*)?([eE][-+]?\d+)?[,\s].*\.(pcd|ply|las|bin|xyz|txt|csv|pts)\s*$/i.test(line)
    ? 'stamps'
    : 'points';
}

async function headOf(source: Source): Promise<string> {
  if (source instanceof File) return source.slice(0, ENOUGH).text();
  if ('bytes' in source && source.bytes instanceof Uint8Array)
    return new TextDecoder().decode(source.bytes.subarray(0, ENOUGH));
  if (!('link' in source)) return '';
  const answer = await fetch(source.link, { headers: { Range: `bytes=0-${ENOUGH - 1}` } });
  return answer.ok ? answer.text() : '';
}

export async function kindOf(source: Source): Promise<Kind> {
  return /\.(csv|txt)$/i.test(source.name) ? kindOfText(source.name, await headOf(source)) : 'points';
}
