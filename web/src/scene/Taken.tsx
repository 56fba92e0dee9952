// Points that a zone would count, had no exclusion zone taken them: struck through.

import { useMemo } from 'preact/hooks';
import { type Counts, type Scene, VERDICT, verdictOf } from '../../engine/types';
import type { Pt } from '../edit/model';
import type { ToPixel } from './Shapes';

const MOST = 3000; // of a picture that is drawn again while the view moves

export function takenPoints(scene: Scene, counts: Counts | null): Pt[] {
  const { positions, origin } = scene;
  const found: Pt[] = [];
  // Of another scene for an instant, while the points of this one are counted.
  const verdicts = counts?.verdicts?.length === positions.length / 3 ? counts.verdicts : null;
  for (let k = 0; verdicts && k < verdicts.length && found.length < MOST; ++k) {
    if (verdictOf(verdicts[k]!) === VERDICT.taken)
      found.push({ x: positions[3 * k]! + origin[0], y: positions[3 * k + 1]! + origin[1] });
  }
  return found;
}

export function Taken({ scene, counts, toPixel }: { scene: Scene; counts: Counts | null; toPixel: ToPixel }) {
  const points = useMemo(() => takenPoints(scene, counts), [scene, counts]);
  const strokes = points.map((p) => {
    const q = toPixel(p);
    return `M${(q.x - 2.5).toFixed(1)} ${(q.y + 2.5).toFixed(1)}l5 -5`;
  });
  return <path class="taken" d={strokes.join('')} />;
}
