import { describe, expect, test } from 'vitest';
import { cornersOf, radians, sweepOf } from '../../src/edit/geometry';
import { begin, type History, redo, squashed, stepped, undo } from '../../src/edit/history';
import {
  allRemoved,
  exclusionAdded,
  fieldAdded,
  lineAdded,
  removed,
  vertexAdded,
  vertexRemoved,
  zoneAdded,
} from '../../src/edit/items';
import { fittingName, Refusal } from '../../src/edit/limits';
import { type Doc, itemAt, type RectangleShape, type Shape, type Zone, read } from '../../src/edit/model';
import { duplicated, mirrored, moved, turnedBy, vertexMoved } from '../../src/edit/moves';
import { renamed, withHeight, withOption, withRotation, withShape, withSlot } from '../../src/edit/values';
import { crossing } from './example';
import { randomOf } from './random';

const walkway = 'ZoneDetector/EvaluationField[0]/Zone[0]';
const gate = 'ZoneDetector/EvaluationField[2]/Zone[2]';
const stop = 'ZoneDetector/EvaluationField[2]/Zone[0]';
const zone = (doc: Doc, id: string): Zone => doc.byId.get(id) as Zone;
const doc = read(crossing);
const square: Shape = {
  kind: 'polygon',
  points: [
    { x: 0, y: 0 },
    { x: 1, y: 0 },
    { x: 1, y: 1 },
  ],
};
const drawn = { name: 'New', shape: square, zMin: 0, zMax: 2 };

describe('slots', () => {
  const text =
    '{"EvaluationField":[{"name":"F","index":0,"Zone":[{"name":"A","index":0},{"name":"B","index":1},{"name":"C"}]}]}';
  const of = (name: string): Zone => read(text).fields[0]!.zones.find((one) => one.name === name)!;

  test('a zone takes a free slot, or changes places with the zone that has it', () => {
    expect(withSlot(read(text), of('A'), 2)).toBe(text.replace('"A","index":0', '"A","index":2'));
    expect(withSlot(read(text), of('A'), 1)).toBe(
      text.replace('"A","index":0', '"A","index":1').replace('"B","index":1', '"B","index":0'),
    );
    expect(withSlot(read(text), of('A'), 0)).toBe(text);
  });

  test('a zone without a slot takes none from another', () => {
    expect(withSlot(read(text), of('C'), 2)).toBe(text.replace('"name":"C"', '"name":"C", "index": 2'));
    expect(() => withSlot(read(text), of('C'), 1)).toThrow(new Refusal('Slot 1 is that of "B".'));
  });
});

