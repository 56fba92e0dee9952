import { readFileSync } from 'node:fs';
import { describe, expect, test } from 'vitest';
import { crossing } from '../unit/example';
import { openForEveryTest, person, place } from './everyTest';
import { dropFiles, Person } from './page';

openForEveryTest();

const rename = async (name: string): Promise<void> => {
  await person.page.getByRole('button', { name: 'Walkway' }).first().click();
  const field = person.page.getByRole('textbox', { name: /^name/ });
  await field.fill(name);
  await field.press('Enter');
  await person.frame();
};

async function download(act: () => Promise<void>): Promise<{ name: string; bytes: Buffer }> {
  const [file] = await Promise.all([person.page.waitForEvent('download'), act()]);
  return { name: file.suggestedFilename(), bytes: readFileSync(await file.path()) };
}

const more = async (name: string): Promise<void> => {
  await person.page.getByText('More', { exact: true }).click();
  await person.page.getByRole('button', { name }).click();
};

describe('keeping', () => {
  test('saves the same bytes, as a download where the browser opens no files for writing', async () => {
    await person.page.evaluate(() => Object.assign(window, { showSaveFilePicker: undefined }));
    let saved = await download(() => person.press('Control+s'));
    expect([saved.name, saved.bytes.toString()]).toEqual(['crossing.json', crossing]);
    await rename('Füßweg');
    expect(await person.page.locator('.file').textContent()).toContain('not saved');
    saved = await download(() => person.press('Control+s'));
    expect(saved.bytes.toString()).toBe(crossing.replace('"Walkway"', '"Füßweg"'));
    await person.frame();
    expect(await person.page.locator('.file').textContent()).not.toContain('not saved');
  });

  test('saves into the file that was opened, whole', async () => {
    await person.page.evaluate(() => {
      const written: string[] = [];
      const handle = {
        name: 'kept.json',
        getFile: () => Promise.resolve(new File([written.at(-1) ?? ''], 'kept.json', { lastModified: 7 })),
        createWritable: () => {
          let text = '';
          return Promise.resolve({
            write: (part: string) => Promise.resolve(void (text += part)),
            close: () => Promise.resolve(void written.push(text)),
            abort: () => Promise.resolve(),
          });
        },
      };
      Object.assign(window, { written, showSaveFilePicker: () => Promise.resolve(handle) });
    });
    await rename('Way');
    await person.press('Control+s', 'Control+s');
    expect(await person.page.evaluate(() => (window as unknown as { written: string[] }).written)).toEqual(
      Array(2).fill(crossing.replace('"Walkway"', '"Way"')),
    );
    expect(await person.message()).toBe('kept.json is saved.');
  });

  test('what cannot be written whole is given up, said, and stays unsaved', async () => {
    await person.page.evaluate(() => {
      const done: string[] = [];
      const handle = {
        name: 'full.json',
        getFile: () => Promise.resolve(new File([''], 'full.json')),
        createWritable: () =>
          Promise.resolve({
            write: () => Promise.reject(new Error('The disk is full.')),
            close: () => Promise.resolve(void done.push('closed')),
            abort: () => Promise.resolve(void done.push('given up')),
          }),
      };
      Object.assign(window, { done, showSaveFilePicker: () => Promise.resolve(handle) });
    });
    await rename('Way');
    await person.press('Control+s');
    expect(await person.message()).toBe('The disk is full.');
    expect(await person.page.evaluate(() => (window as unknown as { done: string[] }).done)).toEqual(['given up']);
    expect(await person.page.locator('.file').textContent()).toContain('not saved');
  });

  test('work that was not saved is here again after a crash, and can be undone', async () => {
    await rename('Way');
    await person.page.waitForTimeout(300);
    const page = await person.context.newPage();
    await page.goto(place.address);
    await page.getByText('that was not saved is here again').waitFor();
    await page.getByRole('tab', { name: 'Text' }).click();
    const area = page.locator('textarea.document');
    expect(await area.inputValue()).toBe(crossing.replace('"Walkway"', '"Way"'));
    await page.keyboard.press('Control+z');
    await page.waitForFunction(
      (text) => document.querySelector<HTMLTextAreaElement>('textarea.document')?.value === text,
      crossing,
    );
  });

  test('a link holds the document', async () => {
    await rename('Way');
    await more('Link that holds the document');
    await person.page.waitForFunction(() => location.hash.startsWith('#document='));
    const other = await Person.at(place, { query: new URL(person.page.url()).hash });
    await other.page.getByText('came with the link').waitFor();
    expect(await other.text()).toBe(crossing.replace('"Walkway"', '"Way"'));
    const broken = await Person.at(place, { query: new URL(person.page.url()).hash.slice(0, 60) });
    await broken.page.getByText('damaged or cut short').waitFor();
    expect(await broken.text()).toBe(crossing);
    await other.leave();
    await broken.leave();
  });

  test('the plan as SVG and PNG, the events as CSV', async () => {
    const svg = await download(() => more('Plan as SVG'));
    expect(svg.name).toBe('crossing.svg');
    expect(svg.bytes.toString()).toMatch(/^<svg [\s\S]*Walkway[\s\S]*<\/svg>\s*$/);
    const png = await download(() => more('Plan as PNG'));
    expect(png.bytes.subarray(1, 4).toString()).toBe('PNG');
    const csv = await download(() => more('Events as CSV'));
    expect(csv.bytes.toString().split('\n')[0]).toContain('stamp');
    expect(csv.bytes.toString()).toContain('Crossing');
  });
});

