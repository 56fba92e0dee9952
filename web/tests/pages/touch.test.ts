// Fingers and a pen, as the browser gives them.

import type { CDPSession } from 'playwright-core';
import { afterAll, afterEach, beforeAll, beforeEach, describe, expect, test } from 'vitest';
import { type Doc, type PolygonShape, type Pt, read } from '../../src/edit/model';
import { crossing } from '../unit/example';
import { openPlace, Person, type Place } from './page';

let place: Place;
let person: Person;
let browser: CDPSession;
beforeAll(async () => {
  place = await openPlace();
});
afterAll(() => place.close());
beforeEach(async () => {
  person = await Person.at(place, { touch: true });
  await person.ready();
  browser = await person.context.newCDPSession(person.page);
  // The browser makes pointers and clicks of touches a little later.
  await person.page.evaluate(() => {
    const seen = { pointerup: 0, click: 0 };
    Object.assign(window, { seen });
    addEventListener('pointerup', () => ++seen.pointerup, true);
    addEventListener('click', () => ++seen.click, true);
  });
});

type Seen = 'pointerup' | 'click';
const seenOf = (kind: Seen): Promise<number> =>
  person.page.evaluate((one) => (window as unknown as { seen: Record<Seen, number> }).seen[one], kind);
async function untilSeen(kind: Seen, count: number): Promise<void> {
  await person.page.waitForFunction(
    ([one, least]) => (window as unknown as { seen: Record<Seen, number> }).seen[one] >= least,
    [kind, count] as const,
  );
  await person.frame();
}

async function tap(name: string): Promise<void> {
  const clicks = await seenOf('click');
  await person.page.getByRole('button', { name, exact: true }).tap();
  await untilSeen('click', clicks + 1);
}
afterEach(async () => {
  expect(person.faults).toEqual([]);
  await person.leave();
});

const doc = async (): Promise<Doc> => read(await person.text());

/** Fingers go from place to place on the screen, all at once, and are lifted. */
async function fingers(...ways: readonly (readonly Pt[])[]): Promise<void> {
  const at = (step: number): { x: number; y: number; id: number }[] =>
    ways.map((way, id) => ({ ...way[Math.min(step, way.length - 1)]!, id }));
  const ups = await seenOf('pointerup');
  for (let i = 1; i <= ways.length; ++i)
    await browser.send('Input.dispatchTouchEvent', { type: 'touchStart', touchPoints: at(0).slice(0, i) });
  const steps = Math.max(...ways.map((way) => way.length));
  for (let step = 1; step < steps; ++step)
    await browser.send('Input.dispatchTouchEvent', { type: 'touchMove', touchPoints: at(step) });
  // Fingers come to rest before they are lifted: the browser takes the tap after a throw for its end.
  if (steps > 1) await person.page.waitForTimeout(100);
  await browser.send('Input.dispatchTouchEvent', { type: 'touchEnd', touchPoints: [] });
  await untilSeen('pointerup', ups + ways.length);
}

/** From one place to another in four steps. */
const way = (from: Pt, to: Pt): Pt[] =>
  [0, 1, 2, 3, 4].map((i) => ({ x: from.x + ((to.x - from.x) * i) / 4, y: from.y + ((to.y - from.y) * i) / 4 }));
const camera = async (): Promise<number[]> =>
  (await person.page.locator('.plan').getAttribute('data-camera'))!.split(' ').map(Number);
const plus = (p: Pt, x: number, y: number): Pt => ({ x: p.x + x, y: p.y + y });

