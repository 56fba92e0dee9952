import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { vi } from 'vitest';

import { EngineCore } from '../core';

export { runAll } from './answers';

export const ROOT = fileURLToPath(new URL('../../../', import.meta.url));

// The machine may be small and busy.
vi.setConfig({ testTimeout: 120000, hookTimeout: 120000 });

const bytes = readFileSync(new URL('../engine.wasm', import.meta.url));

export const compiled = new WebAssembly.Module(bytes);

/** A module of its own. */
export function loadCore(): Promise<EngineCore> {
  return EngineCore.load(compiled);
}

export function fileOf(path: string, name = path): { name: string; bytes: Uint8Array } {
  return { name, bytes: new Uint8Array(readFileSync(path)) };
}
