// Times on an axis, in seconds since the first moment.

import { decimalsOf, niceStep } from '../scene/camera';

const STEPS = [1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 14400, 28800, 43200, 86400];

/** The shortest step between labels that is not below; parts of a second in decimals, minutes and hours in whole ones. */
export function timeStep(atLeast: number): number {
  if (!(atLeast > 0)) return 1;
  if (atLeast <= 0.5) return niceStep(atLeast);
  return STEPS.find((step) => step >= atLeast) ?? 86400 * niceStep(atLeast / 86400);
}

/** As finely as the step between labels asks: "0.50 s", "1:30", "2:00:00". */
export function timeText(seconds: number, step: number): string {
  if (step < 1) return `${seconds.toFixed(decimalsOf(step))} s`;
  if (step < 60 && seconds < 60) return `${seconds} s`;
  const two = (value: number): string => String(Math.floor(value)).padStart(2, '0');
  const [hours, minutes] = [Math.floor(seconds / 3600), Math.floor(seconds / 60) % 60];
  return hours > 0 ? `${hours}:${two(minutes)}:${two(seconds % 60)}` : `${minutes}:${two(seconds % 60)}`;
}
