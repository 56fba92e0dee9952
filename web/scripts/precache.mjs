// Writes the files of the built page, and a digest of them, into its service worker.
import { createHash } from 'node:crypto';
import { readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';

const folder = fileURLToPath(new URL('../dist/', import.meta.url));
const files = readdirSync(folder, { recursive: true, withFileTypes: true })
  .filter((one) => one.isFile() && one.name !== 'sw.js')
  .map((one) => `${one.parentPath}/${one.name}`.slice(folder.length).replace(/^\//, ''))
  .sort();
const digest = createHash('sha256');
for (const file of files) digest.update(file).update(readFileSync(folder + file));
const worker = readFileSync(`${folder}sw.js`, 'utf8')
  .replace('__VERSION__', `studio-${digest.digest('hex').slice(0, 16)}`)
  .replace('/* __FILES__ */', ['./', ...files].map((file) => JSON.stringify(file)).join(', '));
writeFileSync(`${folder}sw.js`, worker);
