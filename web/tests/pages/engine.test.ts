import { describe, expect, test } from 'vitest';
import { crossing } from '../unit/example';
import { openForEveryTest, person } from './everyTest';
import { dropFiles } from './page';

openForEveryTest();

const note = (name: string): Promise<string | null> =>
  person.page.locator(`[data-label="${name}"] .note`).textContent();
const walkway = 'ZoneDetector/EvaluationField[0]/Zone[0]';
const tab = async (name: string): Promise<void> => {
  await person.page.getByRole('tab', { name }).click();
  await person.page.getByRole('tab', { name, selected: true }).waitFor();
};

describe('known at once', () => {
  test('counts follow a corner while it is dragged', async () => {
    const before = Number.parseInt((await note(walkway))!, 10);
    await person.click({ x: 11, y: 9.5 });
    const [a, b] = [await person.pixel({ x: 8.6, y: 4 }), await person.pixel({ x: 12.5, y: 4 })];
    await person.page.mouse.move(a.x, a.y);
    await person.page.mouse.down();
    await person.page.mouse.move(b.x, b.y, { steps: 5 });
    await person.page.waitForFunction(
      ([id, was]) => Number.parseInt(document.querySelector(`[data-label="${id}"] .note`)!.textContent!, 10) !== was,
      [walkway, before] as const,
    );
    await person.press('Escape');
    await person.page.mouse.up();
    await person.page.waitForFunction(
      ([id, was]) => Number.parseInt(document.querySelector(`[data-label="${id}"] .note`)!.textContent!, 10) === was,
      [walkway, before] as const,
    );
    expect(await person.text()).toBe(crossing);
  });

  test('crossing edges are red while they are dragged; the list jumps to the shape', async () => {
    await person.click({ x: 11, y: 9.5 });
    await person.drag({ x: 8.6, y: 4 }, { x: 16, y: 9 });
    await person.page.locator('.crossing').first().waitFor();
    await person.page.locator('.labels tspan.warning').waitFor();
    await person.click({ x: -5, y: 15 });
    await tab('Findings');
    const finding = person.page.locator('.findings li.warning button').first();
    expect(await finding.textContent()).toContain('crosses edge');
    await finding.click();
    await person.frame();
    expect(await person.page.locator('.area.selected').getAttribute('data-id')).toBe(walkway);
  });

  test('a finding without a shape leads to its line of the text', async () => {
    await tab('Text');
    await person.page.locator('textarea.document').fill(crossing.replace('"sensitivity": 6', '"sensitivity": 60'));
    await tab('Findings');
    await person.page.locator('.findings li.error button').first().click();
    await person.page.waitForTimeout(150);
    const selected = await person.page.evaluate(() => {
      const area = document.activeElement as HTMLTextAreaElement;
      return area.value.slice(area.selectionStart, area.selectionStart + 2);
    });
    expect(selected).toBe('60');
  });

  test('the outputs of the active field are lamps', async () => {
    const lamps = (): Promise<string[]> => person.page.locator('.lamp').allTextContents();
    // Not before the debounce time is over.
    expect(await lamps()).toEqual(['Walkway: clear, low', 'Near kerb: clear, low', 'Far kerb: clear, low']);
    await person.press('.', '.', '.');
    expect(await lamps()).toEqual(['Walkway: occupied, high', 'Near kerb: occupied, high', 'Far kerb: clear, low']);
    await expect.poll(() => person.page.locator('.lamp.on').count(), { timeout: 10000 }).toBe(2);
    await person.page.getByLabel('Active field').selectOption('1');
    await person.frame();
    expect((await lamps())[2]).toBe('output 2: no zone');
  });
});

describe('seen', () => {
  test('points that an exclusion zone took are struck through; heights stand in a histogram', async () => {
    const taken = (): Promise<string | null> => person.page.locator('path.taken').getAttribute('d');
    await expect.poll(async () => (await taken())!.length).toBeGreaterThan(10);
    expect(await person.page.locator('.legend').innerText()).toContain('taken by an exclusion zone');
    expect((await person.page.locator('.histogram').getAttribute('d'))!.length).toBeGreaterThan(50);
    expect(await person.page.locator('.scale text').textContent()).toMatch(/^\d+(\.\d+)? m$/);
    expect(await person.page.locator('.plan .ticks text').count()).toBeGreaterThan(5);
    expect(await person.page.locator('.origin').count()).toBe(1);
  });
});

