// Whose findings are shown.

import { beforeEach, expect, test } from 'vitest';
import type { Finding } from '../../engine/types';
import { isChecked, placedFindings } from '../../src/app/checked';
import { begin } from '../../src/edit/history';
import { get, set } from '../../src/app/state';

const finding: Finding = {
  kind: 'missing-key',
  severity: 'error',
  line: 1,
  column: 1,
  path: '',
  text: 'one',
  excerpt: '',
};
const checked = (text: string) => ({ text, findings: [finding], complaint: '', site: null });

beforeEach(() => set({ history: begin('{"a": 1}'), live: null, checked: null }));

test('before an answer nothing is shown', () => {
  expect(isChecked(get())).toBe(false);
  expect(placedFindings(get())).toEqual([]);
});

test('findings are shown at their places while the text is theirs', () => {
  set({ checked: checked('{"a": 1}') });
  expect(isChecked(get())).toBe(true);
  expect(placedFindings(get())).toEqual([finding]);
  set({ history: begin('{"b": 1}') });
  expect(isChecked(get())).toBe(false);
  expect(placedFindings(get())).toEqual([]);
});

test('a drag leaves them where they are, and they count as those of a text before', () => {
  set({ checked: checked('{"a": 1}'), live: '{"a": 2}' });
  expect(isChecked(get())).toBe(false);
  expect(placedFindings(get())).toEqual([finding]);
});
