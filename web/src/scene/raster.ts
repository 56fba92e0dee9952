// Points drawn by a loop into an image, for machines without a graphics card: a million take some 40 ms, and some 10 when
// they only change their colours, as they do while a shape is dragged.

import type { Matrix, Size } from './camera';

/** Draws points; which one is nearer wins. */
export interface PointPainter {
  /** @param pixel size of a point, in device pixels */
  draw(canvas: Size, matrix: Matrix, positions: Float32Array, colours: Uint32Array, pixel: number): void;
}

/** What decides which point is seen where. */
interface Seen {
  readonly width: number;
  readonly height: number;
  readonly matrix: Matrix;
  readonly positions: Float32Array;
  readonly pixel: number;
}

function isSame(a: Seen, b: Seen): boolean {
  return (
    a.width === b.width &&
    a.height === b.height &&
    a.positions === b.positions &&
    a.pixel === b.pixel &&
    a.matrix.every((value, i) => value === b.matrix[i])
  );
}

const NOBODY = -1;

/** Colours are bytes red, green, blue, opacity in the order of memory. */
export function rasterPainter(canvas: HTMLCanvasElement): PointPainter {
  const context = canvas.getContext('2d')!;
  let image = context.createImageData(1, 1);
  let depth = new Float32Array(1);
  let owner = new Int32Array(1); // by pixel, the point that is seen there
  let seen: Seen | null = null;

  function look({ width, height, matrix: m, positions, pixel }: Seen): void {
    if (canvas.width !== width || canvas.height !== height) [canvas.width, canvas.height] = [width, height];
    if (owner.length !== width * height || image.width !== width) {
      image = context.createImageData(width, height);
      depth = new Float32Array(width * height);
      owner = new Int32Array(width * height);
    }
    depth.fill(Infinity);
    owner.fill(NOBODY);
    const [hw, hh] = [width / 2, height / 2];
    const reach = Math.max(1, Math.round(pixel));
    const half = (reach - 1) >> 1;
    for (let i = 0, k = 0; i < positions.length; i += 3, ++k) {
      const x = positions[i]!;
      const y = positions[i + 1]!;
      const z = positions[i + 2]!;
      const w = m[3]! * x + m[7]! * y + m[11]! * z + m[15]!;
      if (w <= 0) continue;
      const px = (hw + (hw * (m[0]! * x + m[4]! * y + m[8]! * z + m[12]!)) / w - half) | 0;
      const py = (hh - (hh * (m[1]! * x + m[5]! * y + m[9]! * z + m[13]!)) / w - half) | 0;
      if (px < 0 || py < 0 || px + reach > width || py + reach > height) continue;
      const far = (m[2]! * x + m[6]! * y + m[10]! * z + m[14]!) / w;
      for (let dy = 0; dy < reach; ++dy) {
        let at = (py + dy) * width + px;
        for (let dx = 0; dx < reach; ++dx, ++at) {
          if (far <= depth[at]!) {
            depth[at] = far;
            owner[at] = k;
          }
        }
      }
    }
  }

  return {
    draw({ width, height }, matrix, positions, colours, pixel) {
      const now = { width, height, matrix: matrix.slice(), positions, pixel };
      if (!seen || !isSame(now, seen)) look(now);
      seen = now;
      const pixels = new Uint32Array(image.data.buffer);
      for (let at = 0; at < pixels.length; ++at) {
        const point = owner[at]!;
        pixels[at] = point === NOBODY ? 0 : colours[point]!;
      }
      context.putImageData(image, 0, 0);
    },
  };
}
