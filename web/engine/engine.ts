// The engine as a page uses it.

import { EngineError } from './module';
import { READY, type Call, type Reply, type Request } from './protocol';
import type { Port } from './serve';
import type { Count, Engine, Progress, RunHooks, SessionOptions } from './types';

export { EngineError };
export * from './types';

/** Starts a worker, and gives the engine when it is ready. */
export function openEngine(): Promise<Engine> {
  const worker = new Worker(new URL('./worker.ts', import.meta.url), { type: 'module', name: 'engine' });
  return new Promise((resolve, reject) => {
    worker.onerror = ({ message }) =>
      reject(new EngineError({ message, path: '', line: 0, column: 0, reason: message }));
    connect(worker as unknown as Port, () => worker.terminate()).then(resolve, reject);
  });
}

interface Waiting {
  resolve(result: unknown): void;
  reject(error: unknown): void;
  onProgress?: ((progress: Progress) => void) | undefined;
}

/** A count that waits for the one that is under way. */
interface Next {
  start(): void;
  drop(): void;
}

/** The engine behind a port; rejects when it cannot be loaded. */
export async function connect(port: Port, close: () => void): Promise<Engine> {
  const waiting = new Map<number, Waiting>();
  let last = READY;
  const ready = new Promise<unknown>((resolve, reject) => waiting.set(READY, { resolve, reject }));

  port.onmessage = ({ data }) => {
    const reply = data as Reply;
    const entry = waiting.get(reply.id);
    if (!entry) {
      return;
    }
    if ('progress' in reply) {
      entry.onProgress?.(reply.progress);
      return;
    }
    waiting.delete(reply.id);
    if ('refusal' in reply) {
      entry.reject(new EngineError(reply.refusal));
    } else {
      entry.resolve(reply.result);
    }
  };

  const send = (call: Call | 'run', args: readonly unknown[], hooks: RunHooks = {}): Promise<never> => {
    const id = ++last;
    return new Promise<unknown>((resolve, reject) => {
      const abort = () => port.postMessage({ id, call: 'cancel' } satisfies Request, []);
      hooks.signal?.addEventListener('abort', abort, { once: true });
      const done = () => hooks.signal?.removeEventListener('abort', abort);
      waiting.set(id, {
        resolve: (result) => (done(), resolve(result)),
        reject: (error) => (done(), reject(error as Error)),
        onProgress: hooks.onProgress,
      });
      port.postMessage({ id, call, args } as Request, []);
      if (hooks.signal?.aborted) {
        abort();
      }
    }) as Promise<never>;
  };

  const underWay = new Map<number, Next | null>(); // by scene, what waits for it

  const count = (scene: number, text: string, options: { verdicts?: boolean } = {}): Promise<Count | null> =>
    new Promise((resolve, reject) => {
      const start = () => {
        underWay.set(scene, null);
        send('count', [scene, text, options]).then(resolve, reject).finally(() => {
          const next = underWay.get(scene);
          underWay.delete(scene);
          next?.start();
        });
      };
      if (underWay.has(scene)) {
        underWay.get(scene)?.drop();
        underWay.set(scene, { start, drop: () => resolve(null) });
      } else {
        start();
      }
    });

  await ready;
  return {
    version: () => send('version', []),
    check: (text) => send('check', [text]),
    planSvg: (text, options) => send('planSvg', [text, options]),
    openFrame: (source, options) => send('openFrame', [source, options]),
    openPoints: (x, y, z) => send('openPoints', [x, y, z]),
    openMoment: (recording, moment, options) => send('openMoment', [recording, moment, options]),
    closeScene: (scene) => send('closeScene', [scene]),
    count,
    heights: (scene, bins) => send('heights', [scene, bins]),
    openRecording: (files, options) => send('openRecording', [files, options]),
    closeRecording: (recording) => send('closeRecording', [recording]),
    run: (recording, text, options: SessionOptions = {}, hooks = {}) => send('run', [recording, text, options], hooks),
    objectsAt: (recording, moment) => send('objectsAt', [recording, moment]),
    eventTable: (session) => send('eventTable', [session]),
    closeSession: (session) => send('closeSession', [session]),
    explainZones: (recording, text, moment, options) => send('explainZones', [recording, text, moment, options]),
    explainLine: (recording, text, line, moment, options) =>
      send('explainLine', [recording, text, line, moment, options]),
    explainTrack: (recording, text, line, track, moment, options) =>
      send('explainTrack', [recording, text, line, track, moment, options]),
    close: () => {
      close();
      for (const entry of waiting.values()) {
        entry.reject(new EngineError({ message: 'closed', path: '', line: 0, column: 0, reason: 'closed' }));
      }
      waiting.clear();
    },
  };
}
