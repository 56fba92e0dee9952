// The bundled crossing, ready to play.

import type { Source } from '../../engine/types';

const FRAMES = 20;
const FOLDER = new URL('example/', document.baseURI);

export const EXAMPLE_NAME = 'crossing.json';

async function fetched(name: string): Promise<Response> {
  const response = await fetch(new URL(name, FOLDER));
  if (!response.ok) throw new Error(`${name} of the example cannot be read.`);
  return response;
}

async function sourceOf(name: string): Promise<Source> {
  return { name, bytes: new Uint8Array(await (await fetched(name)).arrayBuffer()) };
}

export async function exampleDocument(): Promise<string> {
  return (await fetched(EXAMPLE_NAME)).text();
}

export async function exampleSources(): Promise<{ clouds: Source[]; tracks: Source }> {
  const names = Array.from({ length: FRAMES }, (_, i) => `frame_${String(i).padStart(2, '0')}.pcd`);
  const [tracks, ...clouds] = await Promise.all(['tracks.csv', ...names].map(sourceOf));
  return { clouds, tracks: tracks! };
}
