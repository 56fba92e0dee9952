import { describe, expect, test } from 'vitest';
import { type Doc, type Pt, read } from '../../src/edit/model';
import { crossing } from '../unit/example';
import { openForEveryTest, person } from './everyTest';

openForEveryTest();

const doc = async (): Promise<Doc> => read(await person.text());
const corners = async (): Promise<readonly Pt[]> => {
  const shape = (await doc()).fields[0]!.zones[0]!.shape;
  return shape?.kind === 'polygon' ? shape.points : [];
};
const zoneNames = (of: Doc, field: number): string[] => of.fields[field]!.zones.map((zone) => zone.name);

describe('drawing', () => {
  test('the example opens at first sight, byte for byte', async () => {
    expect(await person.text()).toBe(crossing);
    await expect.poll(() => person.page.locator('.area').count(), { timeout: 10000 }).toBe(11);
    await expect.poll(() => person.page.locator('g.line').count(), { timeout: 10000 }).toBe(4);
  });

  test('a polygon into the first field with room, by clicks and Enter', async () => {
    await person.press('p');
    for (const p of [
      { x: 20, y: 14 },
      { x: 24, y: 14 },
      { x: 24, y: 16 },
    ])
      await person.click(p);
    await person.press('Enter');
    const now = await doc();
    expect(zoneNames(now, 1)).toEqual(['Lane east', 'Lane west', 'Zone 1']);
    expect(now.fields[1]!.zones[2]).toMatchObject({
      index: 2,
      zMin: 0.3,
      zMax: 4,
      shape: {
        kind: 'polygon',
        points: [
          { x: 20, y: 14 },
          { x: 24, y: 14 },
          { x: 24, y: 16 },
        ],
      },
    });
    expect(now.text.length).toBeGreaterThan(crossing.length);
    expect(now.text.replace(/,\s*\{\s*"name": "Zone 1"[\s\S]*?"zMax": 4\s*\}/, '')).toBe(crossing);
  });

  test('a double click and a click on the first corner close a polygon too', async () => {
    await person.press('p');
    await person.click({ x: 20, y: 14 });
    await person.click({ x: 24, y: 14 });
    await person.click({ x: 24, y: 16 }, { clickCount: 2 });
    expect((await doc()).fields[1]!.zones[2]!.shape).toMatchObject({ points: [{ x: 20 }, { x: 24 }, { x: 24 }] });
    await person.press('p');
    await person.page.getByLabel('Draw into').selectOption('exclusion');
    for (const p of [
      { x: -5, y: 12 },
      { x: -2, y: 12 },
      { x: -2, y: 15 },
      { x: -5, y: 12 },
    ])
      await person.click(p);
    expect((await doc()).exclusions[3]).toMatchObject({
      name: 'Exclusion 1',
      shape: { points: [{ x: -5 }, { x: -2 }, { x: -2 }] },
    });
  });

  test('a rectangle by dragging, a new field for it, and its turn by the handle', async () => {
    await person.press('r');
    await person.page.getByLabel('Draw into').selectOption('new');
    await person.drag({ x: 20, y: 14 }, { x: 24, y: 16 });
    let now = await doc();
    expect(now.fields[3]).toMatchObject({ index: 3, name: 'Field 1' });
    expect(now.fields[3]!.zones[0]!.shape).toEqual({
      kind: 'rectangle',
      rotation: 0,
      corners: [
        { x: 20, y: 14 },
        { x: 24, y: 16 },
      ],
    });
    const handle = await person.page.locator('.handle.turn .seen').boundingBox();
    const [x, y] = [handle!.x + handle!.width / 2, handle!.y + handle!.height / 2];
    const centre = await person.pixel({ x: 22, y: 15 });
    await person.page.mouse.move(x, y);
    await person.page.mouse.down();
    await person.page.mouse.move(centre.x + 5, centre.y - 80, { steps: 4 });
    await person.page.mouse.move(centre.x, centre.y - 80);
    await person.page.mouse.up();
    now = await doc();
    expect((now.fields[3]!.zones[0]!.shape as { rotation: number }).rotation).toBeCloseTo(90, 1);
  });

  test('a sector sits at the origin, from the first bearing counterclockwise to the second', async () => {
    await person.press('s');
    expect(await person.page.locator('.toolhint').textContent()).toContain('A sector sits at the origin');
    await person.click({ x: 4, y: 0.5 }, { modifiers: ['Alt'] });
    await person.click({ x: 0.5, y: 4 }, { modifiers: ['Alt'] });
    const shape = (await doc()).fields[1]!.zones[2]!.shape as { minAngle: number; maxAngle: number; radius: number };
    expect(shape.minAngle).toBeCloseTo(Math.atan2(0.5, 4), 1);
    expect(shape.maxAngle).toBeCloseTo(Math.atan2(4, 0.5), 1);
    expect(shape.radius).toBeCloseTo(Math.hypot(4, 0.5), 1);
  });

  test('a counter line with its left side on the left', async () => {
    await person.press('l');
    await person.drag({ x: 20, y: 15 }, { x: 25, y: 15 });
    const now = await doc();
    expect(now.lines[4]).toMatchObject({ name: 'Line 1', first: { x: 20, y: 15 }, second: { x: 25, y: 15 } });
    const side = await person.page.locator('g.line').last().locator('.side').boundingBox();
    expect(side!.y + side!.height / 2).toBeLessThan((await person.pixel({ x: 22, y: 15 })).y - 10);
  });

  test('places typed as numbers and as length and angle, by keyboard alone', async () => {
    await person.press('p');
    const entry = person.page.getByLabel('Place');
    await entry.focus();
    for (const typed of ['1, 20', '@2<0', '@2<90', '']) {
      await entry.fill(typed);
      await person.press('Enter');
    }
    expect((await doc()).fields[1]!.zones[2]!.shape).toMatchObject({
      points: [
        { x: 1, y: 20 },
        { x: 3, y: 20 },
        { x: 3, y: 22 },
      ],
    });
    await person.press('p');
    await entry.fill('1;;2');
    await entry.press('Enter');
    expect(await person.message()).toContain('"1;;2" is not a place.');
  });

  test('more than the document allows is refused at the moment', async () => {
    await person.press('p');
    await person.page.getByLabel('Draw into').selectOption('field1');
    for (let i = 0; i < 17; ++i) await person.click({ x: 17 + 0.5 * i, y: i % 2 === 0 ? 14 : 15 });
    expect(await person.message()).toBe('A polygon has at most 16 vertices. Enter closes it.');
    await person.press('Enter');
    expect((await doc()).fields[1]!.zones[2]!.shape).toMatchObject({ points: { length: 16 } });
    await person.press('p');
    expect(await person.page.locator('.target option[value="field1"]').textContent()).toBe('Field 1: Vehicles (full)');
    expect(await person.page.locator('.target select').inputValue()).toBe('new');
    await person.press('Escape');
    const name = person.page.getByRole('textbox', { name: /^name/ });
    await person.page.getByRole('button', { name: 'Walkway', exact: false }).first().click();
    await expect.poll(() => name.inputValue(), { timeout: 10000 }).toBe('Walkway');
    await name.fill('nineteen characters');
    await name.press('Enter');
    expect(await person.message()).toBe('A name has at most 18 bytes; this one has 19.');
    expect(zoneNames(await doc(), 0)[0]).toBe('Walkway');
  });

  test('lengths and angles stand beside the pointer while drawing', async () => {
    await person.press('m');
    await person.click({ x: 0, y: 12 });
    const p = await person.pixel({ x: 3, y: 16 });
    await person.page.mouse.move(p.x, p.y);
    await person.frame();
    expect(await person.page.locator('.sketch text').textContent()).toBe('5.00 m, 53.1°');
  });
});

