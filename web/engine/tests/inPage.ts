// The cases as a page answers them: built as one script, which a test loads into a browser.

import { EngineCore } from '../core';
import { answer, type Answer, type Case, wordsOf } from './answers';

/** A case with its files, whose bytes are letters of base 64. */
export interface Packed {
  readonly name: string;
  readonly asked: Case;
  readonly files: Readonly<Record<string, string>>;
}

const bytesOf = (letters: string) => Uint8Array.from(atob(letters), (letter) => letter.charCodeAt(0));

export async function answersOf(engine: string, cases: readonly Packed[]): Promise<Record<string, Answer>> {
  const core = await EngineCore.load(bytesOf(engine));
  return Object.fromEntries(cases.map(({ name, asked, files }) => {
    const read = (file: string) => bytesOf(files[file]!);
    const text = read(asked.document ?? 'site.json');
    return [name, answer({ core, asked, words: wordsOf(asked.options ?? []), text, read })];
  }));
}

Object.assign(globalThis, { answersOf });
