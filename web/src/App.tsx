// The page: bar, tools, views, panels, time line.

import { dropped } from './app/files';
import { part } from './app/part';
import { set, type State, type Tab } from './app/state';
import { usePage } from './app/useState';
import { Bar } from './panels/Bar';
import { Events } from './panels/Events';
import { Explain } from './panels/Explain';
import { Findings } from './panels/Findings';
import { Help } from './panels/Help';
import { Lamps } from './panels/Lamps';
import { Legend } from './panels/Legend';
import { TextPanel } from './panels/TextPanel';
import { Timeline } from './panels/Timeline';
import { HINTS, Tools } from './panels/Tools';
import { Zones } from './panels/Zones';
import { PlanView } from './scene/PlanView';
import { SideView } from './scene/SideView';
import { SolidView } from './scene/SolidView';
import { useDark } from './scene/useSize';

const BarPart = part(['history', 'live', 'fileName', 'savedText', 'showBefore', 'before'], Bar);
const ToolsPart = part(
  ['tool', 'selection', 'target', 'doc', 'sketch', 'snapToGrid', 'snapToShapes', 'colouring', 'greysOut', 'view'],
  Tools,
);
const SidePart = part(['doc', 'selection', 'scene', 'counts', 'colouring', 'greysOut', 'marks', 'engine'], SideView);
const LampsPart = part(['doc', 'activeField', 'session', 'moment', 'counts'], Lamps);
const TimelinePart = part(['doc', 'session', 'moment', 'before', 'progress', 'isPlaying'], Timeline);

const TABS: readonly { readonly tab: Tab; readonly name: (state: State) => string }[] = [
  { tab: 'zones', name: () => 'Zones' },
  { tab: 'findings', name: (state) => `Findings ${state.checked?.findings.length ?? ''}` },
  { tab: 'events', name: (state) => `Events ${state.session ? state.session.events.length : ''}` },
  { tab: 'explain', name: () => 'Explain' },
  { tab: 'text', name: () => 'Text' },
];

function Panels({ state }: { state: State }) {
  const { tab } = state;
  const walk = (event: KeyboardEvent): void => {
    const by = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
    if (!by) return;
    const at = TABS.findIndex((one) => one.tab === tab);
    const next = TABS[(at + by + TABS.length) % TABS.length]!;
    set({ tab: next.tab });
    document.getElementById(`tab-${next.tab}`)?.focus();
  };
  return (
    <aside class="panel" aria-label="Panels">
      <div class="tabs" role="tablist" aria-label="Panels" onKeyDown={walk}>
        {TABS.map((one) => (
          <button
            key={one.tab}
            id={`tab-${one.tab}`}
            type="button"
            role="tab"
            aria-selected={tab === one.tab}
            aria-controls="panel"
            tabindex={tab === one.tab ? 0 : -1}
            class={
              one.tab === 'findings' && state.checked?.findings.some((finding) => finding.severity === 'error')
                ? 'bad'
                : ''
            }
            onClick={() => set({ tab: one.tab })}
          >
            {one.name(state)}
          </button>
        ))}
      </div>
      <div id="panel" class="content" role="tabpanel" aria-labelledby={`tab-${tab}`} tabindex={0}>
        {tab === 'zones' ? <Zones state={state} /> : null}
        {tab === 'findings' ? <Findings state={state} /> : null}
        {tab === 'events' ? <Events state={state} /> : null}
        {tab === 'explain' ? <Explain state={state} /> : null}
        {tab === 'text' ? <TextPanel state={state} /> : null}
      </div>
    </aside>
  );
}

const PanelPart = part(
  [
    'history',
    'live',
    'doc',
    'fault',
    'selection',
    'vertex',
    'marks',
    'tab',
    'engine',
    'checked',
    'counts',
    'session',
    'before',
    'moment',
    'objects',
    'activeField',
    'explanation',
    'explained',
  ],
  Panels,
);

function placeText({ pointer }: State): string {
  return pointer ? `x ${pointer.x.toFixed(2)} m, y ${pointer.y.toFixed(2)} m` : '';
}

function sceneText({ scene, counts, sceneName }: State): string {
  if (!scene) return 'Drop frames, recordings, tracks or a document anywhere. Nothing leaves this computer.';
  const left = counts ? `, ${counts.excluded} taken by exclusion zones` : '';
  const origin = scene.atOrigin > 0 ? `, ${scene.atOrigin} at the origin` : '';
  return `${sceneName}: ${scene.points} points, ${scene.noReturns} no returns${origin}${left}`;
}

export function App() {
  const state = usePage();
  const isDark = useDark();
  return (
    <div
      class="page"
      onDragOver={(event) => event.preventDefault()}
      onDrop={(event) => {
        event.preventDefault();
        if (event.dataTransfer) void dropped(event.dataTransfer);
      }}
    >
      <BarPart state={state} isDark={isDark} />
      <ToolsPart state={state} isDark={isDark} />
      <main class="work">
        {HINTS[state.tool] ? <p class="toolhint">{HINTS[state.tool]}</p> : null}
        {state.view === 'plan' ? (
          <PlanView state={state} isDark={isDark} />
        ) : (
          <SolidView state={state} isDark={isDark} />
        )}
        <SidePart state={state} isDark={isDark} />
      </main>
      <PanelPart state={state} isDark={isDark} />
      <footer class="foot">
        <LampsPart state={state} isDark={isDark} />
        <TimelinePart state={state} isDark={isDark} />
        <div class="status">
          <span class="scenetext">{sceneText(state)}</span>
          {state.scene ? <Legend state={state} scene={state.scene} /> : null}
          <span class="gap" />
          <span class="pointer">{placeText(state)}</span>
          <span class="version" title="The engine's version and its memory">
            {state.engineVersion}
          </span>
        </div>
      </footer>
      <p class={`message ${state.message?.isError ? 'error' : ''}`} role={state.message?.isError ? 'alert' : 'status'}>
        {state.message?.text ?? ''}
      </p>
      {state.showHelp ? <Help /> : null}
    </div>
  );
}
