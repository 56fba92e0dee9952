// The loader of the module: what it asks of its host, and texts and numbers in its memory.

import type { Refusal } from './types';

/** What the engine exports; a test holds this list to the module. */
export interface Exports {
  readonly memory: WebAssembly.Memory;
  _initialize(): void;
  engine_text(): number;
  engine_text_size(): number;
  engine_allocate(size: number): number;
  engine_release(at: number): void;
  engine_version(): number;
  engine_check(text: number, size: number): number;
  engine_plan(scene: number, text: number, size: number, title: number, titleSize: number): number;
  engine_open_frame(file: number, fileSize: number, options: number, optionsSize: number): number;
  engine_open_points(x: number, y: number, z: number, size: number): number;
  engine_open_moment(recording: number, moment: number, wantsIntensities: number): number;
  engine_close_scene(scene: number): void;
  engine_describe_scene(scene: number): number;
  engine_scene_size(scene: number): number;
  engine_scene_positions(scene: number): number;
  engine_scene_intensities(scene: number): number;
  engine_scene_heights(scene: number, bins: number): number;
  engine_scene_tiles(scene: number): number;
  engine_scene_counts(scene: number): number;
  engine_scene_verdicts(scene: number): number;
  engine_count(scene: number, text: number, size: number): number;
  engine_open_recording(files: number, filesSize: number, options: number, optionsSize: number): number;
  engine_close_recording(recording: number): void;
  engine_objects_at(recording: number, moment: number): number;
  engine_start_run(recording: number, text: number, size: number, options: number, optionsSize: number): number;
  engine_step_run(run: number, milliseconds: number): number;
  engine_run_moments(run: number): number;
  engine_run_bytes(run: number): number;
  engine_run_counted(run: number): number;
  engine_run_field(run: number): number;
  engine_run_column(run: number, number: number): number;
  engine_run_column_size(run: number, number: number): number;
  engine_run_result(run: number): number;
  engine_run_events(run: number): number;
  engine_close_run(run: number): void;
  engine_explain_zones(
    recording: number, text: number, size: number, options: number, optionsSize: number, moment: number,
  ): number;
  engine_explain_line(
    recording: number, text: number, size: number, options: number, optionsSize: number, moment: number,
    line: number, lineSize: number, isOne: number, track: number,
  ): number;
}

/** What a module asks of its host. */
export interface Host {
  /** Copies bytes of a file; how many, or below zero when it cannot be read. */
  read(file: number, offset: number, to: Uint8Array): number;
  /** Unfolds compressed bytes; see `decoders/`. */
  unfold(kind: number, from: Uint8Array, room: Uint8Array): { ending: number; size: number };
}

/** What the engine refuses, in its words. */
export class EngineError extends Error implements Refusal {
  readonly path: string;
  readonly line: number;
  readonly column: number;
  readonly reason: string;

  constructor(refusal: Refusal) {
    super(refusal.message);
    this.name = 'EngineError';
    this.path = refusal.path;
    this.line = refusal.line;
    this.column = refusal.column;
    this.reason = refusal.reason;
  }
}

/** A piece of the module's memory, released when the call is over. */
export interface Piece {
  readonly at: number;
  readonly size: number;
}

export class Module {
  readonly #encoder = new TextEncoder();
  readonly #decoder = new TextDecoder();

  private constructor(readonly exports: Exports) {}

  static async load(bytes: BufferSource | WebAssembly.Module, host: Host): Promise<Module> {
    let memory: WebAssembly.Memory | undefined;
    const room = (at: number, size: number) => new Uint8Array(memory!.buffer, at, size);
    const numbers = (): DataView => new DataView(memory!.buffer);
    const compiled = bytes instanceof WebAssembly.Module ? bytes : await WebAssembly.compile(bytes);
    const instance = await WebAssembly.instantiate(compiled, {
      host: {
        read: (file: number, offset: number, count: number, to: number) =>
          host.read(file, offset, room(to, count)),
        unfold: (kind: number, from: number, count: number, to: number, size: number, out: number) => {
          const done = host.unfold(kind, room(from, count), room(to, size));
          numbers().setUint32(out, done.size, true);
          return done.ending;
        },
      },
      env: {
        emscripten_notify_memory_growth: () => {},
        getentropy: (at: number, size: number) => {
          crypto.getRandomValues(room(at, size));
          return 0;
        },
      },
      // Of what a C library may ask of its system, only the clock and the way out are there.
      wasi_snapshot_preview1: systemOf(numbers),
    });
    const exports = instance.exports as unknown as Exports;
    memory = exports.memory;
    exports._initialize();
    return new Module(exports);
  }

  bytes(at: number, size: number): Uint8Array {
    return new Uint8Array(this.exports.memory.buffer, at, size);
  }

  /** The text of the last answer. */
  answer(): string {
    return this.#decoder.decode(this.bytes(this.exports.engine_text(), this.exports.engine_text_size()));
  }

  zeroEnded(at: number): string {
    const all = new Uint8Array(this.exports.memory.buffer, at);
    return this.#decoder.decode(all.subarray(0, all.indexOf(0)));
  }

  failure(): EngineError {
    return new EngineError(JSON.parse(this.answer()) as Refusal);
  }

  /** Calls something with texts and numbers in the module's memory. */
  with<Result>(inputs: readonly (string | Uint8Array | Float32Array)[], use: (...pieces: Piece[]) => Result): Result {
    const pieces: Piece[] = [];
    try {
      for (const input of inputs) {
        const bytes =
          typeof input === 'string'
            ? this.#encoder.encode(input)
            : new Uint8Array(input.buffer, input.byteOffset, input.byteLength);
        const at = this.exports.engine_allocate(bytes.length + 1);
        if (at === 0) {
          throw new EngineError({ message: 'not enough memory', path: '', line: 0, column: 0, reason: 'not enough memory' });
        }
        pieces.push({ at, size: bytes.length });
        this.bytes(at, bytes.length).set(bytes);
      }
      return use(...pieces);
    } finally {
      for (const piece of pieces) {
        this.exports.engine_release(piece.at);
      }
    }
  }
}

function systemOf(numbers: () => DataView): Record<string, (...values: never[]) => number> {
  const notThere = 52; // ENOSYS
  const system = {
    clock_time_get: (_clock: number, _precision: bigint, at: number) => {
      numbers().setBigUint64(at, BigInt(Math.round(performance.now() * 1e6)), true);
      return 0;
    },
    proc_exit: (code: number) => {
      throw new Error(`the engine ended with ${code}`);
    },
    environ_sizes_get: (count: number, size: number) => {
      numbers().setUint32(count, 0, true);
      numbers().setUint32(size, 0, true);
      return 0;
    },
    environ_get: () => 0,
    fd_write: (_file: number, pieces: number, count: number, written: number) => {
      // What a library prints for nobody: taken as written.
      let size = 0;
      for (let i = 0; i < count; ++i) {
        size += numbers().getUint32(pieces + 8 * i + 4, true);
      }
      numbers().setUint32(written, size, true);
      return 0;
    },
  };
  return new Proxy(system as Record<string, (...values: never[]) => number>, {
    get: (known, name: string) => known[name] ?? (() => notThere),
    has: () => true,
  });
}
