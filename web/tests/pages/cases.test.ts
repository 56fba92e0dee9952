// The cases that every face is held to (tests/cases), answered by the engine in this browser.

import { existsSync, readdirSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { build } from 'vite';
import { expect, test } from 'vitest';
import { type Answer, type Case, lackOf, wanted, wordsOf } from '../../engine/tests/answers';
import type { Packed } from '../../engine/tests/inPage';
import { openPlace } from './page';

const at = (path: string): string => fileURLToPath(new URL(`../../${path}`, import.meta.url));
const FOLDER = at('../tests/cases');

function packed(name: string): Packed {
  const files = readdirSync(join(FOLDER, name)).map((file) => [
    file,
    readFileSync(join(FOLDER, name, file)).toString('base64'),
  ]);
  const asked = JSON.parse(readFileSync(join(FOLDER, name, 'case.json'), 'utf8')) as Case;
  return { name, asked, files: Object.fromEntries(files) as Record<string, string> };
}

async function script(): Promise<string> {
  const built = await build({
    configFile: false,
    logLevel: 'silent',
    build: {
      write: false,
      target: 'es2022',
      lib: { entry: at('engine/tests/inPage.ts'), formats: ['iife'], name: 'cases' },
    },
  });
  const [{ output }] = built as unknown as [{ output: [{ code: string }] }];
  return output[0].code;
}

test('every case that the engine has words for is answered in the browser as it is written down', async () => {
  const all = readdirSync(FOLDER)
    .filter((name) => existsSync(join(FOLDER, name, 'case.json')))
    .map(packed);
  const cases = all.filter(({ asked }) => lackOf(wordsOf(asked.options ?? [])) === null);
  expect(cases.length).toBeGreaterThan(200);
  const place = await openPlace();
  const page = await place.browser.newPage();
  await page.addScriptTag({ content: await script() });
  const engine = readFileSync(at('engine/engine.wasm')).toString('base64');
  const answers = await page.evaluate(
    ([bytes, list]) =>
      (
        window as unknown as { answersOf: (engine: string, cases: Packed[]) => Promise<Record<string, Answer>> }
      ).answersOf(bytes, list),
    [engine, cases] as const,
  );
  for (const { name, asked } of cases) expect(answers[name], name).toEqual(wanted(asked));
  await place.close();
});
