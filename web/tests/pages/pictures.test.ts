// How the page looks, against small pictures that are kept (tests/pages/pictures, a quarter of the size each way).
// Means of 16 x 16 pixels are compared, since another build of the browser sets letters and edges a little differently:
// a place differs when a colour is more than 24 of 255 away, and a picture when more than 1.5 % of its places do.
// PICTURES=keep keeps what is seen now.

import { existsSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import type { Page } from 'playwright-core';
import { afterAll, beforeAll, expect, test } from 'vitest';
import { openPlace, type Options, Person, type Place } from './page';

const FOLDER = fileURLToPath(new URL('./pictures/', import.meta.url));
const KEEPS = process.env['PICTURES'] === 'keep';

let place: Place;
let table: Page; // where pictures are laid beside each other
beforeAll(async () => {
  place = await openPlace();
  table = await place.browser.newPage();
});
afterAll(() => place.close());

interface Difference {
  readonly size: string;
  readonly places: number;
  readonly differ: number;
  /** Where most, in pixels of the page, with both colours. */
  readonly worst: string;
}

/** A quarter of the size, as a PNG in letters of base 64. */
function reduced(letters: string): Promise<string> {
  return table.evaluate(async (png) => {
    const image = await createImageBitmap(await (await fetch(`data:image/png;base64,${png}`)).blob());
    const canvas = new OffscreenCanvas(Math.floor(image.width / 4), Math.floor(image.height / 4));
    const context = canvas.getContext('2d')!;
    context.imageSmoothingQuality = 'high';
    context.drawImage(image, 0, 0, 4 * canvas.width, 4 * canvas.height, 0, 0, canvas.width, canvas.height);
    const bytes = new Uint8Array(await (await canvas.convertToBlob()).arrayBuffer());
    return btoa(Array.from(bytes, (byte) => String.fromCharCode(byte)).join(''));
  }, letters);
}

function difference(found: string, kept: string): Promise<Difference> {
  return table.evaluate(
    async ([a, b]) => {
      const means = async (png: string): Promise<{ width: number; height: number; colours: number[][] }> => {
        const image = await createImageBitmap(await (await fetch(`data:image/png;base64,${png}`)).blob());
        const context = new OffscreenCanvas(image.width, image.height).getContext('2d')!;
        context.drawImage(image, 0, 0);
        const [width, height] = [Math.floor(image.width / 4), Math.floor(image.height / 4)];
        const colours = Array.from({ length: width * height }, (_, i) => {
          const { data } = context.getImageData(4 * (i % width), 4 * Math.floor(i / width), 4, 4);
          return [0, 1, 2].map(
            (k) => Array.from({ length: 16 }, (_, j) => data[4 * j + k]!).reduce((x, y) => x + y) / 16,
          );
        });
        return { width, height, colours };
      };
      const [x, y] = [await means(a), await means(b)];
      const away = x.colours.map((one, i) =>
        Math.max(...one.map((value, k) => Math.abs(value - (y.colours[i]?.[k] ?? 999)))),
      );
      const most = away.indexOf(Math.max(...away));
      const text = (of: number[] | undefined): string => (of ?? []).map(Math.round).join(' ');
      return {
        size:
          x.width === y.width && x.height === y.height
            ? 'same'
            : `${x.width} x ${x.height}, not ${y.width} x ${y.height}`,
        places: away.length,
        differ: away.filter((one) => one > 24).length,
        worst: `at ${16 * (most % x.width)}, ${16 * Math.floor(most / x.width)}: ${text(x.colours[most])}, not ${text(y.colours[most])}`,
      };
    },
    [found, kept] as const,
  );
}

const LOOKS: readonly (Options & { readonly name: string; readonly keys?: readonly string[] })[] = [
  { name: 'light-1280', width: 1280, height: 800 },
  { name: 'dark-1280', width: 1280, height: 800, dark: true },
  { name: 'light-360', width: 360, height: 740, touch: true },
  { name: 'dark-360', width: 360, height: 740, dark: true, touch: true },
  { name: 'light-1280-solid', width: 1280, height: 800, keys: ['3'] },
  { name: 'dark-1280-keys', width: 1280, height: 800, dark: true, keys: ['?'] },
];

for (const { name, keys = [], ...options } of LOOKS) {
  test(`${name} looks as it is kept`, async () => {
    const person = await (await Person.at(place, options)).ready();
    await person.page.getByRole('button', { name: 'Walkway' }).first().click();
    await person.press('.', '.', '.', ...keys);
    await person.page.locator('.lamp.on').nth(1).waitFor();
    await person.page.evaluate(() => (document.activeElement as HTMLElement | null)?.blur());
    await person.frame();
    const found = await reduced((await person.page.screenshot({ fullPage: true })).toString('base64'));
    const file = `${FOLDER}${name}.png`;
    if (KEEPS) {
      mkdirSync(FOLDER, { recursive: true });
      writeFileSync(file, Buffer.from(found, 'base64'));
    }
    expect(existsSync(file), `${file} is kept`).toBe(true);
    const { size, places, differ, worst } = await difference(found, readFileSync(file).toString('base64'));
    expect(size).toBe('same');
    expect(differ / places, `${differ} of ${places} places differ, most ${worst}`).toBeLessThan(0.015);
    await person.leave();
  });
}
