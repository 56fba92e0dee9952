import { describe, expect, test } from 'vitest';
import { linkOf, textIn } from '../../src/app/link';
import { crossing } from './example';
import { randomOf } from './random';

describe('a link', () => {
  test('holds the document, byte for byte', async () => {
    for (const text of ['', '{}', crossing, '{"é𝄞": "\\u0000"}']) expect(await textIn(await linkOf(text))).toBe(text);
    expect(await linkOf(crossing)).toMatch(/^#document=[A-Za-z0-9_-]+$/);
  });

  test('other hashes hold none', async () => {
    for (const hash of ['', '#', '#document=', '#document=a b', '#x=abc']) expect(await textIn(hash), hash).toBeNull();
  });

  test('a document that is too large for a link is refused, with the sizes', async () => {
    const random = randomOf(3);
    const large = Array.from({ length: 9000 }, () => String.fromCharCode(32 + Math.floor(random() * 90))).join('');
    await expect(linkOf(large)).rejects.toThrow(
      /^The document needs \d+ letters; a link holds 8000\. Send the file instead\.$/,
    );
  });

  test('what is damaged, cut short or unfolds without end is refused', async () => {
    const whole = await linkOf(crossing);
    for (const hash of [
      whole.slice(0, -20),
      whole.slice(0, 40),
      whole.replace('document=', 'document=AAAA'),
      '#document=A',
    ]) {
      await expect(textIn(hash), hash).rejects.toThrow('The document in the link is damaged or cut short.');
    }
    const bomb = await linkOf('a'.repeat((1 << 20) + 1));
    await expect(textIn(bomb)).rejects.toThrow('damaged');
  });
});
