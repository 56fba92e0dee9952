// How new values are laid out: small objects and points on one line, the rest as in the bundled example.

export type Json = string | number | boolean | null | readonly Json[] | { readonly [key: string]: Json };

const WIDEST = 100;

function isScalar(value: Json): value is string | number | boolean | null {
  return value === null || typeof value !== 'object';
}

export function inlined(value: Json): string {
  if (isScalar(value)) return JSON.stringify(value);
  if (Array.isArray(value)) return value.length === 0 ? '[]' : `[ ${value.map(inlined).join(', ')} ]`;
  const members = Object.entries(value).map(([key, one]) => `${JSON.stringify(key)}: ${inlined(one)}`);
  return members.length === 0 ? '{}' : `{ ${members.join(', ')} }`;
}

/** Whether nothing in it is deeper than one level, so that it reads well on one line. */
function isFlat(value: Json): boolean {
  return isScalar(value) || Object.values(value).every(isScalar);
}

/** Lines after the first begin with `indent`; ends without a line break. */
export function laidOut(value: Json, indent: string, unit: string): string {
  const inner = indent + unit;
  if (isScalar(value)) return JSON.stringify(value);
  const isList = Array.isArray(value);
  const short = inlined(value);
  const isSmall = isList ? value.every(isFlat) && value.length <= 2 : !('name' in value);
  if (isSmall && inner.length + short.length <= WIDEST) return short;
  if (isList) {
    if (value.length === 0) return '[]';
    if (!value.every(isFlat)) {
      return `[\n${value.map((one) => inner + laidOut(one, inner, unit)).join(',\n')}\n${indent}]`;
    }
    const lines: string[] = [];
    for (const one of value.map(inlined)) {
      const last = lines.at(-1);
      if (last !== undefined && inner.length + last.length + one.length + 3 <= WIDEST)
        lines[lines.length - 1] = `${last}, ${one}`;
      else lines.push(one);
    }
    return `[\n${lines.map((line) => inner + line).join(',\n')}\n${indent}]`;
  }
  const members = Object.entries(value).map(
    ([key, one]) => `${inner}${JSON.stringify(key)}: ${laidOut(one, inner, unit)}`,
  );
  return members.length === 0 ? '{}' : `{\n${members.join(',\n')}\n${indent}}`;
}
