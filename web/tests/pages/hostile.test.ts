// Every file that the fuzzers begin with or have found is dropped on one page: each gets an answer in words, and the
// work before is still there.

import { existsSync, readdirSync, readFileSync } from 'node:fs';
import { basename, extname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { expect, test } from 'vitest';
import { crossing } from '../unit/example';
import { openPlace, Person } from './page';

const ROOT = fileURLToPath(new URL('../../../fuzz/', import.meta.url));
// What a person would have called it.
const ENDINGS: Readonly<Record<string, string>> = {
  bag: '.bag',
  mcap: '.mcap',
  records: '.bin',
  text: '.xyz',
  tracks: '.csv',
  pcd: '.pcd',
  ply: '.ply',
  las: '.las',
};

interface Seed {
  readonly name: string;
  readonly letters: string;
}

function seedsIn(folder: string): Seed[] {
  return readdirSync(folder, { withFileTypes: true })
    .filter((entry) => entry.isDirectory())
    .flatMap((kind) =>
      readdirSync(join(folder, kind.name)).map((file, i) => {
        const own = basename(file).replaceAll(' ', '_');
        const ending =
          extname(own) in { '.json': 0, '.csv': 0, '.txt': 0, '.pts': 0 } ? '' : (ENDINGS[kind.name] ?? '.json');
        return {
          name: `${kind.name}-${i}-${own}${own.endsWith(ending) ? '' : ending}`,
          letters: readFileSync(join(folder, kind.name, file)).toString('base64'),
        };
      }),
    );
}

interface Answer {
  readonly name: string;
  readonly text: string;
  readonly isError: boolean;
}

/** Drops each in the page itself, which is faster than by the debugger; what opened as a document is undone. */
async function dropAll(seeds: readonly Seed[]): Promise<Answer[]> {
  const message = document.querySelector('.message')!;
  const until = async (isSo: () => boolean, what: string): Promise<void> => {
    const begin = performance.now();
    while (!isSo()) {
      if (performance.now() - begin > 20000)
        throw new Error(`${what}: no answer; the page says "${message.textContent}"`);
      await new Promise((done) => setTimeout(done, 5));
    }
  };
  const answers: Answer[] = [];
  for (const { name, letters } of seeds) {
    const transfer = new DataTransfer();
    transfer.items.add(new File([Uint8Array.from(atob(letters), (c) => c.charCodeAt(0))], name));
    const event = new DragEvent('drop', { bubbles: true, cancelable: true, dataTransfer: transfer });
    document.querySelector('.plan')!.dispatchEvent(event);
    await until(() => message.textContent!.includes(name), name);
    const answer = { name, text: message.textContent!, isError: message.classList.contains('error') };
    answers.push(answer);
    if (answer.text !== `${name} is open.`) continue;
    document.body.dispatchEvent(new KeyboardEvent('keydown', { key: 'z', ctrlKey: true, bubbles: true }));
    await until(() => message.textContent === `Undone: Open ${name}`, name);
  }
  return answers;
}

test('every seed of the fuzzers gets an answer, and the work before is still there', async () => {
  const seeds = ['seeds', 'found']
    .map((name) => ROOT + name)
    .filter(existsSync)
    .flatMap(seedsIn);
  expect(seeds.length).toBeGreaterThan(150);
  const place = await openPlace();
  const person = await (await Person.at(place)).ready();
  await person.page.getByRole('button', { name: 'Walkway' }).first().click();
  const field = person.page.getByRole('textbox', { name: /^name/ });
  await field.fill('Way');
  await field.press('Enter');
  const work = crossing.replace('"Walkway"', '"Way"');
  expect(await person.text()).toBe(work);
  const answers = await person.page.evaluate(dropAll, seeds);
  expect(answers).toHaveLength(seeds.length);
  const refused = answers.filter((answer) => answer.isError);
  expect(refused.length).toBeGreaterThan(30);
  expect(refused.length).toBeLessThan(seeds.length - 30);
  // A refusal says more than which file it is.
  for (const { name, text } of refused) expect(text.replace(name, '').length, text).toBeGreaterThan(15);
  expect(await person.text()).toBe(work);
  await person.press('Control+z');
  expect(await person.text()).toBe(crossing);
  expect(person.faults).toEqual([]);
  await person.leave();
  await place.close();
});
