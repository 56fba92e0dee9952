// The metric grid with its numbers, the origin with the sensor above it, and the scale bar.

import { decimalsOf, gridStep, niceStep, type PlanCamera, type Size, ticksOf, toPixel, toPlane } from './camera';

function numberText(value: number, decimals: number): string {
  return (value + 0)
    .toFixed(decimals)
    .replace(/^-(0(\.0*)?)$/, '$1')
    .replace('-', '−');
}

export function Grid({ camera, size }: { camera: PlanCamera; size: Size }) {
  const step = gridStep(camera);
  const decimals = decimalsOf(step);
  const low = toPlane(camera, size, { x: 0, y: size.height });
  const high = toPlane(camera, size, { x: size.width, y: 0 });
  const lines: string[] = [];
  const texts = [];
  for (const i of ticksOf(low.x, high.x, step)) {
    const { x } = toPixel(camera, size, { x: i * step, y: 0 });
    lines.push(`M${x.toFixed(1)} 0v${size.height}`);
    if (x > 24)
      texts.push(
        <text key={`x${i}`} x={x} y={size.height - 6} text-anchor="middle">
          {numberText(i * step, decimals)}
        </text>,
      );
  }
  for (const i of ticksOf(low.y, high.y, step)) {
    const { y } = toPixel(camera, size, { x: 0, y: i * step });
    lines.push(`M0 ${y.toFixed(1)}h${size.width}`);
    if (y < size.height - 24)
      texts.push(
        <text key={`y${i}`} x={6} y={y + 4}>
          {numberText(i * step, decimals)}
        </text>,
      );
  }
  return (
    <g aria-hidden="true">
      <path class="grid" d={lines.join('')} />
      <g class="ticks">{texts}</g>
    </g>
  );
}

export function Origin({ camera, size }: { camera: PlanCamera; size: Size }) {
  const p = toPixel(camera, size, { x: 0, y: 0 });
  return (
    <g class="origin">
      <title>Origin (0, 0): the frame of the points begins here; x runs to the right, y up</title>
      <path d={`M${p.x - 7} ${p.y}h14M${p.x} ${p.y - 7}v14`} />
      <circle cx={p.x} cy={p.y} r="3.6" />
    </g>
  );
}

export function ScaleBar({ camera, size }: { camera: PlanCamera; size: Size }) {
  const length = niceStep(60 / camera.scale);
  const width = length * camera.scale;
  const [right, y] = [size.width - 16, size.height - 30];
  return (
    <g class="scale" aria-hidden="true">
      <path d={`M${right - width} ${y - 4}v4h${width}v-4`} />
      <text x={right - width / 2} y={y - 8} text-anchor="middle">
        {numberText(length, decimalsOf(length))} m
      </text>
    </g>
  );
}