describe('the model', () => {
  test('holds what the example holds', () => {
    expect(doc.fields.map((field) => [field.index, field.name, field.zones.map((one) => one.name)])).toEqual([
      [0, 'Pedestrians', ['Walkway', 'Near kerb', 'Far kerb']],
      [1, 'Vehicles', ['Lane east', 'Lane west']],
      [2, 'Robot cell', ['Stop', 'Slow', 'Gate']],
    ]);
    expect(doc.exclusions.map((one) => one.name)).toEqual(['Robot arm', 'Lamp post', 'Hedge']);
    expect(doc.lines.map((one) => one.name)).toEqual(['Crossing', 'Lane east exit', 'Lane west entry', 'Cell gate']);
    expect(doc.options).toEqual({ debounceTimeMs: 200, sensitivity: 6, triggerActiveLevel: 'high' });
    expect(zone(doc, stop).shape).toEqual({ kind: 'sector', minAngle: 2.6, maxAngle: 0.5, radius: 3 });
  });

  test('reads lists without brackets, numbers in quotes, shapes in any case and lists without the top node', () => {
    const plain = read(
      '{"EvaluationField":{"name":"F","index":0,"Zone":{"name":"Z","index":"1","shape":"SECTOR","Sector":{"minAngle":0,"maxAngle":1,"radius":"2"}}}}',
    );
    expect(plain.fields[0]?.zones[0]).toMatchObject({
      index: 1,
      zMin: 0,
      zMax: 20,
      shape: { kind: 'sector', radius: 2 },
    });
    expect(plain.options.sensitivity).toBe(10);
  });

  test('leaves out shapes that are not whole', () => {
    for (const shape of [
      '"shape":"circle"',
      '"shape":"polygon"',
      '"shape":"rectangle","Rectangle":{"rotation":0,"Point":[{"x":0,"y":0}]}',
      '"shape":"polygon","Polygon":{"Point":[{"x":0}]}',
    ]) {
      expect(read(`{"ZoneDetector":{"ExclusionZone":[{"name":"a",${shape}}]}}`).exclusions[0]?.shape).toBeNull();
    }
    for (const odd of ['[]', '7', '{"ZoneDetector":[1,null]}', '{"CounterLines":{"CounterLine":["a"]}}']) {
      expect(() => read(odd), odd).not.toThrow();
    }
  });

  test('finds the item of a finding', () => {
    expect(itemAt(doc, walkway + '/Polygon')?.name).toBe('Walkway');
    expect(itemAt(doc, walkway)?.name).toBe('Walkway');
    expect(itemAt(doc, 'ZoneDetector/sensitivity')).toBeUndefined();
  });
});

describe('an edit changes only what it is about', () => {
  test('a vertex', () => {
    const text = vertexMoved(doc, zone(doc, walkway), 1, { x: 9.25, y: 11 });
    expect(text).toBe(crossing.replace('{ "x": 9.0, "y": 11.0 }', '{ "x": 9.25, "y": 11.0 }'));
  });

  test('a vertex, while the others keep all their digits', () => {
    const long = crossing.replace('"x": 8.6, "y": 4.0', '"x": 8.60000000123, "y": 4.0');
    const before = read(long);
    expect(vertexMoved(before, zone(before, walkway), 1, { x: 9.25, y: 11 })).toBe(
      long.replace('{ "x": 9.0, "y": 11.0 }', '{ "x": 9.25, "y": 11.0 }'),
    );
  });

  test('a name, a height, an option, a rotation', () => {
    expect(renamed(doc, zone(doc, walkway), 'Way "1"')).toBe(crossing.replace('"Walkway"', '"Way \\"1\\""'));
    expect(withHeight(doc, zone(doc, walkway), 'zMax', 3)).toBe(crossing.replace('"zMax": 2.2', '"zMax": 3'));
    expect(withOption(doc, 'sensitivity', 9)).toBe(crossing.replace('"sensitivity": 6', '"sensitivity": 9'));
    expect(withRotation(doc, zone(doc, gate), 45)).toBe(crossing.replace('"rotation": 30', '"rotation": 45'));
  });

  test('unknown keys, order and formatting stay', () => {
    const odd = crossing.replace('"name": "Walkway",', '"remark" :  {"a":[1 ,2]},\n            "name": "Walkway",');
    const before = read(odd);
    expect(withHeight(before, zone(before, walkway), 'zMin', 1)).toBe(odd.replace('"zMin": 0.2', '"zMin": 1'));
  });

  test('the same value is not written again', () => {
    expect(withHeight(doc, zone(doc, walkway), 'zMin', 0.2)).toBe(crossing);
    expect(moved(doc, [walkway], { x: 0, y: 0 })).toBe(crossing);
    expect(withShape(doc, zone(doc, gate), zone(doc, gate).shape!)).toBe(crossing);
  });

  test('a height that is missing is added', () => {
    const text = '{ "ZoneDetector": { "ExclusionZone": [ { "name": "a", "shape": "sector" } ] } }';
    const before = read(text);
    expect(withHeight(before, before.exclusions[0]!, 'zMax', 3)).toBe(
      text.replace('"sector" }', '"sector", "zMax": 3 }'),
    );
  });

  test('a move writes no dust of binary fractions', () => {
    const text = moved(doc, [walkway], { x: 0.1, y: 0.2 });
    expect(zone(read(text), walkway).shape).toEqual({
      kind: 'polygon',
      points: [
        { x: 8.7, y: 4.2 },
        { x: 9.1, y: 11.2 },
        { x: 13.1, y: 11.2 },
        { x: 13.5, y: 4.2 },
      ],
    });
    expect(text).toContain('"x": 8.7, "y": 4.2');
  });
});

