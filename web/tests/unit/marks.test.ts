import { describe, expect, test } from 'vitest';
import { allRemoved, exclusionAdded, zoneAdded } from '../../src/edit/items';
import { carried, type Marks, NO_MARKS, toggled } from '../../src/edit/marks';
import { type Doc, read } from '../../src/edit/model';
import { duplicated, moved } from '../../src/edit/moves';
import { paired } from '../../src/edit/pairs';
import { renamed } from '../../src/edit/values';
import { crossing } from './example';
import { randomOf } from './random';

const doc = read(crossing);
const idOf = (of: Doc, name: string): string => [...of.byId.values()].find((item) => item.name === name)!.id;
const names = (of: Doc, ids: Iterable<string>): string[] => [...ids].map((id) => of.byId.get(id)!.name).sort();
const hiding = (of: Doc, ...wanted: string[]): Marks => ({
  ...NO_MARKS,
  hidden: new Set(wanted.map((name) => idOf(of, name))),
});
const square = {
  kind: 'polygon',
  points: [
    { x: 0, y: 0 },
    { x: 1, y: 0 },
    { x: 1, y: 1 },
  ],
} as const;

describe('marks of shapes', () => {
  test('stay with a shape that is renamed, moved, or whose neighbour is renamed to its old name', () => {
    const first = read(renamed(doc, doc.byId.get(idOf(doc, 'Walkway'))!, 'Footpath'));
    let now = carried(doc, first, hiding(doc, 'Walkway'), []).marks;
    expect(names(first, now.hidden)).toEqual(['Footpath']);
    const second = read(renamed(first, first.byId.get(idOf(first, 'Near kerb'))!, 'Walkway'));
    now = carried(first, second, now, []).marks;
    expect(names(second, now.hidden)).toEqual(['Footpath']);
    const third = read(moved(second, [idOf(second, 'Footpath')], { x: 1, y: 0 }));
    expect(names(third, carried(second, third, now, []).marks.hidden)).toEqual(['Footpath']);
  });

  test('stay with a shape whose place in the list changes, and so does what is selected', () => {
    const now = read(allRemoved(doc, [idOf(doc, 'Walkway')]));
    const { marks, selection } = carried(doc, now, hiding(doc, 'Near kerb'), [idOf(doc, 'Far kerb')]);
    expect(names(now, marks.hidden)).toEqual(['Near kerb']);
    expect(names(now, selection)).toEqual(['Far kerb']);
    expect(selection).toEqual(['ZoneDetector/EvaluationField[0]/Zone[1]']);
  });

  test('stay with the shapes of a field whose place changes', () => {
    const now = read(
      allRemoved(
        doc,
        ['Walkway', 'Near kerb', 'Far kerb'].map((name) => idOf(doc, name)),
      ),
    );
    expect(now.fields).toHaveLength(2);
    expect(names(now, carried(doc, now, hiding(doc, 'Slow', 'Hedge'), []).marks.hidden)).toEqual(['Hedge', 'Slow']);
  });

  test('go with a shape that is removed, do not fall to the next, and come back when that is undone', () => {
    const marks = { ...hiding(doc, 'Lamp post'), locked: new Set([idOf(doc, 'Lamp post')]) };
    const now = read(allRemoved(doc, [idOf(doc, 'Lamp post')]));
    const without = carried(doc, now, marks, [idOf(doc, 'Lamp post')]);
    expect([without.marks.hidden.size, without.marks.locked.size, without.selection]).toEqual([0, 0, []]);
    const back = carried(now, doc, without.marks, []).marks;
    expect([names(doc, back.hidden), names(doc, back.locked), back.gone]).toEqual([['Lamp post'], ['Lamp post'], []]);
  });

  test('are not those of a copy, nor of a shape of the same name', () => {
    const copied = read(duplicated(doc, [idOf(doc, 'Hedge')], { x: 1, y: 1 }));
    expect(names(copied, carried(doc, copied, hiding(doc, 'Hedge'), []).marks.hidden)).toEqual(['Hedge']);
    const same = read(exclusionAdded(doc, { name: 'Hedge', shape: square, zMin: 0, zMax: 1 }));
    const { hidden } = carried(doc, same, hiding(doc, 'Hedge'), []).marks;
    expect([...hidden]).toEqual([idOf(doc, 'Hedge')]);
  });

  test('follow entries that change their order in the text', () => {
    const pairs = paired(
      [
        { text: 'a', name: 'a' },
        { text: 'b', name: 'b' },
        { text: 'c', name: 'c' },
      ],
      [
        { text: 'c!', name: 'c' },
        { text: 'new', name: 'new' },
        { text: 'b', name: 'b' },
        { text: 'a', name: 'a' },
      ],
    );
    expect(pairs).toEqual([3, 2, 0]);
  });

  test('the same text comes before the same name, at the end of a list, too', () => {
    const entry = (text: string) => ({ text, name: 'n' });
    expect(paired([entry('a'), entry('b')], [entry('b'), entry('a')])).toEqual([1, 0]);
    expect(paired([entry('a'), entry('b')], [entry('b'), entry('a!')])).toEqual([1, 0]);
  });

  test('of what is gone nothing falls to what is new', () => {
    const entry = (text: string) => ({ text, name: text });
    expect(paired([entry('a'), entry('b')], [entry('c')])).toEqual([-1, -1]);
    expect(paired([entry('a')], [entry('b')])).toEqual([0]); // edited in its place
  });

  test('toggling is its own reverse', () => {
    expect([...toggled(new Set(['a', 'b']), ['b', 'c'])]).toEqual(['a', 'c']);
  });

  test('two hundred random edits and their undoing, seed 5: each shape keeps its own mark', () => {
    const random = randomOf(5);
    const pick = <T>(list: readonly T[]): T => list[Math.floor(random() * list.length)]!;
    let now = doc;
    let marks = hiding(doc, 'Walkway', 'Stop', 'Hedge', 'Cell gate');
    const texts = [doc.text];
    const go = (text: string): void => {
      const next = read(text);
      marks = carried(now, next, marks, []).marks;
      now = next;
    };
    for (let i = 0; i < 200; ++i) {
      const items = [...now.byId.values()];
      const item = pick(items);
      const isMarked = marks.hidden.has(item.id);
      const choice = random();
      const field = now.fields.find((one) => one.zones.length < 3 && one.zones.length > 0);
      if (choice < 0.3) go(renamed(now, item, `N${i}`));
      else if (choice < 0.5 && items.length > 6) go(allRemoved(now, [item.id]));
      else if (choice < 0.7 && field) go(zoneAdded(now, field, { name: `Z${i}`, shape: square, zMin: 0, zMax: 1 }));
      else go(exclusionAdded({ ...now }, { name: `E${i}`, shape: square, zMin: 0, zMax: i + 1 }));
      if (choice < 0.3) expect(marks.hidden.has(item.id)).toBe(isMarked);
      texts.push(now.text);
      if (now.exclusions.length > 25)
        go(
          allRemoved(
            now,
            now.exclusions.slice(20).map((one) => one.id),
          ),
        );
      texts[texts.length - 1] = now.text;
    }
    for (const text of texts.reverse()) go(text);
    expect(names(doc, marks.hidden)).toEqual(['Cell gate', 'Hedge', 'Stop', 'Walkway']);
  });
});
