// The cases that every face is held to (tests/cases). What this face has no words for is told at the end.

import { existsSync, readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { afterAll, beforeAll, describe, expect, test } from 'vitest';

import type { EngineCore } from '../core';
import { answer, lackOf, wanted, wordsOf, type Case } from './answers';
import { loadCore, ROOT } from './load';

const folder = join(ROOT, 'tests/cases');
const names = readdirSync(folder).filter((name) => existsSync(join(folder, name, 'case.json')));

const lacking: string[] = [];

describe('cases', () => {
  let core: EngineCore;
  beforeAll(async () => {
    core = await loadCore();
  });
  afterAll(() => {
    console.log(`This face does not answer ${lacking.length} of ${names.length} cases:\n  ${lacking.join('\n  ')}`);
  });

  for (const name of names) {
    const read = (file: string) => new Uint8Array(readFileSync(join(folder, name, file)));
    const asked = JSON.parse(readFileSync(join(folder, name, 'case.json'), 'utf8')) as Case;
    const words = wordsOf(asked.options ?? []);
    const lack = lackOf(words);
    if (lack) {
      lacking.push(`${name}: ${lack}`);
      continue;
    }
    test(`${name}: ${asked.about}`, () => {
      const text = read(asked.document ?? 'site.json');
      expect(answer({ core, asked, words, text, read })).toEqual(wanted(asked));
    });
  }
});