describe('shapes', () => {
  test('a corner of a turned rectangle follows the pointer and the opposite one stays', () => {
    for (let corner = 0; corner < 4; ++corner) {
      const before = cornersOf(zone(doc, gate).shape as RectangleShape);
      const to = { x: before[corner]!.x + 0.7, y: before[corner]!.y - 0.4 };
      const after = cornersOf(zone(read(vertexMoved(doc, zone(doc, gate), corner, to)), gate).shape as RectangleShape);
      expect(after[corner]!.x).toBeCloseTo(to.x, 5);
      expect(after[corner]!.y).toBeCloseTo(to.y, 5);
      expect(after[(corner + 2) % 4]!.x).toBeCloseTo(before[(corner + 2) % 4]!.x, 5);
      expect(after[(corner + 2) % 4]!.y).toBeCloseTo(before[(corner + 2) % 4]!.y, 5);
    }
  });

  test('a sector stays at the origin', () => {
    expect(() => moved(doc, [stop], { x: 1, y: 0 })).toThrow('A sector sits at the origin.');
    expect(moved(doc, [stop, gate], { x: 1, y: 0 })).toBe(moved(doc, [gate], { x: 1, y: 0 }));
    expect(sweepOf({ kind: 'sector', minAngle: 2.6, maxAngle: 0.5, radius: 3 })).toBeCloseTo(2 * Math.PI - 2.1, 12);
    expect(sweepOf({ kind: 'sector', minAngle: 0, maxAngle: 2 * Math.PI, radius: 3 })).toBe(2 * Math.PI);
  });

  test('turning', () => {
    expect(zone(read(turnedBy(doc, zone(doc, gate), radians(170))), gate).shape).toMatchObject({ rotation: -160 });
    const sector = zone(read(turnedBy(doc, zone(doc, stop), 1)), stop).shape;
    expect(sector).toMatchObject({ minAngle: -2.683185, maxAngle: 1.5, radius: 3 });
  });

  test('mirroring twice is the start', () => {
    for (const axis of ['x', 'y'] as const) {
      const ids = [walkway, gate, stop, 'CounterLines/CounterLine[0]'];
      const once = read(mirrored(doc, ids, axis));
      const twice = read(mirrored(once, ids, axis));
      expect(once.text).not.toBe(crossing);
      for (const id of ids) {
        const [a, b] = [twice.byId.get(id)!, doc.byId.get(id)!];
        expect({ ...a, node: null }).toEqual({ ...b, node: null });
      }
    }
  });
});

