import { describe, expect, test } from 'vitest';
import { apply, between, NOTHING, reverse } from '../../src/text/change';
import { type ArrayNode, JsonFault, lineAndColumn, member, type ObjectNode, parse, placeOf } from '../../src/text/json';
import { itemInserted, itemRemoved, memberAdded, replaced, spliced } from '../../src/text/splice';
import { randomOf } from './random';

const fault = (text: string): JsonFault => {
  try {
    parse(text);
  } catch (error) {
    if (error instanceof JsonFault) return error;
  }
  throw new Error(`"${text}" was read`);
};

describe('parse', () => {
  test('knows the place of everything', () => {
    const text = ' { "a" : [1, -2.5e3 ,"x\\"y"], "b":null}';
    const root = parse(text) as ObjectNode;
    const list = member(root, 'a') as ArrayNode;
    expect(list.items.map((one) => text.slice(one.start, one.end))).toEqual(['1', '-2.5e3', '"x\\"y"']);
    expect(list.items.map((one) => (one.kind === 'scalar' ? one.value : one))).toEqual([1, -2500, 'x"y']);
    expect([root.start, root.end]).toEqual([1, text.length]);
  });

  test('reads the first of a repeated key', () => {
    expect(member(parse('{"a":1,"a":2}'), 'a')).toMatchObject({ value: 1 });
  });

  test('agrees with the platform on what is JSON', () => {
    const texts = [
      '',
      '{',
      '[1,]',
      '{"a":1,}',
      '01',
      '1.',
      '.5',
      '+1',
      'NaN',
      '"\t"',
      '"\\x"',
      'nul',
      '[1 2]',
      '{"a" 1}',
      '1 2',
      '"a',
      '"\\u12"',
      '-',
      '{a:1}',
      "'a'",
      '[1,2',
      '// a\n1',
    ];
    for (const text of texts) {
      expect(() => JSON.parse(text) as unknown, text).toThrow();
      expect(fault(text), text).toBeInstanceOf(JsonFault);
    }
    for (const text of ['0', '-0.5E+2', '"\\u00e9\\n"', '[]', '{}', ' [ true , false ] ', '{"":{"a":[null]}}']) {
      expect(() => parse(text), text).not.toThrow();
    }
  });

  test('goes down 64 levels and not further', () => {
    expect(() => parse('['.repeat(64) + ']'.repeat(64))).not.toThrow();
    expect(fault('['.repeat(65) + ']'.repeat(65))).toMatchObject({ message: 'more than 64 levels', at: 64 });
    expect(fault('['.repeat(1e6)).message).toBe('more than 64 levels');
  });

  test('counts lines and columns in characters, and back', () => {
    const text = 'a\n"é𝄞" x\nend';
    expect(lineAndColumn(text, text.indexOf('x'))).toEqual({ line: 2, column: 6 });
    expect(placeOf(text, 2, 6)).toBe(text.indexOf('x'));
    expect(placeOf(text, 2, 99)).toBe(text.indexOf('\nend'));
    expect(placeOf(text, 99, 1)).toBe(text.length);
  });
});

describe('a change', () => {
  test('is the shortest one, can be applied and reversed', () => {
    expect(between('abcd', 'abXcd')).toEqual({ at: 2, removed: '', inserted: 'X' });
    expect(between('aaa', 'aa')).toEqual({ at: 2, removed: 'a', inserted: '' });
    expect(between('abc', 'abc')).toEqual(NOTHING);
    const change = between('one two', 'one 2 two');
    expect(apply(apply('one two', change), reverse(change))).toBe('one two');
  });

  test('belongs to its text', () => {
    expect(() => apply('xyz', { at: 0, removed: 'a', inserted: 'b' })).toThrow('the change belongs to another text');
  });

  test('after change can be applied and reversed, for 200 random texts (seed 5)', () => {
    const random = randomOf(5);
    const word = (): string =>
      Array.from({ length: Math.floor(random() * 6) }, () => 'ab\n'[Math.floor(random() * 3)]).join('');
    for (let i = 0; i < 200; ++i) {
      const texts = [word(), word(), word(), word()];
      const changes = texts.slice(1).map((text, k) => between(texts[k]!, text));
      expect(changes.reduce(apply, texts[0]!)).toBe(texts[3]);
      expect(changes.reduceRight((text, change) => apply(text, reverse(change)), texts[3]!)).toBe(texts[0]);
    }
  });
});

describe('an edit of the text', () => {
  const text = '{\n    "a": [\n        { "x": 1 },\n        { "x": 2 }\n    ],\n    "b":  7\n}\n';
  const root = parse(text) as ObjectNode;
  const list = member(root, 'a') as ArrayNode;

  test('replaces a value and nothing else', () => {
    expect(spliced(text, [replaced(text, member(root, 'b')!, 8.5)])).toBe(text.replace('"b":  7', '"b":  8.5'));
  });

  test('inserts an item as its neighbours stand', () => {
    expect(spliced(text, [itemInserted(text, list, 2, { x: 3 })])).toBe(
      text.replace('{ "x": 2 }', '{ "x": 2 },\n        { "x": 3 }'),
    );
    expect(spliced(text, [itemInserted(text, list, 0, { x: 0 })])).toBe(
      text.replace('{ "x": 1 }', '{ "x": 0 },\n        { "x": 1 }'),
    );
    expect(spliced(text, [itemInserted(text, list, 1, { x: 9 })])).toBe(
      text.replace('{ "x": 1 }', '{ "x": 1 },\n        { "x": 9 }'),
    );
  });

  test('inserts on one line where the neighbours are on one line', () => {
    const flat = '{"a":[1, 2],"b":[]}';
    const lists = parse(flat);
    expect(spliced(flat, [itemInserted(flat, member(lists, 'a') as ArrayNode, 1, 5)])).toBe('{"a":[1, 5, 2],"b":[]}');
    expect(spliced(flat, [itemInserted(flat, member(lists, 'b') as ArrayNode, 0, 5)])).toBe('{"a":[1, 2],"b":[5]}');
    expect(spliced(flat, [memberAdded(flat, lists as ObjectNode, 'c', true)])).toBe('{"a":[1, 2],"b":[], "c": true}');
  });

  test('keeps tabs and the line breaks of other systems', () => {
    const other = '{\r\n\t"a": []\r\n}';
    expect(spliced(other, [itemInserted(other, member(parse(other), 'a') as ArrayNode, 0, { name: 'x', p: [] })])).toBe(
      '{\r\n\t"a": [\r\n\t\t{\r\n\t\t\t"name": "x",\r\n\t\t\t"p": []\r\n\t\t}\r\n\t]\r\n}',
    );
  });

  test('removes an item with one comma', () => {
    expect(spliced(text, [itemRemoved(list, 1)])).toBe(text.replace(',\n        { "x": 2 }', ''));
    expect(spliced(text, [itemRemoved(list, 0)])).toBe(text.replace('{ "x": 1 },\n        ', ''));
    expect(spliced('[ 1 ]', [itemRemoved(parse('[ 1 ]') as ArrayNode, 0)])).toBe('[]');
    expect(() => itemRemoved(list, 2)).toThrow('there is nothing to remove');
  });

  test('refuses two edits of one place', () => {
    expect(() =>
      spliced('abc', [
        { from: 0, to: 2, text: '' },
        { from: 1, to: 3, text: '' },
      ]),
    ).toThrow('two edits of one place');
  });
});
