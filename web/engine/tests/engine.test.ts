// The engine as a page sees it: behind messages.

import { readFileSync } from 'node:fs';
import { afterEach, beforeEach, expect, test } from 'vitest';

import { connect, EngineError, type Engine, type Progress } from '../engine';
import { serve, type Port } from '../serve';
import { loadCore, ROOT } from './load';

const crossing = readFileSync(`${ROOT}examples/crossing/crossing.json`, 'utf8');

// A page and its worker; what they say is copied, as between threads.
function pair(): { page: Port; worker: Port; close(): void } {
  const { port1, port2 } = new MessageChannel();
  const portOf = (port: MessagePort): Port => {
    const own: Port = {
      postMessage: (message, transfer) => port.postMessage(message, transfer),
      onmessage: null,
    };
    port.onmessage = (event) => own.onmessage?.(event);
    return own;
  };
  return { page: portOf(port1), worker: portOf(port2), close: () => (port1.close(), port2.close()) };
}

let engine: Engine;
beforeEach(async () => {
  const { page, worker, close } = pair();
  serve(worker, loadCore());
  engine = await connect(page, close);
});
afterEach(() => engine.close());

const frames = (count: number) =>
  Array.from({ length: count }, (_, i) => ({
    name: `f${i}.xyz`,
    bytes: new TextEncoder().encode(`${i % 2} 0 1\n`.repeat(200)),
  }));

test('it tells its version and the findings of a document', async () => {
  expect((await engine.version()).version).toMatch(/^\d+\.\d+\.\d+$/);
  const check = await engine.check('{"ZoneDetector": {}');
  expect(check.site).toBeNull();
  expect(check.findings[0]!.severity).toBe('error');
});

test('what is refused rejects with the place', async () => {
  const failed = await engine.openFrame({ name: 'a.xyz', bytes: new TextEncoder().encode('1 2 x\n') }).catch((e) => e);
  expect(failed).toBeInstanceOf(EngineError);
  expect({ path: failed.path, line: failed.line }).toEqual({ path: 'a.xyz', line: 1 });
  await expect(engine.openFrame({ name: 'a.doc', bytes: new Uint8Array(3) })).rejects.toThrow('unknown kind of file');
});

test('of the counts that wait only the newest is done', async () => {
  const scene = await engine.openPoints(new Float32Array(1000), new Float32Array(1000), new Float32Array(1000));
  const asked = Array.from({ length: 5 }, () => engine.count(scene.id, crossing));
  const answers = await Promise.all(asked);
  expect(answers.map((answer) => answer !== null)).toEqual([true, false, false, false, true]);
  expect(await engine.count(scene.id, crossing)).not.toBeNull();
});

test('a count that fails lets the next one through', async () => {
  const scene = await engine.openPoints(new Float32Array(1), new Float32Array(1), new Float32Array(1));
  const first = engine.count(scene.id, 'not JSON');
  const second = engine.count(scene.id, crossing);
  expect((await first)!.counts).toBeNull();
  expect((await second)!.counts).not.toBeNull();
});

test('a run tells its progress, and lets other calls in between', async () => {
  const recording = await engine.openRecording({ clouds: frames(600) });
  const seen: Progress[] = [];
  let answered = 0;
  const running = engine.run(recording.id, crossing, {}, {
    onProgress: (progress) => {
      seen.push(progress);
      void engine.check('{}').then(() => ++answered);
    },
  });
  const session = await running;
  expect(session.moments).toBe(600);
  expect(seen.length).toBeGreaterThan(0);
  expect(seen.map((progress) => progress.moments)).toEqual(seen.map((progress) => progress.moments).sort((a, b) => a - b));
  expect(answered).toBeGreaterThan(0);
});

test('a run can be cancelled, and run again', async () => {
  const recording = await engine.openRecording({ clouds: frames(600) });
  const stop = new AbortController();
  const running = engine.run(recording.id, crossing, {}, { signal: stop.signal, onProgress: () => stop.abort() });
  await expect(running).rejects.toThrow('cancelled');
  expect((await engine.run(recording.id, crossing)).moments).toBe(600);
});

test('what was closed is refused, and nothing else that lies where it was', async () => {
  const one = () => engine.openPoints(new Float32Array(9), new Float32Array(9), new Float32Array(9));
  const scene = await one();
  await engine.closeScene(scene.id);
  const other = await one();
  expect(other.id).not.toBe(scene.id);
  await expect(engine.count(scene.id, crossing)).rejects.toThrow(`scene ${scene.id} is not open`);
  await expect(engine.closeScene(scene.id)).rejects.toThrow(`scene ${scene.id} is not open`);
  await expect(engine.run(7, crossing)).rejects.toThrow('recording 7 is not open');
  await expect(engine.eventTable(7)).rejects.toThrow('session 7 is not open');
  expect((await engine.count(other.id, crossing))!.counts).not.toBeNull();
});

test('an option that is not known or not right is refused in words', async () => {
  const points = { name: 'a.xyz', bytes: new TextEncoder().encode('1 2 3\n') };
  const open = (options: object) => engine.openFrame(points, options);
  await expect(open({ minrange: 1 })).rejects.toThrow('there is no option "minrange"');
  await expect(open({ minRange: -1 })).rejects.toThrow('minRange must be a number from 0 up');
  await expect(open({ dropOrigin: 1 })).rejects.toThrow('dropOrigin must be true or false');
  const recording = await engine.openRecording({ clouds: [points] });
  const run = (options: object) => engine.run(recording.id, crossing, options);
  await expect(run({ activeField: 8 })).rejects.toThrow('activeField must be a number from 0 to 7');
  await expect(run({ activeField: 1.5 })).rejects.toThrow('activeField must be a whole number');
  await expect(run({ maxSpeed: 0 })).rejects.toThrow('maxSpeed must be a number above 0');
});

test('what is open when the engine closes is rejected', async () => {
  const { page, worker, close } = pair();
  serve(worker, loadCore());
  const other = await connect(page, close);
  const asked = other.check('{}');
  other.close();
  await expect(asked).rejects.toThrow('closed');
});

test('an engine that cannot be loaded says why', async () => {
  const { page, worker, close } = pair();
  serve(worker, Promise.reject(new Error('no such file')));
  await expect(connect(page, close)).rejects.toThrow('no such file');
  close();
});