describe('opening', () => {
  test('files that are picked, by the dialogue for files or by an old one', async () => {
    const other = crossing.replace('"Walkway"', '"Elsewhere"');
    await person.page.evaluate((text) => {
      const handle = { getFile: () => Promise.resolve(new File([text], 'picked.json')) };
      Object.assign(window, { showOpenFilePicker: () => Promise.resolve([handle]) });
    }, other);
    await person.press('Control+o');
    await person.page.getByText('picked.json is open.').waitFor();
    expect(await person.text()).toBe(other);
    await person.page.evaluate(() => Object.assign(window, { showOpenFilePicker: undefined }));
    const chosen = person.page.waitForEvent('filechooser');
    await person.page.getByRole('button', { name: 'Open' }).click();
    await (
      await chosen
    ).setFiles([
      { name: 'b.xyz', mimeType: 'text/plain', buffer: Buffer.from('1 2 3\n') },
      { name: 'old.json', mimeType: 'application/json', buffer: Buffer.from(crossing) },
    ]);
    await person.page.getByText('b.xyz: 1 points').first().waitFor();
    expect(await person.text()).toBe(crossing);
  });

  test('a dropped document, which is a step that can be undone', async () => {
    await dropFiles(person, [{ name: 'other.json', text: crossing.replace('"Walkway"', '"Elsewhere"') }]);
    await person.page.getByText('other.json is open.').waitFor();
    expect(await person.page.locator('.labels').textContent()).toContain('Elsewhere');
    await person.press('Control+z');
    expect(await person.text()).toBe(crossing);
  });

  test('a dropped frame shows its points; what cannot be read is said, and the work before is still there', async () => {
    const pcd =
      'VERSION 0.7\nFIELDS x y z\nSIZE 4 4 4\nTYPE F F F\nCOUNT 1 1 1\nWIDTH 3\nHEIGHT 1\nPOINTS 3\nDATA ascii\n10 7 1\n10.5 7 1\nnan 0 0\n';
    await dropFiles(person, [{ name: 'few.pcd', text: pcd }]);
    await person.page.getByText('few.pcd: 3 points, 1 no returns').first().waitFor();
    await person.page.getByText('2 points', { exact: true }).waitFor();
    await rename('Way');
    for (const [name, text] of [
      ['cut.pcd', pcd.slice(0, 110)],
      ['bad.mcap', 'no recording'],
      ['bad.bag', '#ROSBAG V2.0\n\x01'],
      ['bad.ply', 'ply\nformat binary_little_endian 1.0\nelement vertex 4000000000\nend_header\n'],
    ] as const) {
      await dropFiles(person, [{ name, text }]);
      await person.page.locator('.message.error', { hasText: name }).waitFor();
      expect(await person.page.locator('.scenetext').textContent()).toContain('few.pcd');
    }
    expect(await person.text()).toBe(crossing.replace('"Walkway"', '"Way"'));
  });

  test('a bad document opens with its faults listed', async () => {
    await dropFiles(person, [{ name: 'bad.json', text: '{"ZoneDetector": {"debounceTimeMS": 1,}}' }]);
    await person.page.getByRole('tab', { name: 'Findings' }).click();
    await person.page.locator('.findings li').first().waitFor();
    expect(await person.page.locator('.findings li').first().textContent()).toContain('remove the comma');
    await person.press('Control+z');
    await person.page.getByText('Nothing is wrong with this document.').waitFor();
  });
});
