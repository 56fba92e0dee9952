// What a document may hold. Said at the moment an edit asks for more, not when the document is loaded.

export const MOST_FIELDS = 8;
export const MOST_ZONES = 3;
export const MOST_EXCLUSIONS = 32;
export const MOST_VERTICES = 16;
export const FEWEST_VERTICES = 3;
export const LONGEST_NAME = 18;
export const LARGEST_DOCUMENT = 102399;

/** An edit that the document does not allow, with the reason in words. */
export class Refusal extends Error {}

export function bytesOf(text: string): number {
  return new TextEncoder().encode(text).length;
}

/** Throws Refusal. */
export function checkName(name: string): void {
  const bytes = bytesOf(name);
  if (bytes === 0) throw new Refusal('A name has at least one byte.');
  if (bytes > LONGEST_NAME) throw new Refusal(`A name has at most ${LONGEST_NAME} bytes; this one has ${bytes}.`);
}

/** The beginning of a name that still fits, whole characters. */
export function fittingName(name: string): string {
  let fitting = '';
  for (const character of name) {
    if (bytesOf(fitting + character) > LONGEST_NAME) break;
    fitting += character;
  }
  return fitting;
}