describe('fingers', () => {
  test('one moves the view, two move it and go nearer; what is under them stays under them', async () => {
    const empty = { x: -5, y: 15 };
    let [x, y, scale] = await camera();
    const from = await person.pixel(empty);
    await fingers(way(from, plus(from, 80, 40)));
    expect(await camera()).toEqual([expect.closeTo(x! - 80 / scale!, 6), expect.closeTo(y! + 40 / scale!, 6), scale]);
    expect(await person.pixel(empty)).toEqual({ x: expect.closeTo(from.x + 80, 3), y: expect.closeTo(from.y + 40, 3) });
    const middle = await person.pixel(empty);
    [x, y, scale] = await camera();
    await fingers(way(plus(middle, -40, 0), plus(middle, -60, 30)), way(plus(middle, 40, 0), plus(middle, 100, 30)));
    expect((await camera())[2]).toBeCloseTo(2 * scale!, 6);
    const now = await person.pixel(empty);
    expect([now.x, now.y]).toEqual([expect.closeTo(middle.x + 20, 3), expect.closeTo(middle.y + 30, 3)]);
    expect(await person.text()).toBe(crossing);
  });

  test('taps set corners, the first one closes; a second finger gives up what the first began', async () => {
    await tap('Polygon');
    for (const p of [
      { x: 20, y: 14 },
      { x: 24, y: 14 },
      { x: 24, y: 16 },
      { x: 20, y: 14 },
    ])
      await fingers([await person.pixel(p)]);
    expect((await doc()).fields[1]!.zones[2]!.shape).toMatchObject({ points: [{ x: 20 }, { x: 24 }, { x: 24 }] });
    await tap('Undo');
    await tap('Rectangle');
    const [a, b] = [await person.pixel({ x: 20, y: 14 }), await person.pixel({ x: 24, y: 16 })];
    await fingers(way(a, b), way(plus(a, 0, 90), plus(b, 0, 90)));
    expect(await person.page.locator('.sketch circle').count()).toBe(0);
    expect(await person.text()).toBe(crossing);
    const [c, d] = [await person.pixel({ x: 20, y: 14 }), await person.pixel({ x: 24, y: 16 })];
    await fingers(way(c, d));
    expect((await doc()).fields[1]!.zones[2]!.shape).toMatchObject({
      kind: 'rectangle',
      corners: [
        { x: 20, y: 14 },
        { x: 24, y: 16 },
      ],
    });
    await tap('Remove');
    expect(await person.text()).toBe(crossing);
  });

  test('a shape is selected, moved and given up', async () => {
    await fingers([await person.pixel({ x: 11, y: 9.5 })]);
    const from = await person.pixel({ x: 11, y: 9.5 });
    await fingers(way(from, plus(from, 60, 0)));
    const points = (await doc()).fields[0]!.zones[0]!.shape as PolygonShape;
    expect(points.points[0]!.x).toBeGreaterThan(8.6);
    await tap('Undo');
    expect(await person.text()).toBe(crossing);
    await fingers(way(from, plus(from, 60, 0)), way(plus(from, 0, 80), plus(from, 60, 80)));
    expect(await person.text()).toBe(crossing);
  });

  test('in three dimensions one turns, two go nearer', async () => {
    await tap('3D');
    const rim = (): Promise<string | null> => person.page.locator('.volume .rim').first().getAttribute('d');
    await expect.poll(() => person.page.locator('.volume').count()).toBe(11);
    const widths = async (): Promise<number> => (await person.page.locator('.volume').first().boundingBox())!.width;
    const [before, width] = [await rim(), await widths()];
    const box = (await person.page.locator('.solid').boundingBox())!;
    const middle = { x: box.x + box.width / 2, y: box.y + box.height / 2 };
    await fingers(way(plus(middle, -30, 0), plus(middle, -90, 0)), way(plus(middle, 30, 0), plus(middle, 90, 0)));
    expect(await widths()).toBeGreaterThan(1.3 * width);
    const nearer = await rim();
    expect(nearer).not.toBe(before);
    await fingers(way(middle, plus(middle, 50, 0)));
    expect(await rim()).not.toBe(nearer);
  });
});

describe('a pen', () => {
  test('draws, and the hand beside it does nothing', async () => {
    await tap('Counter line');
    const [a, b] = [await person.pixel({ x: 20, y: 15 }), await person.pixel({ x: 25, y: 15 })];
    const pen = (type: 'mousePressed' | 'mouseMoved' | 'mouseReleased', p: Pt): Promise<unknown> =>
      browser.send('Input.dispatchMouseEvent', {
        ...p,
        type,
        button: 'left',
        buttons: type === 'mouseReleased' ? 0 : 1,
        pointerType: 'pen',
        force: 0.5,
        clickCount: 1,
      });
    await pen('mousePressed', a);
    await pen('mouseMoved', { x: (a.x + b.x) / 2, y: a.y });
    await fingers(way(plus(a, 0, 60), plus(b, 0, 60)));
    await pen('mouseMoved', b);
    await pen('mouseReleased', b);
    expect((await doc()).lines[4]).toMatchObject({ first: { x: 20, y: 15 }, second: { x: 25, y: 15 } });
  });
});
