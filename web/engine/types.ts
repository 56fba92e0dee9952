// What the engine takes and gives. Lengths are metres, angles radians, times seconds unless a name says otherwise.
// Every text and number comes from the toolkit: a page shows them and computes none of its own.

/** A file of a server that answers requests for ranges; its link is whole, from "http:" on. */
export interface LinkedFile {
  readonly name: string;
  readonly size: number;
  readonly link: string;
}

/** A file to read: what the browser gives or a server has (read by slices, never whole), or bytes with a name. */
export type Source = File | LinkedFile | { readonly name: string; readonly bytes: Uint8Array };

/** Why the engine refuses something, in its own words. */
export interface Refusal {
  /** "path:line:column: reason", as far as it is known. */
  readonly message: string;
  readonly path: string;
  /** From 1; 0: not known. */
  readonly line: number;
  readonly column: number;
  readonly reason: string;
}

// ---- Documents ----

export type Severity = "error" | "warning";

/** Something wrong or doubtful in a document; `kind` is such as "missing-key" and stays as it is. */
export interface Finding {
  readonly kind: string;
  readonly severity: Severity;
  /** Both from 1; a column is a character. */
  readonly line: number;
  readonly column: number;
  /** Such as ZoneDetector/EvaluationField[0]/Zone[1]/Polygon; empty for the document. */
  readonly path: string;
  readonly text: string;
  /** Of a text that is not JSON: the line, and a caret beneath it. */
  readonly excerpt: string;
}

export interface Point {
  readonly x: number;
  readonly y: number;
}

/** A zone as the library loaded it. */
export interface Zone {
  readonly name: string;
  /** null: a zone without a shape, which holds nothing. */
  readonly shape: 'polygon' | 'rectangle' | 'sector' | null;
  readonly area?: number;
  readonly zMin: number;
  readonly zMax: number;
  /** Of a polygon; of a rectangle its turned corners. */
  readonly vertices?: readonly Point[];
  /** Of a sector, whose origin is (0, 0). */
  readonly minAngle?: number;
  readonly maxAngle?: number;
  readonly radius?: number;
  /** The border as a ring to draw: of a sector a vertex every few degrees. */
  readonly outline: readonly Point[];
}

export interface FieldZone extends Zone {
  /** The slot in its field, 0 to 2. */
  readonly index: number;
}

export interface Field {
  /** 0 to 7. */
  readonly index: number;
  readonly name: string;
  readonly zones: readonly FieldZone[];
}

export interface CounterLine {
  readonly name: string;
  readonly first: Point;
  readonly second: Point;
  /** Points to the left side, of length 1; (0, 0) for a line without length. */
  readonly left: Point;
}

/** What a document holds, as the library loaded it. */
export interface Site {
  readonly debounceTimeMs: number;
  readonly sensitivity: number;
  readonly minPoints: number;
  readonly triggerActiveLevel: "low" | "high";
  readonly useSoftwareAPICommand: boolean;
  /** The field that drives the outputs. */
  readonly activeField: number;
  readonly evaluationFields: readonly Field[];
  readonly exclusionZones: readonly Zone[];
  readonly counterLines: readonly CounterLine[];
}

export interface Check {
  /** In the order of the document. */
  readonly findings: readonly Finding[];
  /** What a host is told by the library's own check; empty: nothing. */
  readonly complaint: string;
  /** null when a finding is an error: such a document cannot be loaded without loss. */
  readonly site: Site | null;
}

// ---- Points ----

/** How bytes become points; each word as the command's option of that name has it. */
export interface FrameOptions {
  /** Columns of .bin and text files: how many, a letter each, or names ("t,x,y,z"). Not given: found out. */
  readonly columns?: string;
  /** "x,y,z,roll,pitch,yaw" of the sensor in the frame of the zones; metres and degrees. */
  readonly pose?: string;
  readonly dropOrigin?: boolean;
  readonly minRange?: number;
  readonly maxRange?: number;
}

export interface MomentOptions {
  /** They are not kept with the points: the files are read again for them, onwards from the moment before. */
  readonly intensities?: boolean;
}

export interface Extent {
  readonly least: number;
  readonly greatest: number;
}

/**
 * Points that the engine holds, sorted into tiles, so that an edit counts only those again that it can touch. The
 * engine keeps them until `closeScene`.
 */
