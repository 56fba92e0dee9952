// The points beneath the drawing: by the graphics card, or by a loop where there is none.

import { useEffect, useMemo, useRef } from 'preact/hooks';
import type { Counts, Scene } from '../../engine/types';
import type { Matrix, Size } from './camera';
import { coloured, type Coloured, type Shading } from './colours';
import { type PointPainter, rasterPainter } from './raster';
import { webglPainter } from './webgl';

interface Props {
  readonly scene: Scene | null;
  readonly counts: Counts | null;
  readonly shading: Shading;
  readonly size: Size;
  /** Where the camera is: points are drawn again when this is another value. */
  readonly look: unknown;
  readonly matrixOf: (scene: Scene) => Matrix;
}

const NO_POINTS = new Float32Array(0);
const NO_COLOURS = new Uint32Array(0);

// All views show the same points.
let last: Coloured | null = null;

// "?points=card" or "?points=loop" chooses, for those who compare the two.
function painterOf(canvas: HTMLCanvasElement): PointPainter {
  const wanted = new URLSearchParams(location.search).get('points');
  const card = wanted === 'loop' ? null : webglPainter(canvas, wanted === 'card');
  if (card) return card;
  // A canvas that was asked for WebGL gives no other context.
  const plain = canvas.cloneNode() as HTMLCanvasElement;
  canvas.replaceWith(plain);
  return rasterPainter(plain);
}

export function PointCanvas({ scene, counts, shading, size, look, matrixOf }: Props) {
  const holder = useRef<HTMLDivElement>(null);
  const painter = useRef<PointPainter | null>(null);
  useEffect(() => {
    const canvas = document.createElement('canvas');
    canvas.className = 'points';
    holder.current!.append(canvas);
    painter.current = painterOf(canvas);
    return () => holder.current?.replaceChildren();
  }, []);
  const colours = useMemo(
    () => (scene ? (last = coloured(scene, counts, shading, last)).colours : NO_COLOURS),
    [scene, counts, shading],
  );
  useEffect(() => {
    const ratio = window.devicePixelRatio || 1;
    const device = {
      width: Math.max(1, Math.round(size.width * ratio)),
      height: Math.max(1, Math.round(size.height * ratio)),
    };
    const matrix = scene ? matrixOf(scene) : new Float64Array(16);
    painter.current?.draw(device, matrix, scene?.positions ?? NO_POINTS, colours, Math.max(2, Math.round(2 * ratio)));
  }, [scene, colours, size.width, size.height, look]);
  return <div ref={holder} class="pointholder" aria-hidden="true" />;
}
