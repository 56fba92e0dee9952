// Points drawn by a loop into an image, for machines without a graphics card: a million take some 40 ms.

import type { Matrix, Size } from './camera';

/** Draws points; which one is nearer wins. */
export interface PointPainter {
  /** @param pixel size of a point, in device pixels */
  draw(canvas: Size, matrix: Matrix, positions: Float32Array, colours: Uint32Array, pixel: number): void;
}

/** Colours are bytes red, green, blue, opacity in the order of memory; opacity 0 is not drawn. */
export function rasterPainter(canvas: HTMLCanvasElement): PointPainter {
  const context = canvas.getContext('2d')!;
  let depth = new Float32Array(0);
  return {
    draw(size, m, positions, colours, pixel) {
      const { width, height } = size;
      if (canvas.width !== width || canvas.height !== height) [canvas.width, canvas.height] = [width, height];
      const image = context.createImageData(width, height);
      const pixels = new Uint32Array(image.data.buffer);
      if (depth.length !== pixels.length) depth = new Float32Array(pixels.length);
      depth.fill(Infinity);
      const [hw, hh] = [width / 2, height / 2];
      const reach = Math.max(1, Math.round(pixel));
      const half = (reach - 1) >> 1;
      for (let i = 0, k = 0; k < colours.length; i += 3, ++k) {
        const colour = colours[k]!;
        if (colour >>> 24 === 0) continue;
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
              pixels[at] = colour;
            }
          }
        }
      }
      context.putImageData(image, 0, 0);
    },
  };
}
