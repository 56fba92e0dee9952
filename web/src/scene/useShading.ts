import { useMemo } from 'preact/hooks';
import type { State } from '../app/state';
import { reachOf } from '../edit/reach';
import type { Shading } from './colours';

/** How points are shown; the same value while nothing of it changes, so that no point is coloured again. */
export function useShading({ doc, colouring, greysOut }: State, isDark: boolean): Shading {
  const reach = greysOut ? reachOf(doc) : null;
  const heights = JSON.stringify(reach);
  return useMemo(() => ({ colouring, isDark, reach }), [colouring, isDark, heights]);
}