describe('changing', () => {
  test('a corner is dragged, and snaps to a corner, to the grid, or to nothing with Alt', async () => {
    await person.click({ x: 11, y: 9.5 });
    await person.drag({ x: 8.6, y: 4 }, { x: 8.05, y: 4.03 });
    expect((await corners())[0]).toEqual({ x: 8, y: 4 });
    await person.drag({ x: 9, y: 11 }, { x: 9.52, y: 9.48 });
    expect((await corners())[1]).toEqual({ x: 9.5, y: 9.5 });
    await person.drag({ x: 9.5, y: 9.5 }, { x: 9.77, y: 9.23 }, ['Alt']);
    expect((await corners())[1]!.x).toBeCloseTo(9.77, 1);
    expect(await person.text()).toContain('{ "x": 13.0, "y": 11.0 }, { "x": 13.4, "y": 4.0 }');
  });

  test('a drag is one step: Escape gives it up, undo takes it back, redo brings it again', async () => {
    await person.click({ x: 11, y: 9.5 });
    const [a, b] = [await person.pixel({ x: 8.6, y: 4 }), await person.pixel({ x: 6, y: 2 })];
    await person.page.mouse.move(a.x, a.y);
    await person.page.mouse.down();
    await person.page.mouse.move(b.x, b.y, { steps: 8 });
    await person.press('Escape');
    await person.page.mouse.up();
    expect(await person.text()).toBe(crossing);
    await person.drag({ x: 8.6, y: 4 }, { x: 6, y: 2 });
    const dragged = await person.text();
    expect(dragged).not.toBe(crossing);
    await person.press('Control+z');
    expect(await person.message()).toBe('Undone: Move a corner');
    expect(await person.text()).toBe(crossing);
    await person.press('Control+y');
    expect(await person.text()).toBe(dragged);
  });

  test('an edge handle adds a corner, Delete removes it', async () => {
    await person.click({ x: 11, y: 9.5 });
    await person.drag({ x: 11, y: 11 }, { x: 11, y: 12 });
    expect((await corners())[2]).toEqual({ x: 11, y: 12 });
    await person.page.locator('svg[role=application]').focus();
    await person.press('Delete');
    expect(await person.text()).toBe(crossing);
  });

  test('a click again takes what lies below; small before large', async () => {
    await person.click({ x: -1.6, y: -2 });
    const name = person.page.getByRole('textbox', { name: /^name/ });
    expect(await name.inputValue()).toBe('Stop');
    await person.click({ x: -1.6, y: -2 });
    expect(await name.inputValue()).toBe('Slow');
  });

  test('several shapes are moved, duplicated, mirrored and removed together', async () => {
    await person.drag({ x: 14.2, y: 7.4 }, { x: 30.6, y: 11 }, ['Shift']);
    await person.frame();
    expect(await person.page.locator('.group li.chosen .what').allTextContents()).toEqual([
      'Lane west',
      'Lane west entry',
    ]);
    await person.drag({ x: 27, y: 9 }, { x: 27, y: 14 });
    let now = await doc();
    expect(now.lines[2]).toMatchObject({ first: { x: 20, y: 12.5 }, second: { x: 20, y: 15.6 } });
    await person.press('Control+d');
    now = await doc();
    expect(zoneNames(now, 1)).toEqual(['Lane east', 'Lane west', 'Lane west 2']);
    expect(now.lines[4]!.name).toBe('Lane west entry 2');
    await person.press('Control+z', 'Control+z');
    expect(await person.text()).toBe(crossing);
    await person.drag({ x: 14.2, y: 7.4 }, { x: 30.6, y: 11 }, ['Shift']);
    await person.press('h');
    now = await doc();
    expect(now.lines[2]).toMatchObject({ first: { x: 24.4, y: 7.7 } });
    await person.page.locator('svg[role=application]').focus();
    await person.press('Delete');
    now = await doc();
    expect(zoneNames(now, 1)).toEqual(['Lane east']);
    expect(now.lines).toHaveLength(3);
  });

  test('arrows move the chosen corner by 1 cm, with Shift by 10 cm', async () => {
    await person.page.locator('svg[role=application]').focus();
    await person.press('n', 'c', 'c', 'ArrowRight', 'Shift+ArrowUp');
    expect(await person.text()).toBe(crossing.replace('{ "x": 9.0, "y": 11.0 }', '{ "x": 9.01, "y": 11.1 }'));
  });

  test('a zone is put into another slot of its field, with the keyboard', async () => {
    await person.page.getByRole('button', { name: 'Walkway' }).first().click();
    const slot = person.page.getByLabel(/^slot/);
    await slot.focus();
    await person.press('ArrowDown');
    const now = await doc();
    expect(now.fields[0]!.zones.map((zone) => [zone.name, zone.index])).toEqual([
      ['Walkway', 1],
      ['Near kerb', 0],
      ['Far kerb', 2],
    ]);
    await person.press('Control+z');
    expect(await person.text()).toBe(crossing);
  });

  test('numbers with units in the panel', async () => {
    await person.page.getByRole('button', { name: 'Gate' }).first().click();
    const turn = person.page.getByLabel('turned by');
    await turn.fill('45.5');
    await turn.press('Enter');
    expect(await person.text()).toBe(crossing.replace('"rotation": 30', '"rotation": 45.5'));
    await person.press('Control+z');
    await turn.fill('1,5');
    await turn.press('Enter');
    expect(await person.message()).toBe('"1,5" is not a number. Write it with a point, such as 4.2.');
    expect(await person.text()).toBe(crossing);
  });

  test('locked shapes stay, hidden ones are not seen nor hit', async () => {
    await person.page.getByRole('button', { name: 'Lock Walkway' }).click();
    await person.drag({ x: 11, y: 9.5 }, { x: 20, y: 9.5 });
    expect(await person.text()).toBe(crossing);
    await person.page.getByRole('button', { name: 'Hide Walkway' }).click();
    await person.frame();
    await expect.poll(() => person.page.locator('.area').count(), { timeout: 10000 }).toBe(10);
    await person.click({ x: 2, y: 12 });
    await person.click({ x: 11, y: 9.5 });
    await expect.poll(() => person.page.locator('.group li.chosen').count(), { timeout: 10000 }).toBe(0);
  });

  test('what is hidden or locked stays so when it is renamed, when others go, and through undo', async () => {
    await person.page.getByRole('button', { name: 'Lock Near kerb' }).click();
    await person.page.getByRole('button', { name: 'Hide Near kerb' }).click();
    await person.page.getByRole('button', { name: 'Near kerb' }).first().click();
    const name = person.page.getByRole('textbox', { name: /^name/ });
    await name.fill('Kerb');
    await name.press('Enter');
    const marked = async (): Promise<string[]> => {
      await person.frame();
      const labels = await person.page
        .locator('.mark[aria-pressed=true]')
        .evaluateAll((all) => all.map((one) => one.getAttribute('aria-label')!));
      return labels;
    };
    expect(await marked()).toEqual(['Hide Kerb', 'Lock Kerb']);
    await person.page.getByRole('button', { name: 'Walkway' }).first().click();
    await person.page.getByRole('button', { name: 'Remove', exact: true }).click();
    expect(await marked()).toEqual(['Hide Kerb', 'Lock Kerb']);
    expect(await person.page.locator('.area').count()).toBe(9);
    await person.press('Control+z');
    expect(await marked()).toEqual(['Hide Kerb', 'Lock Kerb']);
    await person.press('Control+z');
    expect(await marked()).toEqual(['Hide Near kerb', 'Lock Near kerb']);
    expect(await person.text()).toBe(crossing);
  });

  test('the heights of a zone are dragged in the side view, and moved by keys', async () => {
    await person.page.getByRole('button', { name: 'Walkway' }).first().click();
    const handle = person.page.locator('[data-height=zMax]');
    const box = await person.page.locator('[data-height=zMax] .reach').boundingBox();
    await person.page.mouse.move(box!.x + 60, box!.y + box!.height / 2);
    await person.page.mouse.down();
    await person.page.mouse.move(box!.x + 60, box!.y + box!.height / 2 - 40, { steps: 4 });
    await person.page.mouse.up();
    const zone = (await doc()).fields[0]!.zones[0]!;
    expect(zone.zMin).toBe(0.2);
    expect(zone.zMax).toBeGreaterThan(2.4);
    expect(Math.abs(zone.zMax * 100 - Math.round(zone.zMax * 100))).toBeLessThan(1e-9);
    await handle.focus();
    await person.press('ArrowUp');
    expect((await doc()).fields[0]!.zones[0]!.zMax).toBeCloseTo(zone.zMax + 0.01, 9);
  });

  test('text and picture are in step, and one undo serves both', async () => {
    await person.page.getByRole('tab', { name: 'Text' }).click();
    const area = person.page.locator('textarea.document');
    await area.fill(crossing.replace('"Walkway"', '"Footpath"'));
    await person.frame();
    expect(await person.page.locator('.labels').textContent()).toContain('Footpath');
    await area.fill(crossing.replace('"Walkway"', '"Footpath'));
    await person.frame();
    expect(await person.page.locator('.textpanel .wrong').textContent()).toContain('Not JSON, line 14');
    await person.click({ x: 11, y: 9.5 });
    await person.press('Delete');
    expect(await person.message()).toContain('The text is not JSON at the moment.');
    await person.press('Control+z', 'Control+z');
    expect(await area.inputValue()).toBe(crossing);
  });

  test('the question mark shows the keys', async () => {
    await person.press('?');
    await expect.poll(() => person.page.locator('dialog.help tr').count(), { timeout: 10000 }).toBeGreaterThan(20);
    await person.page.getByRole('button', { name: 'Close' }).click();
    await expect.poll(() => person.page.locator('dialog.help').count(), { timeout: 10000 }).toBe(0);
  });
});
