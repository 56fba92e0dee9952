// The tracked objects of this moment, with their numbers.

import type { TrackedObject } from '../../engine/types';
import { pathOf, type ToPixel } from './Shapes';

export function Objects({ objects, toPixel }: { objects: readonly TrackedObject[]; toPixel: ToPixel }) {
  return (
    <g class="objects">
      {objects.map((object) => {
        const p = object.reference && toPixel(object.reference);
        return (
          <g key={object.id} data-object={object.id}>
            <title>{`${object.className || 'object'} ${object.id}`}</title>
            {object.ring.length > 0 ? <path d={pathOf(object.ring, toPixel)} /> : null}
            {p ? <circle cx={p.x} cy={p.y} r="2.4" /> : null}
            {p ? (
              <text x={p.x + 8} y={p.y - 6}>
                {object.id}
              </text>
            ) : null}
          </g>
        );
      })}
    </g>
  );
}
