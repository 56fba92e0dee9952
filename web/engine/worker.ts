// Owns the module, and answers a page call by call.

import { EngineCore } from './core';
import { serve, type Port } from './serve';

async function load(): Promise<EngineCore> {
  const answer = await fetch(new URL('./engine.wasm', import.meta.url));
  if (!answer.ok) {
    throw new Error(`the engine cannot be loaded: ${answer.status} ${answer.statusText}`);
  }
  return EngineCore.load(await answer.arrayBuffer());
}

serve(self as unknown as Port, load());
