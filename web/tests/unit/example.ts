import { readFileSync } from 'node:fs';

/** The document of the bundled example. */
export const crossing = readFileSync(new URL('../../../examples/crossing/crossing.json', import.meta.url), 'utf8');
