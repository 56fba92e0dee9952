// Puts beside the page what is built elsewhere: the recording of the example, made by its own program. It lies in
// the CMake build, or where STUDIO_RECORDING says.
import { execFileSync } from 'node:child_process';
import { copyFileSync, existsSync, mkdirSync } from 'node:fs';
import { fileURLToPath } from 'node:url';

const root = fileURLToPath(new URL('../../', import.meta.url));
const page = fileURLToPath(new URL('../', import.meta.url));
const maker = process.env.STUDIO_RECORDING ?? `${root}build/release/examples/crossing/crossing_recording`;
const folder = `${page}public/example/`;

mkdirSync(folder, { recursive: true });
copyFileSync(`${root}examples/crossing/crossing.json`, `${folder}crossing.json`);
if (existsSync(maker)) {
  execFileSync(maker, [folder]);
} else if (!existsSync(`${folder}frame_00.pcd`)) {
  console.error(`${maker} is missing: build the target crossing_recording, or say in STUDIO_RECORDING where it is.`);
  process.exit(1);
}
if (!existsSync(`${page}engine/engine.wasm`)) {
  console.error('web/engine/engine.wasm is missing: build the CMake preset wasm first.');
  process.exit(1);
}