export interface Scene {
  readonly id: number;
  /** All of them; `noReturns` of these have a coordinate that is not finite, and are not in `positions`. */
  readonly points: number;
  readonly noReturns: number;
  readonly atOrigin: number;
  /** How many were left out by the options, each once. */
  readonly dropped: number;
  readonly droppedAtOrigin: number;
  readonly droppedTooNear: number;
  readonly droppedTooFar: number;
  /**
   * x, y, z of each finite point, one after the other, less `origin`. In the order of the tiles; `verdicts` of a count
   * are in the same order.
   */
  readonly positions: Float32Array;
  readonly origin: readonly [number, number, number];
  /**
   * How strongly each of these was reflected, in the same order and in the unit of the file; not finite where the file
   * says nothing. null: the file has no column "intensity", "reflectivity", "reflectance" or "remission", points were
   * left out by the options, or nobody asked.
   */
  readonly intensities: Float32Array | null;
  /** Of x, y and z; null when no point is finite. */
  readonly extents: readonly [Extent, Extent, Extent] | null;
  /** The height that most points are at; null when there is none. */
  readonly ground: number | null;
  /** What the file says of its columns, such as "intensity". */
  readonly columns: readonly string[];
}

/** What a point is to a document: the lower two bits of its byte in `verdicts`. */
export const VERDICT = {
  /** In no zone. */
  outside: 0,
  /** In a zone, and counts. */
  counted: 1,
  /** In a zone, but an exclusion zone takes it. */
  taken: 2,
  /** In an exclusion zone alone. */
  excluded: 3,
} as const;

export const verdictOf = (byte: number): number => byte & 3;
/** The lowest slot (3 * field + zone) of the zones that hold the point; -1: none does. */
export const slotOf = (byte: number): number => (byte >> 2) - 1;

export const NUM_SLOTS = 24;
export const slotIndex = (field: number, zone: number): number => 3 * field + zone;

/** The counts of a scene by a document. `check` tells what is wrong with it; the same text is checked only once. */
export interface Count {
  /** null when the document has errors: the numbers would be of another one. */
  readonly counts: Counts | null;
}

export interface Counts {
  /** By slot, 3 * field + zone. */
  readonly inside: Uint32Array;
  readonly excluded: number;
  readonly noReturns: number;
  /** By slot, whether the zone reaches the points that the document asks for. */
  readonly reached: readonly boolean[];
  /** A byte for each point of `positions`; see VERDICT. null when not asked for. */
  readonly verdicts: Uint8Array | null;
  /** The tiles that were counted again, and how many there are. */
  readonly tiles: readonly [number, number];
  readonly milliseconds: number;
}

// ---- Recordings ----

export interface RecordingOptions extends FrameOptions {
  /** Of a recording; not given: the only topic of point clouds. */
  readonly topics?: readonly string[];
  readonly stampFrom?: "header" | "log";
  /** Frames a second, of single frames; not given: 10. */
  readonly rate?: number;
  readonly tracksFormat?: "csv" | "kitti";
}

export interface RecordingFiles {
  /** Single frames, in order, or recordings (MCAP, ROS bags). */
  readonly clouds?: readonly Source[];
  /** A list of stamps and names; the clouds are then found by their names. */
  readonly stamps?: Source;
  readonly tracks?: Source;
}

export interface Topic {
  readonly name: string;
  readonly type: string;
  readonly encoding: string;
  readonly messages: number;
  /** A second; null: not known. */
  readonly rate: number | null;
  readonly holdsClouds: boolean;
}

/** A recording that is open; nothing but its index was read. */
export interface Recording {
  readonly id: number;
  readonly hasClouds: boolean;
  readonly hasTracks: boolean;
  /** By file; empty for a single frame. */
  readonly topics: readonly (readonly Topic[])[];
  /** Bytes of all files. */
  readonly size: number;
}

export interface SessionOptions {
  readonly forgetAfter?: number;
  readonly clearance?: number;
  readonly maxSpeed?: number;
  readonly activeField?: number;
}

/** Something that happened. */
export interface SessionEvent {
  /** The number of the moment at which it was told. */
  readonly moment: number;
  /** As the command tells it. */
  readonly line: string;
  /** As the command's --json has it: "type" and what belongs to it. */
  readonly record: Readonly<Record<string, unknown>>;
}

/** An object at a moment. */
export interface TrackedObject {
  readonly id: number;
  readonly className: string;
  /** Of its footprint, counterclockwise or not; empty: it has none. */
  readonly ring: readonly Point[];
  /** The point that crosses lines; null: it cannot be placed. */
  readonly reference: Point | null;
  readonly zMin: number;
  readonly zMax: number;
}

