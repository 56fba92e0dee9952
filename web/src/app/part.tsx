// A part of the page that is drawn again only when what it shows has changed: moving the pointer draws no panel.

import type { ComponentType, VNode } from 'preact';
import { useRef } from 'preact/hooks';
import type { State } from './state';

interface Shown {
  readonly state: State;
  readonly isDark: boolean;
}

/** The component, for changes of these values of the state alone. */
export function part(keys: readonly (keyof State)[], Show: ComponentType<Shown>): (shown: Shown) => VNode {
  return ({ state, isDark }) => {
    const last = useRef<{ readonly shown: Shown; readonly node: VNode } | null>(null);
    const before = last.current?.shown;
    const isSame =
      before !== undefined && before.isDark === isDark && keys.every((key) => before.state[key] === state[key]);
    if (!last.current || !isSame)
      last.current = { shown: { state, isDark }, node: <Show state={state} isDark={isDark} /> };
    return last.current.node;
  };
}
