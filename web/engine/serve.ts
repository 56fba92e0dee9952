// The worker's side of the protocol, over anything that carries messages.

import { EngineError } from './module';
import { READY, type Reply, type Request } from './protocol';
import type { EngineCore } from './core';
import type { Refusal } from './types';

export interface Port {
  postMessage(message: unknown, transfer: Transferable[]): void;
  onmessage: ((event: { data: unknown }) => void) | null;
}

// So long an edit waits for a run at most.
const STEP = 6;

export function serve(port: Port, loading: Promise<EngineCore>): void {
  const cancelled = new Set<number>();
  const reply = (message: Reply) => port.postMessage(message, 'result' in message ? buffersOf(message.result) : []);

  loading.then(
    (core) => reply({ id: READY, result: core.version() }),
    (error: unknown) => reply({ id: READY, refusal: refusalOf(error) }),
  );
  port.onmessage = async ({ data }) => {
    const request = data as Request;
    if (request.call === 'cancel') {
      cancelled.add(request.id);
      return;
    }
    try {
      const core = await loading;
      const result = request.call === 'run' ? await run(core, request) : call(core, request);
      reply({ id: request.id, result });
    } catch (error) {
      reply({ id: request.id, refusal: refusalOf(error) });
    } finally {
      cancelled.delete(request.id);
    }
  };

  async function run(core: EngineCore, request: Request & { call: 'run' }) {
    const running = core.startRun(...request.args);
    try {
      while (core.stepRun(running, STEP)) {
        reply({ id: request.id, progress: core.progressOf(running) });
        await others();
        if (cancelled.has(request.id)) {
          throw new EngineError({ message: 'cancelled', path: '', line: 0, column: 0, reason: 'cancelled' });
        }
      }
      return core.resultOf(running);
    } catch (error) {
      core.closeSession(running.run);
      throw error;
    }
  }
}

function call(core: EngineCore, request: Exclude<Request, { call: 'run' | 'cancel' }>): unknown {
  const method = core[request.call] as (...args: unknown[]) => unknown;
  return method.apply(core, [...request.args]);
}

/** Lets the messages that came meanwhile be answered. */
function others(): Promise<void> {
  return new Promise((resolve) => {
    const { port1, port2 } = new MessageChannel();
    port1.onmessage = () => {
      port1.close();
      resolve();
    };
    port2.postMessage(null);
  });
}

function refusalOf(error: unknown): Refusal {
  if (error instanceof EngineError) {
    const { message, path, line, column, reason } = error;
    return { message, path, line, column, reason };
  }
  const message = error instanceof Error ? error.message : String(error);
  return { message, path: '', line: 0, column: 0, reason: message };
}

/** The arrays of a result and of what it holds: they change hands and are not copied. */
function buffersOf(result: unknown): Transferable[] {
  if (ArrayBuffer.isView(result)) {
    return [result.buffer as ArrayBuffer];
  }
  if (typeof result === 'object' && result !== null && !Array.isArray(result)) {
    return Object.values(result).flatMap(buffersOf);
  }
  return [];
}