/** A recording by a document, from begin to end. A moment is a stamp that has points, objects, or both. */
export interface Session {
  readonly id: number;
  readonly check: Check;
  readonly moments: number;
  /** Exact, in nanoseconds; `Number(stamps[k]) / 1e9` is enough for a picture. */
  readonly stamps: BigInt64Array;
  /** 1: the moment has points; 2: it has objects; 3: both. */
  readonly has: Uint8Array;
  /** Points of each moment, no returns included. */
  readonly points: Uint32Array;
  /** 24 numbers for each moment: 3 * field + zone. */
  readonly counts: Uint32Array;
  readonly excluded: Uint32Array;
  readonly noReturns: Uint32Array;
  /** A bit for each slot: the reported state, after the debounce time. */
  readonly occupied: Uint32Array;
  /** The same before the debounce time. */
  readonly occupiedNow: Uint32Array;
  /** Bits 0 to 2: the level of an output is high. */
  readonly outputs: Uint8Array;
  readonly activeField: number;
  /** 24 numbers for each moment: objects inside. */
  readonly inhabitants: Uint32Array;
  readonly events: readonly SessionEvent[];
  /** The lines that end the command's `run --json`. */
  readonly summary: readonly Readonly<Record<string, unknown>>[];
  /** As the command warns: damage, stamps that go back, late frames, heights. */
  readonly warnings: readonly string[];
  /** Frames whose points were read and counted for this; the others' counts were known. */
  readonly counted: number;
}

/** Why a zone, line or track is as it is: for programs, and in the words of the command. */
export interface Explanation {
  readonly records: readonly Readonly<Record<string, unknown>>[];
  readonly text: string;
}

export interface Progress {
  /** Moments so far, and bytes of the files so far. */
  readonly moments: number;
  readonly bytes: number;
}

export interface RunHooks {
  readonly onProgress?: (progress: Progress) => void;
  readonly signal?: AbortSignal;
}

/** What `info` tells of a file: records of the command's `info --json`. */
export interface EngineVersion {
  readonly version: string;
  /** Bytes of the engine's memory that are in use, and that it has. */
  readonly memory: number;
}

/**
 * The engine. One worker owns it; every call is answered in order, but a running session lets others in between. A
 * call that the engine refuses rejects with an `EngineError`, which is a `Refusal`.
 */
export interface Engine {
  version(): Promise<EngineVersion>;

  /** Findings and content of a document, whatever the text is; bytes where a file is not UTF-8. */
  check(text: string | Uint8Array): Promise<Check>;
  /** The plan as SVG, over the points of a scene if one is given. */
  planSvg(text: string, options?: { title?: string; scene?: number }): Promise<string>;

  /** A frame of a single file, by the toolkit's readers. */
  openFrame(source: Source, options?: FrameOptions): Promise<Scene>;
  /** Points from arrays of the same length. */
  openPoints(x: Float32Array, y: Float32Array, z: Float32Array): Promise<Scene>;
  /** The points of a moment of a recording that ran once. */
  openMoment(recording: number, moment: number, options?: MomentOptions): Promise<Scene>;
  closeScene(scene: number): Promise<void>;
  /**
   * Counts the points of a scene by a document; after an edit only those that the edit can touch. At most one is in
   * flight for a scene, and the newest waits: `null` when a newer one took its place.
   */
  count(scene: number, text: string, options?: { verdicts?: boolean }): Promise<Count | null>;
  /** How many points of a scene are at which height: the least height, the step and the numbers. */
  heights(scene: number, bins: number): Promise<{ least: number; step: number; counts: Uint32Array }>;

  openRecording(files: RecordingFiles, options?: RecordingOptions): Promise<Recording>;
  closeRecording(recording: number): Promise<void>;
  /**
   * Runs a document over a whole recording. The first run reads it; the counts of each frame are kept, so that one
   * with the same zones reads no point again. `check.site` of the document must not be null.
   */
  run(recording: number, text: string, options?: SessionOptions, hooks?: RunHooks): Promise<Session>;
  /** The objects at a moment. */
  objectsAt(recording: number, moment: number): Promise<readonly TrackedObject[]>;
  /** The events of a session as CSV. */
  eventTable(session: number): Promise<string>;
  closeSession(session: number): Promise<void>;

  /**
   * Every zone at a moment: what counted, what nearly did, and when it will change. `null`: each zone at the moment that
   * came nearest to occupying it.
   */
  explainZones(recording: number, text: string, moment: number | null, options?: SessionOptions): Promise<Explanation>;
  /** What became of each track at a line, up to a moment. */
  explainLine(recording: number, text: string, line: string, moment: number, options?: SessionOptions):
    Promise<Explanation>;
  /** What became of one track at a line, sighting by sighting. */
  explainTrack(recording: number, text: string, line: string, track: number, moment: number,
    options?: SessionOptions): Promise<Explanation>;

  /** Ends the worker and gives its memory back. */
  close(): void;
}
