// The engine without a worker: every call is answered at once. A worker and the tests use it; a page uses engine.ts.

import { unfold } from './decoders/index';
import { Files, type FileEntry, type Slices } from './files';
import { Handles } from './handles';
import { Module } from './module';
import { NUM_SLOTS } from './types';
import type {
  Check, Count, EngineVersion, Explanation, FrameOptions, Progress, Recording, RecordingOptions, Scene, Session,
  SessionEvent, SessionOptions, Source, TrackedObject,
} from './types';

type AnySource = Source | Slices;

/** The numbers of a run, in the order in which the module gives them. */
const COLUMNS = {
  stamps: BigInt64Array,
  has: Uint8Array,
  points: Uint32Array,
  counts: Uint32Array,
  excluded: Uint32Array,
  noReturns: Uint32Array,
  occupied: Uint32Array,
  occupiedNow: Uint32Array,
  outputs: Uint8Array,
  inhabitants: Uint32Array,
  momentOfEvent: Uint32Array,
} as const;
type Columns = { -readonly [Name in keyof typeof COLUMNS]: InstanceType<(typeof COLUMNS)[Name]> };

/** A document over a recording, on its way. */
export interface Running {
  readonly run: number;
  readonly check: Check;
}

export class EngineCore {
  readonly #module: Module;
  readonly #files: Files;
  readonly #scenes = new Handles('scene');
  readonly #recordings = new Handles('recording');
  readonly #runs = new Handles('session');
  readonly #filesOf = new Map<number, FileEntry[]>(); // by recording

  private constructor(module: Module, files: Files) {
    this.#module = module;
    this.#files = files;
  }

  static async load(bytes: BufferSource | WebAssembly.Module): Promise<EngineCore> {
    const files = new Files();
    const module = await Module.load(bytes, { read: (file, offset, to) => files.read(file, offset, to), unfold });
    return new EngineCore(module, files);
  }

