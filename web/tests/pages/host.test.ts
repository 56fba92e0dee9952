// The page as `zone-detector studio` serves it: with the files that were named, and saving back to the document.

import { type ChildProcess, spawn } from 'node:child_process';
import { copyFileSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { afterEach, beforeEach, describe, expect, test } from 'vitest';
import { crossing } from '../unit/example';
import { openPlace, Person, type Place } from './page';

const file = (path: string): string => fileURLToPath(new URL(`../../../${path}`, import.meta.url));
const COMMAND = process.env['ZONE_DETECTOR'] ?? file('build/release/apps/zone-detector/zone-detector');
const EXAMPLE = file('web/dist/example/');

let folder: string;
let served: ChildProcess;
let place: Place;
let person: Person;

beforeEach(async () => {
  folder = mkdtempSync(join(tmpdir(), 'studio-'));
  writeFileSync(join(folder, 'site.json'), crossing);
  for (const name of ['frame_00.pcd', 'frame_01.pcd', 'tracks.csv']) copyFileSync(EXAMPLE + name, join(folder, name));
  const words = ['studio', 'site.json', 'frame_00.pcd', 'frame_01.pcd', '--tracks', 'tracks.csv', '--no-browser'];
  served = spawn(COMMAND, [...words, '--page', file('web/dist')], { cwd: folder });
  const address = await new Promise<string>((done) => served.stdout!.once('data', (text) => done(String(text).trim())));
  const other = await openPlace();
  place = { ...other, address };
  person = await Person.at(place);
  await person.page.getByText('frame_00.pcd and 2 more').waitFor();
});

afterEach(async () => {
  await person.leave();
  await place.close();
  served.kill('SIGINT');
  rmSync(folder, { recursive: true });
});

describe('served by the command', () => {
  const rename = async (name: string): Promise<void> => {
    await person.page.getByRole('button', { name: 'Walkway' }).first().click();
    const field = person.page.getByRole('textbox', { name: /^name/ });
    await field.fill(name);
    await field.press('Enter');
    await person.frame();
  };
  const saved = (): string => readFileSync(join(folder, 'site.json'), 'utf8');

  test('saves to the document that was named, and changes nothing else in it', async () => {
    await rename('Footpath');
    await person.press('Control+s');
    await person.page.getByText('site.json is saved.').waitFor();
    expect(saved()).toBe(crossing.replace('"Walkway"', '"Footpath"'));
  });

  test('does not write over what another program wrote meanwhile', async () => {
    writeFileSync(join(folder, 'site.json'), '{}\n');
    await rename('Footpath');
    await person.press('Control+s');
    await person.page.getByText('Not saved: the file was changed by another program').waitFor();
    expect(saved()).toBe('{}\n');
    person.faults.length = 0; // the browser tells the refusal as an error of its own
  });
});
