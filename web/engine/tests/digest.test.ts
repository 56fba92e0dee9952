// Points on the borders of zones, and a rounding step beside them: the same masks as on every machine, bit for bit.

import { readFileSync } from 'node:fs';
import { expect, test } from 'vitest';

import { Module } from '../module';
import { ROOT } from './load';

test('a million points on borders have the masks of every machine', async () => {
  const module = await Module.load(readFileSync(`${ROOT}build/wasm/web/engine/tests/digest.wasm`), {
    read: () => -1, unfold: () => ({ ending: -3, size: 0 }),
  });
  const digest = module.exports as unknown as { digest_wanted(): bigint; digest_found(): bigint };
  expect(BigInt.asUintN(64, digest.digest_found())).toBe(BigInt.asUintN(64, digest.digest_wanted()));
});