describe('lists', () => {
  test('a zone goes into the lowest free slot of its field', () => {
    const vehicles = doc.fields[1]!;
    const after = read(zoneAdded(doc, vehicles, drawn));
    expect(after.fields[1]!.zones.map((one) => [one.name, one.index])).toEqual([
      ['Lane east', 0],
      ['Lane west', 1],
      ['New', 2],
    ]);
    expect(JSON.parse(after.text)).toBeTruthy();
    expect(after.text.startsWith(crossing.slice(0, crossing.indexOf('"Lane west"')))).toBe(true);
  });

  test('the limits are said at the moment', () => {
    expect(() => zoneAdded(doc, doc.fields[0]!, drawn)).toThrow('The field "Pedestrians" has its 3 zones already.');
    const full = Array.from({ length: 5 }).reduce<string>(
      (text, _, i) => fieldAdded(read(text), `F${i}`, drawn),
      crossing,
    );
    expect(read(full).fields.map((field) => field.index)).toEqual([0, 1, 2, 3, 4, 5, 6, 7]);
    expect(() => fieldAdded(read(full), 'F', drawn)).toThrow('A document has at most 8 fields.');
    const crowd = Array.from({ length: 29 }).reduce<string>((text) => exclusionAdded(read(text), drawn), crossing);
    expect(() => exclusionAdded(read(crowd), drawn)).toThrow('A document has at most 32 exclusion zones.');
    expect(() => renamed(doc, zone(doc, walkway), 'ééééééééé+')).toThrow(
      'A name has at most 18 bytes; this one has 19.',
    );
    expect(() => renamed(doc, zone(doc, walkway), '')).toThrow(Refusal);
    expect(read(renamed(doc, zone(doc, walkway), 'ééééééééé')).fields[0]!.zones[0]!.name).toBe('ééééééééé');
    expect(fittingName('ééééééééé+')).toBe('ééééééééé');
  });

  test('vertices from 3 to 16', () => {
    let text = crossing;
    for (let i = 4; i < 16; ++i) text = vertexAdded(read(text), zone(read(text), walkway), 2, { x: 10, y: 11 + i });
    expect(() => vertexAdded(read(text), zone(read(text), walkway), 0, { x: 0, y: 0 })).toThrow(
      'A polygon has at most 16 vertices.',
    );
    const three = vertexRemoved(doc, zone(doc, walkway), 0);
    expect(three).toBe(crossing.replace('{ "x": 8.6, "y": 4.0 }, ', ''));
    expect(() => vertexRemoved(read(three), zone(read(three), walkway), 0)).toThrow(
      'A polygon has at least 3 vertices.',
    );
    expect(() => zoneAdded(doc, doc.fields[1]!, { ...drawn, shape: { kind: 'polygon', points: [] } })).toThrow(
      'at least 3',
    );
  });

  test('added and removed again is the start', () => {
    const lines = read(lineAdded(doc, 'L', { x: 0, y: 0 }, { x: 1, y: 1 }));
    expect(removed(lines, lines.lines[4]!)).toBe(crossing);
    const zones = read(zoneAdded(doc, doc.fields[1]!, drawn));
    expect(removed(zones, zones.fields[1]!.zones[2]!)).toBe(crossing);
    const fields = read(fieldAdded(doc, 'F', drawn));
    expect(removed(fields, fields.fields[3]!.zones[0]!)).toBe(crossing);
    const exclusions = read(exclusionAdded(doc, drawn));
    expect(removed(exclusions, exclusions.exclusions[3]!)).toBe(crossing);
  });

  test('all zones of a field take it along', () => {
    const left = read(
      allRemoved(
        doc,
        doc.fields[0]!.zones.map((one) => one.id),
      ),
    );
    expect(left.fields.map((field) => field.name)).toEqual(['Vehicles', 'Robot cell']);
    expect(left.exclusions).toHaveLength(3);
  });

  test('into an empty document, with and without line breaks', () => {
    for (const text of [
      '{}',
      '{\n}',
      '{ "ZoneDetector": {} }',
      '{\n  "ZoneDetector": {\n    "EvaluationField": []\n  }\n}',
    ]) {
      const after = read(
        lineAdded(
          read(exclusionAdded(read(fieldAdded(read(text), 'F', drawn)), drawn)),
          'L',
          { x: 0, y: 0 },
          { x: 1, y: 0 },
        ),
      );
      expect([after.fields.length, after.exclusions.length, after.lines.length], text).toEqual([1, 1, 1]);
      expect(after.fields[0]!.id, text).toBe('ZoneDetector/EvaluationField[0]');
    }
  });

  test('a list without brackets gets them', () => {
    const single = read(
      '{"ZoneDetector":{"EvaluationField":{"name":"F","index":0,"Zone":{"name":"Z","index":0,"shape":"sector","Sector":{"minAngle":0,"maxAngle":1,"radius":1}}}}}',
    );
    const after = read(zoneAdded(single, single.fields[0]!, drawn));
    expect(after.fields[0]!.zones.map((one) => [one.name, one.index])).toEqual([
      ['Z', 0],
      ['New', 1],
    ]);
  });

  test('a copy goes to the next free slot and has a name of its own', () => {
    const copy = read(duplicated(doc, [walkway], { x: 1, y: 0 }));
    expect(copy.fields[1]!.zones[2]).toMatchObject({ name: 'Walkway 2', index: 2, zMin: 0.2, zMax: 2.2 });
    const long = read(renamed(doc, zone(doc, walkway), 'ééééééééé'));
    expect(read(duplicated(long, [walkway], { x: 1, y: 0 })).fields[1]!.zones[2]!.name).toBe('éééééééé 2');
  });
});

