// The numbers of what is selected.

import { edit } from '../app/actions';
import { set, type State } from '../app/state';
import { area, bearing, cornersOf, degrees, distance, minus, radians, ringOf, sweepOf, tidy } from '../edit/geometry';
import { vertexAdded, vertexRemoved } from '../edit/items';
import { FEWEST_VERTICES, MOST_VERTICES, MOST_ZONES } from '../edit/limits';
import type { Doc, Item, Line, Pt, RectangleShape, SectorShape, Zone } from '../edit/model';
import { vertexMoved } from '../edit/moves';
import { renamed, withHeight, withLine, withRotation, withShape, withSlot } from '../edit/values';
import { NameField } from './NameField';
import { NumberField } from './NumberField';

const again = <T extends Item>(doc: Doc, item: T): T => doc.byId.get(item.id) as T;

function Corners({ zone, state }: { zone: Zone; state: State }) {
  if (zone.shape?.kind !== 'polygon') return null;
  const { points } = zone.shape;
  const place = (i: number, p: Pt): boolean =>
    edit('Place a corner', (doc) => vertexMoved(doc, again(doc, zone), i, p));
  return (
    <table class="corners">
      <caption>
        {points.length} of at most {MOST_VERTICES} corners
      </caption>
      <thead>
        <tr>
          <th scope="col">#</th>
          <th scope="col">x</th>
          <th scope="col">y</th>
          <th>
            <span class="unseen">Add or remove</span>
          </th>
        </tr>
      </thead>
      <tbody>
        {points.map((p, i) => {
          const next = points[(i + 1) % points.length]!;
          const between = { x: tidy((p.x + next.x) / 2), y: tidy((p.y + next.y) / 2) };
          const choose = (): void => set({ vertex: i });
          return (
            <tr key={i} class={state.vertex === i ? 'chosen' : ''}>
              <th scope="row">{i}</th>
              <td>
                <NumberField
                  label={`Corner ${i}, x`}
                  value={p.x}
                  unit="m"
                  hidesLabel
                  onFocus={choose}
                  onCommit={(x) => place(i, { x, y: p.y })}
                />
              </td>
              <td>
                <NumberField
                  label={`Corner ${i}, y`}
                  value={p.y}
                  unit="m"
                  hidesLabel
                  onFocus={choose}
                  onCommit={(y) => place(i, { x: p.x, y })}
                />
              </td>
              <td class="buttons">
                <button
                  type="button"
                  title="Add a corner after this one"
                  aria-label={`Add a corner after ${i}`}
                  onClick={() => edit('Add a corner', (doc) => vertexAdded(doc, again(doc, zone), i + 1, between))}
                >
                  +
                </button>
                <button
                  type="button"
                  title="Remove this corner"
                  aria-label={`Remove corner ${i}`}
                  disabled={points.length <= FEWEST_VERTICES}
                  onClick={() => edit('Remove a corner', (doc) => vertexRemoved(doc, again(doc, zone), i))}
                >
                  −
                </button>
              </td>
            </tr>
          );
        })}
      </tbody>
    </table>
  );
}

function RectangleValues({ zone, shape }: { zone: Zone; shape: RectangleShape }) {
  const [a, b] = shape.corners;
  const put = (corners: readonly [Pt, Pt]): boolean =>
    edit('Size of a rectangle', (doc) => withShape(doc, again(doc, zone), { ...shape, corners }));
  const corners = cornersOf(shape);
  return (
    <div class="fields">
      <NumberField label="x of the first corner" value={a.x} unit="m" onCommit={(x) => put([{ x, y: a.y }, b])} />
      <NumberField label="y of the first corner" value={a.y} unit="m" onCommit={(y) => put([{ x: a.x, y }, b])} />
      <NumberField label="x of the second corner" value={b.x} unit="m" onCommit={(x) => put([a, { x, y: b.y }])} />
      <NumberField label="y of the second corner" value={b.y} unit="m" onCommit={(y) => put([a, { x: b.x, y }])} />
      <NumberField
        label="turned by"
        value={shape.rotation}
        unit="°"
        onCommit={(turn) => edit('Turn', (doc) => withRotation(doc, again(doc, zone), turn))}
      />
      <p class="note">
        The corners are those before it is turned about its centre. {distance(corners[0], corners[1]).toFixed(2)} m ×{' '}
        {distance(corners[1], corners[2]).toFixed(2)} m.
      </p>
    </div>
  );
}

function SectorValues({ zone, shape }: { zone: Zone; shape: SectorShape }) {
  const put = (part: Partial<SectorShape>): boolean =>
    edit('Numbers of a sector', (doc) => withShape(doc, again(doc, zone), { ...shape, ...part }));
  return (
    <div class="fields">
      <NumberField
        label="from bearing"
        value={tidy(Math.round(degrees(shape.minAngle) * 1e4) / 1e4)}
        unit="°"
        onCommit={(angle) => put({ minAngle: tidy(radians(angle)) })}
      />
      <NumberField
        label="to bearing"
        value={tidy(Math.round(degrees(shape.maxAngle) * 1e4) / 1e4)}
        unit="°"
        onCommit={(angle) => put({ maxAngle: tidy(radians(angle)) })}
      />
      <NumberField label="radius" value={shape.radius} unit="m" onCommit={(radius) => put({ radius })} />
      <p class="note">
        A sector sits at the origin. It covers {degrees(sweepOf(shape)).toFixed(1)}°, counterclockwise; in the document{' '}
        {shape.minAngle} to {shape.maxAngle} rad.
      </p>
    </div>
  );
}

