// What the engine answers to a case (tests/cases), in node and in a browser alike.

import type { EngineCore } from '../core';
import { slotIndex, type RecordingOptions, type Session, type SessionOptions, type Site } from '../types';

/** `case.json` of a case. */
export interface Case {
  readonly about: string;
  readonly ask: 'findings' | 'content' | 'counts' | 'events' | 'why';
  readonly document?: string;
  readonly frames?: readonly string[];
  readonly tracks?: string;
  readonly options?: readonly string[];
  readonly expect: Readonly<Record<string, unknown>>;
}

/** A word of the command's options, and what it is here. */
const OPTIONS: Readonly<Record<string, { of: 'recording' | 'session' | 'why'; name: string; kind: 'number' | 'text' | 'flag' }>> = {
  '--rate': { of: 'recording', name: 'rate', kind: 'number' },
  '--tracks-format': { of: 'recording', name: 'tracksFormat', kind: 'text' },
  '--pose': { of: 'recording', name: 'pose', kind: 'text' },
  '--columns': { of: 'recording', name: 'columns', kind: 'text' },
  '--drop-origin': { of: 'recording', name: 'dropOrigin', kind: 'flag' },
  '--min-range': { of: 'recording', name: 'minRange', kind: 'number' },
  '--max-range': { of: 'recording', name: 'maxRange', kind: 'number' },
  '--clearance': { of: 'session', name: 'clearance', kind: 'number' },
  '--max-speed': { of: 'session', name: 'maxSpeed', kind: 'number' },
  '--forget-after': { of: 'session', name: 'forgetAfter', kind: 'number' },
  '--field': { of: 'session', name: 'activeField', kind: 'number' },
  '--line': { of: 'why', name: 'line', kind: 'text' },
  '--track': { of: 'why', name: 'track', kind: 'number' },
  '--at': { of: 'why', name: 'at', kind: 'number' },
};

export interface Words {
  readonly recording: RecordingOptions;
  readonly session: SessionOptions;
  readonly why: { readonly line?: string; readonly track?: number; readonly at?: number };
  readonly unknown: readonly string[];
}

export function wordsOf(options: readonly string[]): Words {
  const words = { recording: {}, session: {}, why: {} } as Record<string, Record<string, unknown>>;
  const unknown: string[] = [];
  for (let i = 0; i < options.length; ++i) {
    const option = OPTIONS[options[i]!];
    if (!option) {
      unknown.push(options[i]!);
      continue;
    }
    const value = option.kind === 'flag' ? true : options[++i]!;
    words[option.of]![option.name] = option.kind === 'number' ? Number(value) : value;
  }
  return { ...words, unknown } as unknown as Words;
}

const siteWithout = (site: Site): object => {
  const plain = ({ outline: _outline, ...zone }: { outline: unknown }) => zone;
  const { activeField: _field, ...rest } = site;
  return {
    ...rest,
    evaluationFields: site.evaluationFields.map((field) => ({ ...field, zones: field.zones.map(plain) })),
    exclusionZones: site.exclusionZones.map(plain),
  };
};

/** A session to its end. */
export function runAll(core: EngineCore, recording: number, text: string | Uint8Array, options: SessionOptions = {}): Session {
  const running = core.startRun(recording, text, options);
  while (core.stepRun(running, 1000));
  return core.resultOf(running);
}

/** Why a case cannot be asked here; null: it can. */
export function lackOf(words: Words): string | null {
  return words.unknown.length > 0 ? `it has no word for ${words.unknown.join(' ')}` : null;
}

/** What of an expectation this face can say: it gives no exit code and does not name itself. */
export function wanted(asked: Case): Record<string, unknown> {
  const { code: _code, error, ...rest } = asked.expect;
  const errors = (error ?? []) as string[];
  return errors.length > 0 ? { error: errors.map((line) => line.replace(/^zone-detector: /, '')) } : rest;
}

export type Answer = Record<string, unknown>;
export type Asking = {
  readonly core: EngineCore;
  readonly asked: Case;
  readonly words: Words;
  readonly text: Uint8Array;
  /** A file of the case. */
  readonly read: (file: string) => Uint8Array;
};

/** What the engine answers, in the words of the command. */
export function answer(asking: Asking): Answer {
  const answers: Record<Case['ask'], (of: Asking) => Answer> = { findings, content, counts, events, why };
  try {
    // As the command, which leaves out what it has nothing of.
    return Object.fromEntries(
      Object.entries(answers[asking.asked.ask](asking)).filter(([, value]) => !Array.isArray(value) || value.length > 0));
  } catch (error) {
    // The page names the document, not the engine.
    const message = (error as Error).message.replace(/^the document: /, `${asking.asked.document ?? 'site.json'}: `);
    return { error: [message] };
  }
}

function findings({ core, asked, text }: Asking): Answer {
  const { findings: found, site } = core.check(text);
  return {
    findings: [{
      file: asked.document ?? 'site.json',
      ok: site !== null,
      findings: found.map(({ excerpt: _excerpt, ...finding }) => finding),
    }],
  };
}

function content({ core, text }: Asking): Answer {
  return { content: [siteWithout(core.check(text).site!)] };
}

/** A frame as `run --json` tells it, from the numbers of a scene. */
function counts({ core, asked, words, text, read }: Asking): Answer {
  return {
    counts: asked.frames!.map((file, frame) => {
      const scene = core.openFrame({ name: file, bytes: read(file) }, words.recording);
      const { counts: found } = core.count(scene.id, text);
      core.closeScene(scene.id);
      const { minPoints, evaluationFields } = core.check(text).site!;
      return {
        frame,
        file,
        points: scene.points + scene.dropped,
        noReturns: found!.noReturns,
        ...(scene.dropped > 0 && {
          droppedAtOrigin: scene.droppedAtOrigin, droppedTooNear: scene.droppedTooNear, droppedTooFar: scene.droppedTooFar,
        }),
        excluded: found!.excluded,
        minPoints,
        zones: evaluationFields.flatMap((field) => field.zones.map((zone) => ({
          field: field.index, fieldName: field.name, zone: zone.index, name: zone.name,
          points: found!.inside[slotIndex(field.index, zone.index)],
          reached: found!.reached[slotIndex(field.index, zone.index)],
        }))),
      };
    }),
  };
}

function recordingOf({ core, asked, words, read }: Asking): number {
  return core.openRecording({
    clouds: (asked.frames ?? []).map((file) => ({ name: file, bytes: read(file) })),
    ...(asked.tracks && { tracks: { name: asked.tracks, bytes: read(asked.tracks) } }),
  }, words.recording).id;
}

function events(asking: Asking): Answer {
  const { core, words, text } = asking;
  const session = runAll(core, recordingOf(asking), text, words.session);
  return { events: session.events.map((event) => event.record), summary: session.summary };
}

function why(asking: Asking): Answer {
  const { core, words, text } = asking;
  const recording = recordingOf(asking);
  const { stamps } = runAll(core, recording, text, words.session);
  const { at, line, track } = words.why;
  const last = at === undefined ? stamps.length - 1 : stamps.filter((stamp) => Number(stamp) <= at * 1e9).length - 1;
  const moment = at === undefined ? null : last;
  const zones = asking.asked.frames ? core.explainZones(recording, text, moment, words.session).records : [];
  const tracks = line === undefined ? [] : core.explainLine(recording, text, line, last, words.session, track).records;
  return { why: [...zones, ...tracks] };
}
