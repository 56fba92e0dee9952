import { expect, test } from 'vitest';
import { Fingers, shift, spread } from '../../src/scene/fingers';

const touch = (pointerId: number) => ({ pointerId, pointerType: 'touch' });
const pen = { pointerId: 9, pointerType: 'pen' };

test('two fingers say how far their middle moved and how much farther apart they are', () => {
  const fingers = new Fingers();
  expect(fingers.down(touch(1), { x: 0, y: 0 })).toBe(1);
  expect(fingers.move(touch(1), { x: 10, y: 0 })).toBeNull();
  expect(fingers.down(touch(2), { x: 30, y: 0 })).toBe(2);
  const two = fingers.move(touch(2), { x: 50, y: 20 })!;
  expect(two).toEqual({
    before: [
      { x: 30, y: 0 },
      { x: 10, y: 0 },
    ],
    now: [
      { x: 50, y: 20 },
      { x: 10, y: 0 },
    ],
  });
  expect(shift(two)).toEqual({ x: 10, y: 10 });
  expect(spread(two)).toBeCloseTo(Math.hypot(40, 20) / 20, 12);
  fingers.up(touch(1));
  expect(fingers.move(touch(2), { x: 60, y: 20 })).toBeNull();
});

test('a pointer that is not down moves nothing, nor do three', () => {
  const fingers = new Fingers();
  expect(fingers.move(touch(1), { x: 1, y: 1 })).toBeNull();
  for (const id of [1, 2, 3]) fingers.down(touch(id), { x: id, y: 0 });
  expect(fingers.move(touch(1), { x: 9, y: 1 })).toBeNull();
});

test('a hand beside a pen counts for nothing until the pen is lifted', () => {
  const fingers = new Fingers();
  fingers.down(touch(1), { x: 0, y: 0 });
  expect(fingers.down(pen, { x: 5, y: 5 })).toBe(1);
  expect([fingers.isPalm(touch(1)), fingers.isPalm(touch(2)), fingers.isPalm(pen)]).toEqual([true, true, false]);
  fingers.up(pen);
  expect(fingers.isPalm(touch(2))).toBe(false);
});