function LineValues({ line }: { line: Line }) {
  const way = minus(line.second, line.first);
  const put = (first: Pt, second: Pt): boolean =>
    edit('Place a line', (doc) => withLine(doc, again(doc, line), first, second));
  const end = (length: number, angle: number): Pt => ({
    x: line.first.x + length * Math.cos(angle),
    y: line.first.y + length * Math.sin(angle),
  });
  const length = distance(line.first, line.second);
  return (
    <div class="fields">
      <NumberField
        label="x of the first end"
        value={line.first.x}
        unit="m"
        onCommit={(x) => put({ x, y: line.first.y }, line.second)}
      />
      <NumberField
        label="y of the first end"
        value={line.first.y}
        unit="m"
        onCommit={(y) => put({ x: line.first.x, y }, line.second)}
      />
      <NumberField
        label="x of the second end"
        value={line.second.x}
        unit="m"
        onCommit={(x) => put(line.first, { x, y: line.second.y })}
      />
      <NumberField
        label="y of the second end"
        value={line.second.y}
        unit="m"
        onCommit={(y) => put(line.first, { x: line.second.x, y })}
      />
      <NumberField
        label="length"
        value={tidy(length)}
        unit="m"
        onCommit={(to) => put(line.first, end(to, bearing(way)))}
      />
      <NumberField
        label="direction"
        value={tidy(degrees(bearing(way)))}
        unit="°"
        onCommit={(to) => put(line.first, end(length, radians(to)))}
      />
      <p class="note">From the first end to the second, the left side is on the left.</p>
    </div>
  );
}

// Each slot drives an output; the zone that is in the chosen one changes places.
function SlotChoice({ zone, fieldName }: { zone: Zone; fieldName: string }) {
  const isKnown = Number.isInteger(zone.index) && zone.index >= 0 && zone.index < MOST_ZONES;
  return (
    <label class="choice note">
      <span>slot</span>
      <select
        value={isKnown ? String(zone.index) : ''}
        onChange={(event) => {
          const slot = Number(event.currentTarget.value);
          edit('Slot', (doc) => withSlot(doc, again(doc, zone), slot));
        }}
      >
        {isKnown ? null : <option value="">?</option>}
        {Array.from({ length: MOST_ZONES }, (_, slot) => (
          <option key={slot} value={String(slot)}>
            {slot}
          </option>
        ))}
      </select>
      <span>of {fieldName}</span>
    </label>
  );
}

export function Values({ state }: { state: State }) {
  const { doc, selection } = state;
  if (selection.length !== 1)
    return selection.length > 1 ? <p class="note">{selection.length} shapes are selected.</p> : null;
  const item = doc.byId.get(selection[0]!);
  if (!item) return null;
  const field = item.kind === 'zone' ? doc.fields[item.field] : undefined;
  return (
    <section class="values" aria-label="Numbers">
      <NameField
        label="name"
        name={item.name}
        isLimited={item.kind !== 'line'}
        onCommit={(name) => edit('Rename', (now) => renamed(now, again(now, item), name))}
      />
      {field ? <SlotChoice zone={item as Zone} fieldName={`field ${field.index}, ${field.name}`} /> : null}
      {item.kind === 'line' ? <LineValues line={item} /> : null}
      {item.kind !== 'line' && item.shape?.kind === 'rectangle' ? (
        <RectangleValues zone={item} shape={item.shape} />
      ) : null}
      {item.kind !== 'line' && item.shape?.kind === 'sector' ? <SectorValues zone={item} shape={item.shape} /> : null}
      {item.kind !== 'line' ? (
        <div class="fields">
          <NumberField
            label="zMin"
            value={item.zMin}
            unit="m"
            onCommit={(z) => edit('Lower height', (now) => withHeight(now, again(now, item), 'zMin', z))}
          />
          <NumberField
            label="zMax"
            value={item.zMax}
            unit="m"
            onCommit={(z) => edit('Upper height', (now) => withHeight(now, again(now, item), 'zMax', z))}
          />
        </div>
      ) : null}
      {item.kind !== 'line' && item.shape === null ? (
        <p class="note wrong">The document has no whole shape here; see the findings.</p>
      ) : null}
      {item.kind !== 'line' ? <Corners zone={item} state={state} /> : null}
      {item.kind !== 'line' && item.shape ? (
        <p class="note">{Math.abs(area(ringOf(item))).toFixed(2)} m² on the plan.</p>
      ) : null}
    </section>
  );
}
