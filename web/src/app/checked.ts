// Whose findings are shown: they come a moment after the text that they are about.

import type { Finding } from '../../engine/types';
import { type State, textOf } from './state';

/** Whether the findings are those of the text as it stands. */
export function isChecked(state: State): boolean {
  return state.checked !== null && state.checked.text === textOf(state);
}

/** The findings that can be shown at their places: a drag leaves these where they are, any other edit may not. */
export function placedFindings(state: State): readonly Finding[] {
  return state.checked && (state.live !== null || isChecked(state)) ? state.checked.findings : [];
}
