// The document that this one is compared with, dashed.

import { useMemo } from 'preact/hooks';
import { ringOf } from '../edit/geometry';
import { type Doc, read } from '../edit/model';
import { isPlaced, pathOf, type ToPixel } from './Shapes';

export function Ghost({ text, toPixel }: { text: string; toPixel: ToPixel }) {
  const doc = useMemo((): Doc | null => {
    try {
      return read(text);
    } catch {
      return null;
    }
  }, [text]);
  if (!doc) return null;
  return (
    <g class="ghost" aria-hidden="true">
      {[...doc.byId.values()].filter(isPlaced).map((item) => (
        <path key={item.id} d={pathOf(ringOf(item), toPixel, item.kind !== 'line')} />
      ))}
    </g>
  );
}