  get #engine() {
    return this.#module.exports;
  }

  /** The answer of a call that gives 0, or why it gives something else. */
  #text(status: number): string {
    if (status !== 0) {
      throw this.#module.failure();
    }
    return this.#module.answer();
  }

  #json<Result>(status: number): Result {
    return JSON.parse(this.#text(status)) as Result;
  }

  /** An address that is not 0. */
  #handle(at: number): number {
    if (at === 0) {
      throw this.#module.failure();
    }
    return at;
  }

  version(): EngineVersion {
    return {
      version: this.#module.zeroEnded(this.#engine.engine_version()),
      memory: this.#engine.memory.buffer.byteLength,
    };
  }

  // ---- Documents ----

  check(text: string | Uint8Array): Check {
    return this.#module.with([text], (t) => this.#json(this.#engine.engine_check(t!.at, t!.size)));
  }

  planSvg(text: string, options: { title?: string; scene?: number } = {}): string {
    return this.#module.with([text, options.title ?? ''], (t, title) =>
      this.#text(this.#engine.engine_plan(this.#sceneOrNone(options.scene), t!.at, t!.size, title!.at, title!.size)));
  }

  // ---- Points ----

  openFrame(source: AnySource, options: FrameOptions = {}): Scene {
    const entry = this.#files.add(source);
    try {
      return this.#module.with([JSON.stringify(entry), JSON.stringify(options)], (file, o) =>
        this.#scene(this.#engine.engine_open_frame(file!.at, file!.size, o!.at, o!.size)));
    } finally {
      this.#files.remove([entry]);
    }
  }

  openPoints(x: Float32Array, y: Float32Array, z: Float32Array): Scene {
    if (x.length !== y.length || y.length !== z.length) {
      throw new RangeError('x, y and z must be as long as each other');
    }
    return this.#module.with([x, y, z], (a, b, c) =>
      this.#scene(this.#engine.engine_open_points(a!.at, b!.at, c!.at, x.length)));
  }

  openMoment(recording: number, moment: number, options: { intensities?: boolean } = {}): Scene {
    const wanted = options.intensities ? 1 : 0;
    return this.#scene(this.#engine.engine_open_moment(this.#recordings.at(recording), moment, wanted));
  }

  #sceneOrNone(scene: number | undefined): number {
    return scene === undefined ? 0 : this.#scenes.at(scene);
  }

  #scene(answered: number): Scene {
    const at = this.#handle(answered);
    const { hasIntensities, ...described } = this.#json<Omit<Scene, 'id' | 'positions' | 'intensities'> & {
      hasIntensities: boolean;
    }>(this.#engine.engine_describe_scene(at));
    const size = this.#engine.engine_scene_size(at);
    const positions = size === 0
      ? new Float32Array()
      : this.#floats(this.#handle(this.#engine.engine_scene_positions(at)), 3 * size);
    const intensities = hasIntensities ? this.#floats(this.#engine.engine_scene_intensities(at), size) : null;
    return { ...described, id: this.#scenes.add(at), positions, intensities };
  }

  #floats(at: number, size: number): Float32Array {
    return new Float32Array(this.#engine.memory.buffer, at, size).slice();
  }

  closeScene(scene: number): void {
    this.#engine.engine_close_scene(this.#scenes.remove(scene));
  }

  /** Counts the points of a scene; `Count` of types.ts. */
  count(scene: number, text: string | Uint8Array, options: { verdicts?: boolean } = {}): Count {
    const begin = performance.now();
    const held = this.#scenes.at(scene);
    const tiles = this.#module.with([text], (t) => this.#engine.engine_count(held, t!.at, t!.size));
    if (tiles === -2) {
      throw this.#module.failure();
    }
    if (tiles < 0) {
      return { counts: null };
    }
    const at = this.#engine.engine_scene_counts(held);
    const numbers = new Uint32Array(this.#engine.memory.buffer, at, NUM_SLOTS + 3).slice();
    const size = this.#engine.engine_scene_size(held);
    const verdicts = options.verdicts === false
      ? null
      : this.#module.bytes(this.#engine.engine_scene_verdicts(held), size).slice();
    const inside = numbers.slice(0, NUM_SLOTS);
    const [excluded, noReturns, reached] = numbers.subarray(NUM_SLOTS) as unknown as [number, number, number];
    return {
      counts: {
        inside,
        excluded,
        noReturns,
        reached: Array.from(inside, (_, slot) => ((reached >>> slot) & 1) === 1),
        verdicts,
        tiles: [tiles, this.#engine.engine_scene_tiles(held)],
        milliseconds: performance.now() - begin,
      },
    };
  }

  heights(scene: number, bins: number): { least: number; step: number; counts: Uint32Array } {
    const held = this.#scenes.at(scene);
    const at = this.#handle(this.#engine.engine_scene_heights(held, bins));
    const counts = new Uint32Array(this.#engine.memory.buffer, at, bins).slice();
    const { extents } = this.#json<Pick<Scene, 'extents'>>(this.#engine.engine_describe_scene(held));
    const least = extents === null ? 0 : extents[2].least;
    return { least, step: extents === null ? 0 : (extents[2].greatest - least) / bins, counts };
  }

  // ---- Recordings ----

  openRecording(
    files: { clouds?: readonly AnySource[]; stamps?: AnySource; tracks?: AnySource }, options: RecordingOptions = {},
  ): Recording {
    const entries: FileEntry[] = [];
    const add = (source: AnySource): FileEntry => {
      const entry = this.#files.add(source);
      entries.push(entry);
      return entry;
    };
    try {
      const clouds = (files.clouds ?? []).map(add);
      const others = { ...(files.stamps && { stamps: add(files.stamps) }), ...(files.tracks && { tracks: add(files.tracks) }) };
      const list = JSON.stringify({ clouds, ...others });
      return this.#module.with([list, JSON.stringify(options)], (f, o) => {
        const at = this.#handle(this.#engine.engine_open_recording(f!.at, f!.size, o!.at, o!.size));
        const described = JSON.parse(this.#module.answer()) as Omit<Recording, 'id'>;
        const id = this.#recordings.add(at);
        this.#filesOf.set(id, entries);
        return { ...described, id };
      });
    } catch (error) {
      this.#files.remove(entries);
      throw error;
    }
  }

  closeRecording(recording: number): void {
    this.#engine.engine_close_recording(this.#recordings.remove(recording));
    this.#files.remove(this.#filesOf.get(recording) ?? []);
    this.#filesOf.delete(recording);
  }

  objectsAt(recording: number, moment: number): TrackedObject[] {
    return this.#json(this.#engine.engine_objects_at(this.#recordings.at(recording), moment));
  }

  // A run is taken step by step, so that other calls come in between.

  startRun(recording: number, text: string | Uint8Array, options: SessionOptions = {}): Running {
    const check = this.check(text);
    const held = this.#recordings.at(recording);
    const run = this.#runs.add(this.#module.with([text, JSON.stringify(options)], (t, o) =>
      this.#handle(this.#engine.engine_start_run(held, t!.at, t!.size, o!.at, o!.size))));
    return { run, check };
  }

  /** Whether there is more. */
  stepRun(running: Running, milliseconds: number): boolean {
    const more = this.#engine.engine_step_run(this.#runs.at(running.run), milliseconds);
    if (more < 0) {
      throw this.#module.failure();
    }
    return more === 1;
  }

  progressOf(running: Running): Progress {
    const run = this.#runs.at(running.run);
    return { moments: this.#engine.engine_run_moments(run), bytes: this.#engine.engine_run_bytes(run) };
  }

  resultOf({ run: id, check }: Running): Session {
    const run = this.#runs.at(id);
    const texts = this.#json<{
      events: Omit<SessionEvent, 'moment'>[];
      summary: Session['summary'];
      warnings: Session['warnings'];
    }>(this.#engine.engine_run_result(run));
    const { momentOfEvent, ...columns } = this.#columns(run);
    return {
      id,
      check,
      moments: columns.stamps.length,
      ...columns,
      activeField: this.#engine.engine_run_field(run),
      events: texts.events.map((event, i) => ({ moment: momentOfEvent[i]!, ...event })),
      summary: texts.summary,
      warnings: texts.warnings,
      counted: this.#engine.engine_run_counted(run),
    };
  }

  #columns(run: number): Columns {
    const entries = Object.entries(COLUMNS).map(([name, Numbers], i) => {
      const size = this.#engine.engine_run_column_size(run, i);
      const bytes = this.#module.bytes(this.#engine.engine_run_column(run, i), size).slice();
      return [name, new Numbers(bytes.buffer as ArrayBuffer)] as const;
    });
    return Object.fromEntries(entries) as unknown as Columns;
  }

  eventTable(session: number): string {
    return this.#text(this.#engine.engine_run_events(this.#runs.at(session)));
  }

  closeSession(session: number): void {
    this.#engine.engine_close_run(this.#runs.remove(session));
  }

  // ---- Why ----

  explainZones(recording: number, text: string | Uint8Array, moment: number | null, options: SessionOptions = {}): Explanation {
    const held = this.#recordings.at(recording);
    return this.#module.with([text, JSON.stringify(options)], (t, o) =>
      this.#json(this.#engine.engine_explain_zones(held, t!.at, t!.size, o!.at, o!.size, moment ?? -1)));
  }

  explainLine(
    recording: number, text: string | Uint8Array, line: string, moment: number, options: SessionOptions = {}, track?: number,
  ): Explanation {
    const held = this.#recordings.at(recording);
    return this.#module.with([text, JSON.stringify(options), line], (t, o, l) =>
      this.#json(this.#engine.engine_explain_line(
        held, t!.at, t!.size, o!.at, o!.size, moment, l!.at, l!.size, track === undefined ? 0 : 1, track ?? 0)));
  }

  explainTrack(
    recording: number, text: string | Uint8Array, line: string, track: number, moment: number, options: SessionOptions = {},
  ): Explanation {
    return this.explainLine(recording, text, line, moment, options, track);
  }
}
