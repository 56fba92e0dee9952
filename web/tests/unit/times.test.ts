import { expect, test } from 'vitest';
import { timeStep, timeText } from '../../src/panels/times';

test('steps of a time axis are those of a clock', () => {
  expect([0, 0.03, 0.3, 0.6, 7, 40, 61, 500, 4000, 90000].map(timeStep)).toEqual([
    1, 0.05, 0.5, 1, 10, 60, 120, 600, 7200, 172800,
  ]);
});

test('labels are as fine as the step', () => {
  expect(timeText(0, 0.05)).toBe('0.00 s');
  expect(timeText(1.5, 0.5)).toBe('1.5 s');
  expect(timeText(50, 10)).toBe('50 s');
  expect(timeText(90, 10)).toBe('1:30');
  expect(timeText(0, 60)).toBe('0:00');
  expect(timeText(3661, 60)).toBe('1:01:01');
  expect(timeText(172800, 86400)).toBe('48:00:00');
});
