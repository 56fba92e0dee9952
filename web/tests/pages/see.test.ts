// What one sees of points, and of time.

import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { describe, expect, test } from 'vitest';
import { crossing } from '../unit/example';
import { openForEveryTest, person } from './everyTest';
import { dropFiles } from './page';

openForEveryTest();

const EXAMPLE = fileURLToPath(new URL('../../dist/example/', import.meta.url));
const frame = (number: number): { name: string; text: Buffer } => {
  const name = `frame_0${number}.pcd`;
  return { name, text: readFileSync(EXAMPLE + name) };
};
const legend = (): Promise<string> => person.page.locator('.legend').innerText();
const colours = async (...places: readonly [number, number][]): Promise<string[]> => {
  const found: string[] = [];
  for (const [x, y] of places) found.push(await person.colourAt({ x, y }));
  return found;
};
const by = async (what: string): Promise<void> => {
  await person.page.getByLabel('Points by').selectOption(what);
  await person.frame();
};

describe('points', () => {
  test('are coloured by verdict, height and intensity; out of reach and at the origin they are pale', async () => {
    const ground = Array<string>(9).fill('30 20 0 50');
    const rows = [...ground, '0 0 0 50', '18 14 1 0', '20 14 1 50', '22 14 1 100', '24 14 9 100', '11 7 1 50'];
    await dropFiles(person, [{ name: 'lit.xyz', text: `x y z intensity\n${rows.join('\n')}\n` }]);
    await person.page.getByText('lit.xyz: 15 points, 0 no returns, 1 at the origin').waitFor();
    const seen = (): Promise<string[]> => colours([18, 14], [20, 14], [22, 14], [24, 14], [0, 0], [11, 7]);
    const [pale, lit] = ['#d5dbe1', '#b8500c'];
    await expect.poll(seen, { timeout: 10000 }).toEqual(['#3e5870', '#3e5870', '#3e5870', pale, pale, lit]);
    await by('intensity');
    await expect.poll(seen, { timeout: 10000 }).toEqual(['#30437f', '#429d8d', '#e2d94f', pale, pale, lit]);
    expect(await legend()).toMatch(/intensity 0\s+100$/);
    await by('height');
    const heights = await seen();
    expect(heights.slice(3)).toEqual([pale, pale, lit]);
    expect(new Set(heights.slice(0, 3)).size).toBe(1);
    expect(await legend()).toMatch(/height -0.5\s+4.5 m over the ground$/);
    await person.page.getByLabel('pale out of reach').uncheck();
    await expect.poll(seen, { timeout: 10000 }).toEqual([heights[0], heights[0], heights[0], '#e2d94f', pale, lit]);
    expect(await legend()).not.toContain('out of reach');
  });

  test('a frame that has no intensities says so', async () => {
    await dropFiles(person, [{ name: 'dark.xyz', text: '18 14 1\n30 20 0\n30 20 0\n' }]);
    await person.page.getByText('dark.xyz: 3 points').first().waitFor();
    await by('intensity');
    expect(await legend()).toContain('this frame has no intensities');
    expect(await colours([18, 14])).toEqual(['#3e5870']);
  });

  test('intensities of a recording are there at each moment, and gone when they are not asked for', async () => {
    await by('intensity');
    await expect.poll(legend, { timeout: 10000 }).toMatch(/intensity [\d.]+\s+[\d.]+$/);
    await person.press('.', '.');
    await expect.poll(legend, { timeout: 10000 }).toMatch(/intensity [\d.]+\s+[\d.]+$/);
    await by('verdict');
    expect(await legend()).not.toContain('intensity');
  });
});

describe('time', () => {
  test('the axis has its seconds above the rows', async () => {
    expect((await person.page.locator('.times text').allTextContents()).slice(0, 3)).toEqual([
      '0.0 s',
      '0.2 s',
      '0.4 s',
    ]);
    const boxes = await person.page
      .locator('.times text')
      .evaluateAll((all) => all.map((one) => one.getBoundingClientRect().left));
    expect(boxes).toHaveLength(11);
    expect(boxes).toEqual([...boxes].sort((a, b) => a - b));
  });

  test('frames have the stamps of a list that is dropped with them', async () => {
    const list = { name: 'frames.txt', text: '# two\n10 frame_01.pcd\n10.75 day/frame_00.pcd\n' };
    await dropFiles(person, [frame(0), list, frame(1)]);
    await person.page.getByText('frame_00.pcd and 1 more: 2 moments, 0.75 s.').waitFor();
    await person.press('.');
    expect(await person.page.locator('.transport output').textContent()).toBe('0.75 s, 2 of 2');
    await dropFiles(person, [frame(0), { ...list, text: '1 frame_07.pcd\n' }]);
    await person.page.getByText('names frame_07.pcd, which was not opened with it').waitFor();
    expect(await person.page.locator('.transport output').textContent()).toBe('0.75 s, 2 of 2');
    await dropFiles(person, [frame(0), list, { ...list, name: 'more.txt' }]);
    await person.page.getByText('One list of stamps at a time.').waitFor();
  });

  test('labels of a camera are objects beside the frames', async () => {
    const row = (number: number, id: number): string =>
      `${number} ${id} Car 0 1 0.9 10 20 30 40 1.5 1.8 4.2 3 1.7 20 0`;
    await dropFiles(person, [{ name: '0003.txt', text: `${row(0, 41)}\n${row(1, 41)}\n${row(1, 42)}\n` }]);
    await person.page.getByText('0003.txt: 20 moments').waitFor();
    await person.page.locator('.objects [data-object="41"]').waitFor({ state: 'attached' });
    expect(await person.page.locator('.objects [data-object="42"]').count()).toBe(0);
    await person.press('.');
    await person.page.locator('.objects [data-object="42"]').waitFor({ state: 'attached' });
  });
});

describe('a document with errors', () => {
  test('lets a recording be looked at, and evaluates it when it is mended', async () => {
    await person.page.getByRole('tab', { name: 'Text' }).click();
    await person.page.locator('textarea.document').fill(crossing.replace('"sensitivity": 6', '"sensitivity": 60'));
    await person.page.getByRole('tab', { name: 'Events' }).click();
    await dropFiles(person, [frame(0), frame(1)]);
    await person.page.getByText('It is evaluated when the document has no error any more.').waitFor();
    await person.page.getByText('frame_00.pcd and 1 more:').last().waitFor();
    expect(await person.page.locator('.transport output').textContent()).toBe('0.00 s, 1 of 2');
    expect(await person.page.locator('.events .note').first().textContent()).toContain('0 events');
    await person.press('Control+z');
    await expect.poll(() => person.page.locator('.events .note').first().textContent()).not.toContain('0 events;');
  });
});
