import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import type { AxeResults } from 'axe-core';
import { afterAll, beforeAll, describe, expect, test } from 'vitest';
import { dropFiles, openPlace, type Options, Person, type Place } from './page';

let place: Place;
beforeAll(async () => {
  place = await openPlace();
});
afterAll(() => place.close());

const AXE = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');

async function faultsOf(person: Person): Promise<string[]> {
  // The page's own policy forbids foreign scripts, so the checker comes in through the debugger.
  await person.page.evaluate(`if (!window.axe) { ${AXE} }; 0`);
  const found = await person.page.evaluate(async () => {
    const { axe } = window as unknown as { axe: { run: (options: object) => Promise<AxeResults> } };
    return (await axe.run({ runOnly: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa'] })).violations;
  });
  return found.map(
    (one) =>
      `${one.id}: ${one.nodes
        .map((node) => `${node.target.join(' ')} ${node.any[0]?.message ?? ''}`)
        .slice(0, 3)
        .join(' | ')}`,
  );
}

/** Pairs of names on the plan, with what stands beneath them, that cover each other by more than the air around letters. */
function coveredNames(person: Person): Promise<string[]> {
  return person.page.evaluate(() => {
    const air = 3;
    const shown = [...document.querySelectorAll('.labels text')].map((text) => ({
      name: text.textContent,
      box: text.getBoundingClientRect(),
    }));
    return shown.flatMap(({ name, box: a }, i) =>
      shown
        .slice(i + 1)
        .filter(({ box: b }) => Math.min(a.right, b.right) - Math.max(a.left, b.left) > air)
        .filter(({ box: b }) => Math.min(a.bottom, b.bottom) - Math.max(a.top, b.top) > air)
        .map((other) => `${name} and ${other.name}`),
    );
  });
}

const SIZES: readonly (Options & { readonly name: string })[] = [
  { name: 'light', width: 1280, height: 800 },
  { name: 'dark', width: 1280, height: 800, dark: true },
  { name: 'small', width: 360, height: 740, touch: true },
  { name: 'small-dark', width: 360, height: 740, dark: true, touch: true },
  { name: 'large', width: 2560, height: 1440 },
];

describe('how it looks', () => {
  for (const options of SIZES) {
    test(`${options.name}: nothing is cut off at the side, and axe finds nothing in any panel`, async () => {
      const person = await (await Person.at(place, options)).ready();
      await person.page.getByRole('button', { name: 'Walkway' }).first().click();
      await person.frame();
      expect(await person.page.evaluate(() => document.documentElement.scrollWidth - innerWidth)).toBeLessThanOrEqual(
        0,
      );
      const plan = await person.page.locator('.plan').boundingBox();
      expect(plan!.width).toBeGreaterThan(options.width! * 0.5);
      expect(plan!.height).toBeGreaterThan(options.height! * 0.4);
      expect(await person.page.locator('.labels text').count()).toBeGreaterThan(4);
      expect(await coveredNames(person)).toEqual([]);
      await person.picture(options.name);
      for (const tab of ['Zones', 'Findings', 'Events', 'Explain', 'Text']) {
        await person.page.getByRole('tab', { name: tab }).click();
        if (tab === 'Explain')
          await person.page
            .getByRole('button', { name: 'All zones' })
            .click()
            .then(() => person.page.locator('.explain pre').waitFor());
        await person.frame();
        expect(await faultsOf(person), tab).toEqual([]);
        if (tab !== 'Zones') await person.picture(`${options.name}-${tab.toLowerCase()}`);
      }
      await person.leave();
    });
  }

  test('the view in three dimensions, and drawing', async () => {
    const person = await (await Person.at(place)).ready();
    await person.press('3');
    await person.page.waitForTimeout(300);
    await expect.poll(() => person.page.locator('.volume').count(), { timeout: 10000 }).toBe(11);
    const before = await person.page.locator('.volume .rim').first().getAttribute('d');
    const box = (await person.page.locator('.solid').boundingBox())!;
    await person.page.mouse.move(box.x + 300, box.y + 300);
    await person.page.mouse.down();
    await person.page.mouse.move(box.x + 200, box.y + 250, { steps: 3 });
    await person.page.mouse.up();
    await person.frame();
    expect(await person.page.locator('.volume .rim').first().getAttribute('d')).not.toBe(before);
    expect(await faultsOf(person)).toEqual([]);
    await person.picture('solid');
    await person.press('3', 'p');
    for (const p of [
      { x: 20, y: 14 },
      { x: 24, y: 14 },
    ])
      await person.click(p);
    await person.page.mouse.move((await person.pixel({ x: 24, y: 18 })).x, (await person.pixel({ x: 24, y: 18 })).y);
    await person.frame();
    expect(await faultsOf(person)).toEqual([]);
    await person.picture('drawing');
    await person.press('Escape', 'Escape', '?');
    expect(await faultsOf(person)).toEqual([]);
    await person.picture('keys');
    await person.leave();
  });

  test('axe finds nothing in what else can be seen', async () => {
    const person = await (await Person.at(place, { dark: true })).ready();
    await person.page.getByText('More', { exact: true }).click();
    expect(await faultsOf(person), 'menu').toEqual([]);
    await person.page.getByText('More', { exact: true }).click();
    await dropFiles(person, [{ name: 'cut.pcd', text: 'VERSION 0.7' }]);
    await person.page.locator('.message.error').waitFor();
    expect(await faultsOf(person), 'refusal').toEqual([]);
    await dropFiles(person, [{ name: 'few.xyz', text: 'x y z intensity\n11 7 1 5\n0 0 0 1\n' }]);
    await person.page.getByText('Drop a recording here to play it.').waitFor();
    await person.page.getByLabel('Points by').selectOption('intensity');
    await person.page.locator('.bar input[type=checkbox]').check();
    expect(await faultsOf(person), 'a frame alone').toEqual([]);
    await person.picture('frame-alone');
    await dropFiles(person, [{ name: 'bad.json', text: '{"ZoneDetector": {"sensitivity": 60}' }]);
    await person.page.locator('.textpanel .wrong').waitFor();
    expect(await faultsOf(person), 'no JSON').toEqual([]);
    await person.leave();
  });

  test('points are drawn, lit where they count, by the loop and by the card alike', async () => {
    const counts: Record<string, number> = {};
    for (const way of ['loop', 'card']) {
      const person = await (await Person.at(place, { query: `?points=${way}` })).ready();
      await person.page.waitForTimeout(400);
      counts[way] = await person.page.evaluate(() => {
        const canvas = document.querySelector<HTMLCanvasElement>('.plan canvas')!;
        const copy = document.createElement('canvas');
        [copy.width, copy.height] = [canvas.width, canvas.height];
        const context = copy.getContext('2d')!;
        context.drawImage(canvas, 0, 0);
        const { data } = context.getImageData(0, 0, copy.width, copy.height);
        let lit = 0;
        for (let i = 0; i < data.length; i += 4)
          if (data[i] === 0xb8 && data[i + 1] === 0x50 && data[i + 2] === 0x0c) ++lit;
        return lit;
      });
      await person.leave();
    }
    expect(counts['loop']).toBeGreaterThan(50);
    expect(Math.abs(counts['card']! - counts['loop']!)).toBeLessThan(0.15 * counts['loop']!);
  });
});

describe('it stays on this computer', () => {
  test('nothing is asked of any other host, and the policy forbids it', async () => {
    const person = await Person.at(place);
    const asked: string[] = [];
    person.page.on('request', (request) => asked.push(request.url()));
    await person.page.reload();
    await person.ready();
    expect(asked.filter((url) => !url.startsWith(place.address) && !url.startsWith('blob:'))).toEqual([]);
    const refused = await person.page.evaluate(() =>
      fetch('http://127.0.0.1:1/').then(
        () => 'asked',
        (error: unknown) => String(error),
      ),
    );
    expect(refused).toContain('TypeError');
    expect(person.faults.some((fault) => fault.includes('Content Security Policy'))).toBe(true);
    await person.leave();
  });

  test('works without a network once it was opened', async () => {
    const person = await (await Person.at(place)).ready();
    await person.page.evaluate(() => navigator.serviceWorker.ready);
    await person.page.waitForFunction(() => navigator.serviceWorker.controller !== null);
    await person.context.setOffline(true);
    await person.page.reload();
    await person.ready();
    expect(await person.page.locator('.labels').textContent()).toContain('Walkway');
    await person.leave();
  });
});
