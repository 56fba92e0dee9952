// Where the views look.

import { ringOf } from '../edit/geometry';
import { boundsOf } from '../edit/moves';
import type { Item, Pt } from '../edit/model';
import { fitted, type PlanCamera } from '../scene/camera';
import { isPlaced } from '../scene/Shapes';
import { get, set } from './state';

let last: { readonly camera: PlanCamera; readonly low: Pt; readonly high: Pt } | null = null;

function show(low: Pt, high: Pt): void {
  const { size, orbit, scene } = get();
  const camera = fitted(low, high, size);
  last = { camera, low, high };
  set({
    camera,
    orbit: {
      ...orbit,
      x: camera.x,
      y: camera.y,
      z: (scene?.ground ?? 0) + 1,
      distance: 1.3 * Math.hypot(high.x - low.x, high.y - low.y),
    },
  });
}

/** The view became larger or smaller: what was brought into view stays so, until somebody moves the view. */
export function fitAgain(): void {
  if (last && get().camera === last.camera) show(last.low, last.high);
}

// Without the farthest hundredth on each side: one stray point must not make all others small.
function pointBounds(): [Pt, Pt] | null {
  const { scene } = get();
  if (!scene || scene.positions.length === 0) return null;
  const { positions, origin } = scene;
  const step = 3 * Math.max(1, Math.floor(positions.length / 3 / 20000));
  const [xs, ys]: [number[], number[]] = [[], []];
  for (let i = 0; i < positions.length; i += step) {
    xs.push(positions[i]! + origin[0]);
    ys.push(positions[i + 1]! + origin[1]);
  }
  const ends = (values: number[]): [number, number] => {
    values.sort((a, b) => a - b);
    return [
      values[Math.floor(values.length * 0.005)]!,
      values[Math.min(values.length - 1, Math.floor(values.length * 0.995))]!,
    ];
  };
  const [[x0, x1], [y0, y1]] = [ends(xs), ends(ys)];
  return [
    { x: x0, y: y0 },
    { x: x1, y: y1 },
  ];
}

/** All points in view, but for the outermost. */
export function fitPoints(): void {
  const bounds = pointBounds();
  if (bounds) show(...bounds);
}

/** What is selected, or all zones and lines; without any, all points. */
export function fitZones(only: readonly Item[] = []): void {
  const { doc } = get();
  const items = (only.length > 0 ? only : [...doc.byId.values()]).filter(
    (item) => isPlaced(item) && ringOf(item).length > 1,
  );
  if (items.length === 0) return fitPoints();
  show(...boundsOf(items));
}