describe('history', () => {
  test('two hundred random steps and undo equal the start, redo the end (seed 11)', () => {
    const random = randomOf(11);
    const pick = <T>(list: readonly T[]): T => list[Math.floor(random() * list.length)]!;
    const place = (): { x: number; y: number } => ({ x: random() * 20 - 10, y: random() * 20 - 10 });
    const step = (now: Doc): string => {
      const item = pick([...now.byId.values()]);
      const id = item?.id ?? '';
      const some = item as Zone;
      const edits: (() => string)[] = [
        () => moved(now, [id], place()),
        () => vertexMoved(now, item, Math.floor(random() * 4), place()),
        () => vertexAdded(now, some, 1, place()),
        () => vertexRemoved(now, some, 0),
        () => turnedBy(now, some, random() * 3),
        () => mirrored(now, [id], pick(['x', 'y'] as const)),
        () => duplicated(now, [id], { x: 1, y: 1 }),
        () => removed(now, item),
        () => renamed(now, item, `N${Math.floor(random() * 1e6)}`),
        () => withHeight(now, some, 'zMin', random()),
        () => withOption(now, 'debounceTimeMs', Math.floor(random() * 1000)),
        () => exclusionAdded(now, drawn),
        () => fieldAdded(now, 'F', drawn),
        () => lineAdded(now, 'L', place(), place()),
      ];
      return pick(edits)();
    };
    let history: History = begin(crossing);
    for (let i = 0; i < 200;) {
      try {
        history = stepped(history, 'random', step(read(history.text)));
        ++i;
      } catch (error) {
        if (!(error instanceof Refusal)) throw error;
      }
      const now = read(history.text);
      expect([...now.byId.values()].every((item) => item.kind === 'line' || item.shape !== null)).toBe(true);
      expect(now.fields.every((field) => field.zones.length >= 1 && field.zones.length <= 3)).toBe(true);
    }
    const { text, done } = history;
    expect(done.length).toBeGreaterThan(150);
    while (history.done.length > 0) history = undo(history);
    expect(history.text).toBe(crossing);
    while (history.undone.length > 0) history = redo(history);
    expect(history.text).toBe(text);
    const one = squashed(history, done.length, 'all');
    expect(one.done).toHaveLength(1);
    expect(undo(one).text).toBe(crossing);
  });

  test('an edit after undo gives up what was undone; an edit that changes nothing is not a step', () => {
    const two = stepped(stepped(begin('a'), '1', 'b'), '2', 'c');
    expect(stepped(two, '3', 'c')).toBe(two);
    expect(stepped(undo(two), '3', 'd')).toMatchObject({ text: 'd', undone: [] });
    expect(undo(begin('a'))).toEqual(begin('a'));
    expect(redo(begin('a'))).toEqual(begin('a'));
    expect(squashed(stepped(two, '3', 'a'), 3, 'none').done).toHaveLength(0);
  });
});
