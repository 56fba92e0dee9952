// JSON with the place of everything in the text, so that an edit can leave the rest of the text alone.

export interface ObjectNode {
  readonly kind: 'object';
  readonly start: number;
  readonly end: number;
  readonly members: readonly Member[];
}
export interface ArrayNode {
  readonly kind: 'array';
  readonly start: number;
  readonly end: number;
  readonly items: readonly Node[];
}
export interface ScalarNode {
  readonly kind: 'scalar';
  readonly start: number;
  readonly end: number;
  readonly value: string | number | boolean | null;
}
export type Node = ObjectNode | ArrayNode | ScalarNode;
export interface Member {
  readonly key: string;
  readonly keyStart: number;
  readonly value: Node;
}

/** The text is not JSON. */
export class JsonFault extends Error {
  constructor(
    message: string,
    readonly at: number,
  ) {
    super(message);
  }
}

const MOST_LEVELS = 64;
const NUMBER = /-?(?:0|[1-9]\d*)(?:\.\d+)?(?:[eE][+-]?\d+)?/y;
const SPACE = /[ \t\r\n]*/y;

class Parser {
  private at = 0;
  constructor(private readonly text: string) {}

  whole(): Node {
    this.space();
    const node = this.value(1);
    this.space();
    if (this.at < this.text.length) throw new JsonFault('something stands after the end of the document', this.at);
    return node;
  }

  private space(): void {
    SPACE.lastIndex = this.at;
    SPACE.exec(this.text);
    this.at = SPACE.lastIndex;
  }

  private expect(sign: string): void {
    if (this.text[this.at] !== sign) throw new JsonFault(`"${sign}" is missing`, this.at);
    ++this.at;
  }

  private value(level: number): Node {
    if (level > MOST_LEVELS) throw new JsonFault(`more than ${MOST_LEVELS} levels`, this.at);
    const sign = this.text[this.at];
    if (sign === '{') return this.object(level);
    if (sign === '[') return this.array(level);
    return this.scalar();
  }

  private object(level: number): ObjectNode {
    const start = this.at++;
    const members: Member[] = [];
    this.space();
    if (this.text[this.at] !== '}') {
      for (;;) {
        const keyStart = this.at;
        const key = this.string();
        this.space();
        this.expect(':');
        this.space();
        members.push({ key, keyStart, value: this.value(level + 1) });
        this.space();
        if (this.text[this.at] !== ',') break;
        ++this.at;
        this.space();
      }
    }
    this.expect('}');
    return { kind: 'object', start, end: this.at, members };
  }

  private array(level: number): ArrayNode {
    const start = this.at++;
    const items: Node[] = [];
    this.space();
    if (this.text[this.at] !== ']') {
      for (;;) {
        items.push(this.value(level + 1));
        this.space();
        if (this.text[this.at] !== ',') break;
        ++this.at;
        this.space();
      }
    }
    this.expect(']');
    return { kind: 'array', start, end: this.at, items };
  }

  private string(): string {
    const start = this.at;
    if (this.text[start] !== '"') throw new JsonFault('a text in double quotes is missing', start);
    let end = start + 1;
    while (end < this.text.length && this.text[end] !== '"') end += this.text[end] === '\\' ? 2 : 1;
    if (end >= this.text.length) throw new JsonFault('the text does not end', start);
    this.at = end + 1;
    try {
      return JSON.parse(this.text.slice(start, this.at)) as string;
    } catch {
      throw new JsonFault('a character that a text cannot hold', start);
    }
  }

  private scalar(): ScalarNode {
    const start = this.at;
    for (const [word, value] of [
      ['true', true],
      ['false', false],
      ['null', null],
    ] as const) {
      if (this.text.startsWith(word, start)) {
        this.at += word.length;
        return { kind: 'scalar', start, end: this.at, value };
      }
    }
    if (this.text[start] === '"') {
      const value = this.string();
      return { kind: 'scalar', start, end: this.at, value };
    }
    NUMBER.lastIndex = start;
    const match = NUMBER.exec(this.text);
    if (!match) throw new JsonFault('a value is missing', start);
    this.at += match[0].length;
    return { kind: 'scalar', start, end: this.at, value: Number(match[0]) };
  }
}

/** The tree of a text. Throws JsonFault. */
export function parse(text: string): Node {
  return new Parser(text).whole();
}

/** The member of that key, the first where it is repeated, since that is the one that is read. */
export function member(node: Node | undefined, key: string): Node | undefined {
  return node?.kind === 'object' ? node.members.find((one) => one.key === key)?.value : undefined;
}

/** What a list holds. One object without brackets is a list of one; a missing list is empty. */
export function listOf(node: Node | undefined): readonly Node[] {
  return node === undefined ? [] : node.kind === 'array' ? node.items : [node];
}

/** Line and column of a place in the text, both from 1; a column is a character, whatever its bytes. */
export function lineAndColumn(text: string, at: number): { line: number; column: number } {
  const before = text.slice(0, at);
  const begin = before.lastIndexOf('\n') + 1;
  return { line: before.split('\n').length, column: [...before.slice(begin)].length + 1 };
}

/** The place of a line and column; the end of the line where it is shorter. */
export function placeOf(text: string, line: number, column: number): number {
  let begin = 0;
  for (let i = 1; i < line; ++i) {
    const next = text.indexOf('\n', begin);
    if (next < 0) return text.length;
    begin = next + 1;
  }
  const end = text.indexOf('\n', begin);
  const characters = [...text.slice(begin, end < 0 ? text.length : end)];
  return begin + characters.slice(0, Math.max(0, column - 1)).join('').length;
}