describe('playing', () => {
  test('seek, step and play move the cursor, the objects and the points', async () => {
    expect(await person.page.locator('.transport output').textContent()).toBe('0.00 s, 1 of 20');
    await person.press('.', '.');
    expect(await person.page.locator('.transport output').textContent()).toBe('0.20 s, 3 of 20');
    await person.page.locator('.objects [data-object="7"]').waitFor({ state: 'attached' });
    const at = (): Promise<string | null> => person.page.locator('.objects [data-object="7"] path').getAttribute('d');
    const before = await at();
    await person.press(',');
    await person.page.waitForFunction(
      (was) => document.querySelector('.objects [data-object="7"] path')!.getAttribute('d') !== was,
      before,
    );
    await person.page.getByRole('button', { name: 'Play' }).click();
    await person.page.waitForFunction(() =>
      /1\.\d\d s/.test(document.querySelector('.transport output')!.textContent!),
    );
    await person.page.getByRole('button', { name: 'Pause' }).click();
  });

  test('events are a list that leads to their moment', async () => {
    await tab('Events');
    const crossed = person.page.locator('.events li button', { hasText: 'crossed line "Crossing"' });
    await expect.poll(() => crossed.count(), { timeout: 10000 }).toBe(2);
    expect(await crossed.first().evaluate((button) => button.lastChild!.textContent)).toMatch(/^\d/);
    await crossed.first().click();
    await person.frame();
    await expect
      .poll(() => person.page.locator('.transport output').textContent(), { timeout: 10000 })
      .not.toBe('0.00 s, 1 of 20');
    await expect.poll(() => person.page.locator('.crossed').count(), { timeout: 10000 }).toBe(5);
  });

  test('explains zones, lines and tracks in words', async () => {
    await tab('Explain');
    await person.page.getByRole('button', { name: 'All zones' }).click();
    await person.page.locator('.explain pre').waitFor();
    expect(await person.page.locator('.explain pre').textContent()).toContain('Walkway');
    await person.page.getByRole('button', { name: 'Crossing', exact: true }).click();
    await person.page.getByText('Line Crossing, moment').waitFor();
    await person.page.locator('.explain summary').click();
    await person.page.getByRole('button', { name: 'Track 1 at Crossing' }).click();
    await person.page.getByText('Track 1 at line Crossing').waitFor();
    expect((await person.page.locator('.explain pre').textContent())!.length).toBeGreaterThan(50);
  });
});

describe('what if', () => {
  test('a moved line loses its events, and the list says which', async () => {
    await tab('Events');
    expect(await person.page.locator('.events .note').first().textContent()).toContain('0 gained and 0 lost');
    await person.click({ x: 8.8, y: 7.5 });
    await person.drag({ x: 8.8, y: 7.5 }, { x: 8.8, y: 19.5 });
    await person.page.getByText('2 lost against the document as opened').waitFor();
    expect(await person.page.locator('.transport .note').textContent()).toBe(
      '2 events differ from the document as opened',
    );
    await expect.poll(() => person.page.locator('.events .lost').count(), { timeout: 10000 }).toBe(2);
    await person.press('Control+z');
    await person.page.getByText('0 gained and 0 lost').waitFor();
  });

  test('the sliders of sensitivity and debounce evaluate again; one step each', async () => {
    await person.page.locator('.options').scrollIntoViewIfNeeded();
    const slider = person.page.getByLabel('Debounce', { exact: true });
    await slider.focus();
    await person.press('Home');
    await tab('Events');
    await person.page.locator('.events .gained').first().waitFor();
    await person.press('Control+z');
    await person.page.getByText('0 gained and 0 lost').waitFor();
    expect(await person.text()).toBe(crossing);
  });

  test('the time line has what was before beneath what is', async () => {
    expect(await person.page.locator('.row .was').count()).toBe(0);
    const now = person.page.locator(`[data-row="${walkway}"]`);
    const before = await now.getAttribute('d');
    await person.click({ x: 11, y: 9.5 });
    await person.drag({ x: 11, y: 9.5 }, { x: 24, y: 9.5 });
    await expect.poll(() => now.getAttribute('d')).not.toBe(before);
    // The bars of before begin where those of now began.
    const was = await person.page.locator('.row .was').first().getAttribute('d');
    expect(was!.split(' ')[0]).toBe(before!.split(' ')[0]);
  });

  test('another document lies beneath, dashed, and its events beside', async () => {
    const [chooser] = await Promise.all([
      person.page.waitForEvent('filechooser'),
      person.page
        .getByText('More', { exact: true })
        .click()
        .then(() => person.page.getByRole('button', { name: 'Compare with another document' }).click()),
    ]);
    const other = crossing.replace(
      '"first": { "x": 8.3, "y": 7.5 }, "second": { "x": 13.7, "y": 7.5 }',
      '"first": { "x": 8.3, "y": 19 }, "second": { "x": 13.7, "y": 19 }',
    );
    await chooser.setFiles({ name: 'other.json', mimeType: 'application/json', buffer: Buffer.from(other) });
    await person.page.locator('.ghost path').first().waitFor({ state: 'attached' });
    await tab('Events');
    await person.page.getByText('2 gained and 0 lost against other.json').waitFor();
    expect(await person.text()).toBe(crossing);
  });
});

describe('single frames', () => {
  test('points of a frame alone are counted, without a time line', async () => {
    await dropFiles(person, [{ name: 'two.xyz', text: '11 7 1\n11 8 1\n0 0 9\n' }]);
    await person.page.getByText('Drop a recording here to play it.').waitFor();
    await person.page.waitForFunction(
      (id) => document.querySelector(`[data-label="${id}"] .note`)?.textContent === '2 points',
      walkway,
    );
  });
});
