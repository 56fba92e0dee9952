// Keeps what the engine says in step with the document: findings and counts with every edit, the recording after it.

import type { Count, Recording, Scene, Session } from '../../engine/types';
import { sayError } from './actions';
import { get, set, type State, subscribe, textOf } from './state';

// Calls that wait for the one before them; of those that wait only the newest is done.
function newestOnly(work: () => Promise<void>): () => void {
  let isBusy = false;
  let isWanted = false;
  const run = async (): Promise<void> => {
    isBusy = true;
    while (isWanted) {
      isWanted = false;
      await work().catch(sayError);
    }
    isBusy = false;
  };
  return () => {
    isWanted = true;
    if (!isBusy) void run();
  };
}

// null: a newer count took the place of this one.
async function counted(scene: Scene | null, text: string): Promise<Count | null> {
  const { engine } = get();
  return scene && engine ? engine.count(scene.id, text, { verdicts: true }) : { counts: null };
}

// After the counts, which are there sooner: telling the findings takes as long as counting.
async function findAgain(text: string): Promise<void> {
  const { engine, checked } = get();
  if (!engine || checked?.text === text) return;
  set({ checked: { ...(await engine.check(text)), text } });
}

const countAgain = newestOnly(async () => {
  const { scene } = get();
  const text = textOf();
  const count = await counted(scene, text);
  if (count && get().scene === scene) set({ counts: count.counts });
  await findAgain(text);
});

// Scenes of moments that were shown, the last ones, so that playing in a loop reads nothing again.
const MOST_POINTS_KEPT = 3_000_000;
const scenes = new Map<string, Scene>();

function keep(key: string, scene: Scene): void {
  scenes.set(key, scene);
  let points = [...scenes.values()].reduce((sum, one) => sum + one.points, 0);
  for (const [oldest, one] of scenes) {
    if (points <= MOST_POINTS_KEPT || oldest === key) break;
    points -= one.points;
    scenes.delete(oldest);
    void get().engine?.closeScene(one.id);
  }
}

async function sceneOf(recording: number, moment: number): Promise<Scene | null> {
  const { engine, session } = get();
  if (!engine || !session || ((session.has[moment] ?? 0) & 1) === 0) return null;
  const intensities = get().colouring === 'intensity';
  const key = `${recording}/${moment}/${intensities}`;
  const known = scenes.get(key);
  if (known) {
    scenes.delete(key);
    scenes.set(key, known);
    return known;
  }
  const scene = await engine.openMoment(recording, moment, { intensities });
  keep(key, scene);
  return scene;
}

const showMoment = newestOnly(async () => {
  const { engine, recording, session, moment, scene: shown } = get();
  if (!engine || !recording || !session || session.moments === 0) return;
  // A moment with objects alone leaves the points that were there in view.
  const scene = (await sceneOf(recording.id, moment)) ?? shown;
  const count = await counted(scene, textOf());
  const objects = recording.hasTracks ? await engine.objectsAt(recording.id, moment) : [];
  if (get().recording !== recording) return;
  set({ scene, objects, ...(count ? { counts: count.counts } : {}) });
});

function progressText(moments: number): string {
  return `Evaluating: ${moments} ${moments === 1 ? 'moment' : 'moments'}`;
}

let running = new AbortController();

// What is being evaluated is given up: something newer takes its place.
function stopRun(): void {
  running.abort();
  running = new AbortController();
}

/** The recording by a document; null: the document has errors. */
export async function evaluated(recording: Recording, text: string): Promise<Session | null> {
  const { engine, activeField } = get();
  if (!engine) return null;
  const check = await engine.check(text);
  if (!check.site) return null;
  const hasField = check.site.evaluationFields.some((field) => field.index === activeField);
  return engine.run(recording.id, text, hasField ? { activeField } : {}, {
    onProgress: ({ moments }) => set({ progress: progressText(moments) }),
    signal: running.signal,
  });
}

const runAgain = newestOnly(async () => {
  const { recording, before } = get();
  if (!recording) return;
  const text = textOf();
  const { signal } = running;
  try {
    const session = await evaluated(recording, text);
    if (get().recording !== recording) return;
    const old = get().session;
    if (session) {
      set({ session, moment: Math.min(get().moment, Math.max(0, session.moments - 1)) });
      if (old && old !== get().before.session && old !== session) void get().engine?.closeSession(old.id);
    }
    if (before.session === null && before === get().before) {
      const first = before.text === text && session ? session : await evaluated(recording, before.text);
      if (first && before === get().before) set({ before: { ...before, session: first } });
    }
  } catch (error) {
    if (!signal.aborted) throw error;
  } finally {
    set({ progress: '' });
  }
  const version = await get().engine?.version();
  if (version) set({ engineVersion: `engine ${version.version}, ${Math.ceil(version.memory / 2 ** 20)} MiB` });
});

/** Of a recording that is closed nothing is kept. */
export function forgetScenes(): void {
  stopRun();
  for (const scene of scenes.values()) void get().engine?.closeScene(scene.id);
  scenes.clear();
}

// Outputs are those of the active field, so what is compared is evaluated again with it.
function freshBefore(now: State, old: State): void {
  const { before } = now;
  if (now.activeField !== old.activeField && before.session !== null) set({ before: { ...before, session: null } });
  const left = old.before.session;
  if (before !== old.before && left && left !== before.session && left !== now.session)
    void now.engine?.closeSession(left.id);
}

function follow(now: State, old: State): void {
  if (!now.engine) return;
  const isNewText = textOf(now) !== textOf(old);
  if (isNewText || now.engine !== old.engine || (now.scene !== old.scene && now.session === null)) countAgain();
  const isNewBefore = now.before !== old.before && now.before.session === null;
  const isNewRun = isNewText || now.recording !== old.recording || now.activeField !== old.activeField || isNewBefore;
  if (now.recording && isNewRun) {
    stopRun();
    runAgain();
  }
  const isNewMoment = now.moment !== old.moment || now.recording !== old.recording;
  const needsIntensities = now.colouring !== old.colouring && now.colouring === 'intensity';
  if (now.recording && (isNewMoment || needsIntensities)) showMoment();
  freshBefore(now, old);
}

export function followDocument(): void {
  subscribe(follow);
}
