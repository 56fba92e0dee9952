// Playing a recording at its own speed.

import { get, set } from './state';

export function seek(moment: number): void {
  const { session } = get();
  if (session && session.moments > 0) set({ moment: Math.min(session.moments - 1, Math.max(0, moment)) });
}

const LONGEST_WAIT = 1000;

function waitAfter(moment: number): number {
  const { session } = get();
  if (!session || moment + 1 >= session.moments) return 100;
  return Math.min(LONGEST_WAIT, Math.max(0, Number(session.stamps[moment + 1]! - session.stamps[moment]!) / 1e6));
}

let timer = 0;

// The next moment comes when its time has come and the page was drawn; points follow as fast as they are counted.
function step(): void {
  const { session, moment, isPlaying } = get();
  if (!isPlaying || !session) return;
  seek(moment + 1 < session.moments ? moment + 1 : 0);
  timer = window.setTimeout(() => requestAnimationFrame(step), waitAfter(get().moment));
}

export function togglePlay(): void {
  const { isPlaying, session } = get();
  clearTimeout(timer);
  if (!session) return;
  set({ isPlaying: !isPlaying });
  if (!isPlaying) timer = window.setTimeout(step, waitAfter(get().moment));
}

export function pause(): void {
  clearTimeout(timer);
  if (get().isPlaying) set({ isPlaying: false });
}
