// Zones, exclusion zones and counter lines on the plan, as the command's picture has them.

import type { Finding } from '../../engine/types';
import { labelPlace, minus, ringOf } from '../edit/geometry';
import { type Doc, type Item, itemAt, type Line, type Pt, type Zone } from '../edit/model';
import { EXCLUSION, fieldColour } from './colours';
import { placed } from './labels';

export type ToPixel = (p: Pt) => Pt;

export function pathOf(ring: readonly Pt[], toPixel: ToPixel, isClosed = true): string {
  const text = ring.map((p, i) => {
    const q = toPixel(p);
    return `${i === 0 ? 'M' : 'L'}${q.x.toFixed(1)} ${q.y.toFixed(1)}`;
  });
  return text.join('') + (isClosed && ring.length > 0 ? 'z' : '');
}

export function isPlaced(item: Item): boolean {
  const ring = ringOf(item);
  return ring.length > 0 && ring.every((p) => Number.isFinite(p.x) && Number.isFinite(p.y));
}

export function colourOf(doc: Doc, zone: Zone): string {
  return zone.kind === 'exclusion' ? EXCLUSION : fieldColour(doc.fields[zone.field]?.index ?? 0);
}

function ZonePath({ doc, zone, toPixel, classes }: { doc: Doc; zone: Zone; toPixel: ToPixel; classes: string }) {
  return (
    <path
      class={`area ${zone.kind} ${classes}`}
      data-id={zone.id}
      style={{ '--own': colourOf(doc, zone) }}
      d={pathOf(ringOf(zone), toPixel)}
    >
      <title>{zone.name}</title>
    </path>
  );
}

function LinePath({ line, toPixel, classes }: { line: Line; toPixel: ToPixel; classes: string }) {
  const [a, b] = [toPixel(line.first), toPixel(line.second)];
  const d = minus(b, a);
  const length = Math.hypot(d.x, d.y);
  // To the left as seen along the line; pixels run down, so the plane's left turn is a right turn here.
  const left = length > 0 ? { x: d.y / length, y: -d.x / length } : { x: 0, y: 0 };
  const m = { x: (a.x + b.x) / 2, y: (a.y + b.y) / 2 };
  const mark = { x: m.x + 15 * left.x, y: m.y + 15 * left.y };
  return (
    <g class={`line ${classes}`} data-id={line.id}>
      <title>{line.name}: from the dot to the arrow, L is its left side</title>
      <path d={`M${a.x} ${a.y}L${b.x} ${b.y}`} marker-end="url(#arrow)" />
      <circle cx={a.x} cy={a.y} r="3.4" />
      <path class="thin" d={`M${m.x} ${m.y}L${mark.x} ${mark.y}`} />
      <circle class="side" cx={mark.x} cy={mark.y} r="7.5" />
      <text x={mark.x} y={mark.y + 4} text-anchor="middle">
        L
      </text>
    </g>
  );
}

interface Marks {
  readonly selection: readonly string[];
  readonly isHidden: (id: string) => boolean;
  readonly findings: readonly Finding[];
  /** Ids of zones that are occupied at this moment. */
  readonly occupied: ReadonlySet<string>;
  readonly activeField: number;
}

function severities(doc: Doc, findings: readonly Finding[]): Map<string, string> {
  const marks = new Map<string, string>();
  for (const finding of findings) {
    const item = itemAt(doc, finding.path);
    if (item && marks.get(item.id) !== 'error') marks.set(item.id, finding.severity);
  }
  return marks;
}

/** The edges that a finding says cross, by their numbers. */
export function crossingEdges(finding: Finding): number[] {
  return finding.kind === 'crossing-edges'
    ? [...finding.text.matchAll(/edge (\d+)-\d+/g)].map((match) => Number(match[1]))
    : [];
}

export function Shapes({ doc, toPixel, marks }: { doc: Doc; toPixel: ToPixel; marks: Marks }) {
  const faults = severities(doc, marks.findings);
  const classesOf = (item: Item): string =>
    [
      marks.selection.includes(item.id) ? 'selected' : '',
      faults.get(item.id) ?? '',
      marks.occupied.has(item.id) ? 'occupied' : '',
      item.kind === 'zone' && doc.fields[item.field]?.index !== marks.activeField ? 'resting' : '',
    ].join(' ');
  const shown = [...doc.byId.values()].filter((item) => isPlaced(item) && !marks.isHidden(item.id));
  const zones = shown.filter((item): item is Zone => item.kind === 'zone');
  const exclusions = shown.filter((item): item is Zone => item.kind === 'exclusion');
  const lines = shown.filter((item): item is Line => item.kind === 'line');
  return (
    <g>
      {[...zones, ...exclusions].map((zone) => (
        <ZonePath key={zone.id} doc={doc} zone={zone} toPixel={toPixel} classes={classesOf(zone)} />
      ))}
      {lines.map((line) => (
        <LinePath key={line.id} line={line} toPixel={toPixel} classes={classesOf(line)} />
      ))}
      {marks.findings.flatMap((finding) => {
        const item = itemAt(doc, finding.path);
        const ring = item && isPlaced(item) ? ringOf(item) : [];
        return crossingEdges(finding).map((edge) =>
          ring[edge] ? (
            <path
              key={`${finding.path}${edge}`}
              class="crossing"
              d={pathOf([ring[edge], ring[(edge + 1) % ring.length]!], toPixel, false)}
            />
          ) : null,
        );
      })}
    </g>
  );
}

// What is selected first, then the zones of the active field, lines last.
function rankOf(doc: Doc, item: Item, marks: Marks): number {
  if (marks.selection.includes(item.id)) return 0;
  if (item.kind === 'line') return 4;
  if (item.kind === 'exclusion') return 3;
  return doc.fields[item.field]?.index === marks.activeField ? 1 : 2;
}

export function Labels({
  doc,
  toPixel,
  marks,
  noteOf,
}: {
  doc: Doc;
  toPixel: ToPixel;
  marks: Marks;
  noteOf: (item: Item) => string;
}) {
  const faults = severities(doc, marks.findings);
  const shown = [...doc.byId.values()].filter((item) => isPlaced(item) && !marks.isHidden(item.id));
  const wanted = shown
    .map((item) => ({ item, rank: rankOf(doc, item, marks) }))
    .sort((a, b) => a.rank - b.rank)
    .map(({ item }) => {
      const p = toPixel(labelPlace(ringOf(item)));
      const note = noteOf(item);
      return {
        id: item.id,
        at: { x: p.x, y: p.y + (item.kind === 'line' ? 22 : 4) },
        letters: Math.max(item.name.length + (faults.has(item.id) ? 2 : 0), note.length),
        lines: note ? 2 : 1,
      };
    });
  const places = placed(wanted);
  return (
    <g class="labels">
      {shown.map((item) => {
        const p = places.get(item.id);
        const fault = faults.get(item.id);
        const note = noteOf(item);
        if (!p) return null;
        return (
          <text
            key={item.id}
            class={item.kind}
            data-label={item.id}
            style={item.kind === 'zone' ? { '--own': colourOf(doc, item) } : {}}
            x={p.x}
            y={p.y}
            text-anchor="middle"
          >
            {fault ? <tspan class={fault}>{fault === 'error' ? '✕ ' : '! '}</tspan> : null}
            {item.name}
            {note ? (
              <tspan class="note" x={p.x} dy="15">
                {note}
              </tspan>
            ) : null}
          </text>
        );
      })}
    </g>
  );
}
