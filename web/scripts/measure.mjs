// What the built page takes, printed and not judged: node scripts/measure.mjs. Needs dist/, and the Chromium that the
// tests use. Times of the browser are those that its main thread takes of a processor, from its own trace; the start is
// by the clock.
import { loadavg } from 'node:os';
import { chromium } from 'playwright-core';
import { build, preview } from 'vite';

const MILLION = 1_000_000;
const sorted = (values) => [...values].sort((a, b) => a - b);
const middle = (values) => sorted(values)[values.length >> 1];
const text = (values) =>
  values.length === 0
    ? 'none'
    : `${middle(values).toFixed(1)} ms typical, ${Math.max(...values).toFixed(1)} worst of ${values.length}`;

// A million points in a street of 200 m, as a file that names its columns.
function cloud() {
  const header = `VERSION 0.7\nFIELDS x y z intensity\nSIZE 4 4 4 4\nTYPE F F F F\nCOUNT 1 1 1 1\nWIDTH ${1_000_000}\nHEIGHT 1\nPOINTS ${1_000_000}\nDATA binary\n`;
  const values = new Float32Array(4 * 1_000_000);
  let state = 1;
  const random = () => (state = (state * 48271) % 2147483647) / 2147483647;
  for (let i = 0; i < values.length; i += 4) {
    values[i] = 60 * (random() - 0.5);
    values[i + 1] = 40 * (random() - 0.5);
    values[i + 2] = 4 * random();
    values[i + 3] = 255 * random();
  }
  return new File([header, values], 'million.pcd');
}

// Time of the processor, whatever else the machine does.
function taken(work) {
  const begin = process.cpuUsage();
  work();
  const { user, system } = process.cpuUsage(begin);
  return (user + system) / 1000;
}

async function recoloured() {
  // Built as the page has it.
  const lib = { entry: 'src/scene/colours.ts', formats: ['es'] };
  const [{ output }] = await build({
    configFile: false,
    logLevel: 'silent',
    build: { write: false, target: 'es2022', lib },
  });
  const { coloured } = await import(`data:text/javascript,${encodeURIComponent(output[0].code)}`);
  const positions = Float32Array.from({ length: 3 * MILLION }, (_, i) => ((i * 7919) % 4001) / 1000);
  const intensities = Float32Array.from({ length: MILLION }, (_, i) => (i * 31) % 256);
  const verdicts = (shift) => Uint8Array.from({ length: MILLION }, (_, i) => ((i + shift) % 10 === 0 ? 1 : 0));
  const scene = { positions, intensities, origin: [0, 0, 0], ground: 0, atOrigin: 1 };
  const edits = [{ verdicts: verdicts(0) }, { verdicts: verdicts(1) }];
  for (const colouring of ['verdict', 'height', 'intensity']) {
    const shading = { colouring, isDark: false, reach: [{ low: 0.2, high: 3 }] };
    const whole = Array.from({ length: 30 }, () => taken(() => coloured(scene, edits[0], shading, null)));
    let last = coloured(scene, edits[0], shading, null);
    const edited = Array.from({ length: 30 }, (_, i) =>
      taken(() => (last = coloured(scene, edits[(i + 1) % 2], shading, last))),
    );
    console.log(
      `a million points coloured by ${colouring}: ${text(whole.slice(5))}; after an edit ${text(edited.slice(5))}`,
    );
  }
}

/** Keeps, in the page, the milliseconds from each edit to its counts: in the worker, and until the page has them. */
function noteCounts() {
  const asked = new Map();
  window.counts = { inWorker: [], inPage: [] };
  window.Worker = class extends Worker {
    constructor(...args) {
      super(...args);
      this.addEventListener('message', ({ data }) => {
        if (!asked.has(data.id) || !data.result?.counts) return;
        window.counts.inWorker.push(data.result.counts.milliseconds);
        window.counts.inPage.push(performance.now() - asked.get(data.id));
      });
    }

    postMessage(message, transfer) {
      if (message.call === 'count') asked.set(message.id, performance.now());
      super.postMessage(message, transfer);
    }
  };
}

/** Milliseconds of the main thread by kind while something is done. */
async function traced(browser, page, act) {
  await browser.startTracing(page, { categories: ['devtools.timeline'] });
  await act();
  const { traceEvents } = JSON.parse((await browser.stopTracing()).toString());
  const main = traceEvents.find((one) => one.name === 'thread_name' && one.args.name === 'CrRendererMain');
  const isMain = (one) => main === undefined || one.tid === main.tid;
  const of = (name, isWanted = () => true) =>
    traceEvents
      .filter((one) => one.ph === 'X' && one.name === name && one.dur > 0 && isMain(one) && isWanted(one))
      .map((one) => (one.tdur ?? one.dur) / 1000);
  const isDrag = (one) => /^(pointer|mouse)/.test(one.args.data?.type ?? '');
  return { handlers: of('EventDispatch', isDrag), frames: of('FireAnimationFrame') };
}

async function ready(page) {
  await page.waitForFunction(() => /\d+ point/.test(document.querySelector('.labels')?.textContent ?? ''));
}

async function pixelOf(page, x, y) {
  return page.evaluate(
    ([px, py]) => {
      const view = document.querySelector('.plan');
      const box = view.getBoundingClientRect();
      const [cx, cy, scale] = view.dataset.camera.split(' ').map(Number);
      return [box.left + box.width / 2 + (px - cx) * scale, box.top + box.height / 2 - (py - cy) * scale];
    },
    [x, y],
  );
}

async function dragged(page) {
  const [x, y] = await pixelOf(page, 11, 9.5);
  await page.mouse.click(x, y);
  const [a, b] = await pixelOf(page, 8.6, 4);
  await page.mouse.move(a, b);
  await page.mouse.down();
  for (let i = 1; i <= 60; ++i) await page.mouse.move(a + i, b + 20 * Math.sin(i / 5));
  await page.keyboard.press('Escape');
  await page.mouse.up();
}

async function recolouredInPage(page) {
  for (const colouring of ['height', 'intensity', 'verdict', 'height', 'intensity', 'verdict']) {
    await page.getByLabel('Points by').selectOption(colouring);
    await page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))));
  }
}

async function drop(page) {
  await page.evaluate(`(async () => {
    const data = new DataTransfer();
    data.items.add((${cloud.toString()})());
    document.querySelector('.plan').dispatchEvent(new DragEvent('drop', { bubbles: true, dataTransfer: data }));
  })()`);
  await page.getByText('million.pcd: 1000000 points').first().waitFor();
  await page.waitForTimeout(2000);
}

console.log(
  `load before: ${loadavg()
    .map((one) => one.toFixed(2))
    .join(' ')}`,
);
await recoloured();
const server = await preview({ preview: { port: 0 }, logLevel: 'silent' });
const address = server.resolvedUrls.local[0];
const browser = await chromium.launch({
  executablePath: process.env.STUDIO_BROWSER ?? '/usr/bin/chromium',
  args: ['--no-sandbox'],
});
const [paints, starts] = [[], []];
for (let i = 0; i < 5; ++i) {
  const context = await browser.newContext({ viewport: { width: 1280, height: 800 } });
  const page = await context.newPage();
  await page.goto(address);
  await ready(page);
  starts.push(await page.evaluate(() => performance.now()));
  paints.push(await page.evaluate(() => performance.getEntriesByName('first-contentful-paint')[0]?.startTime ?? 0));
  await context.close();
}
console.log(`first paint: ${text(paints)}; example counted and ready: ${text(starts)}`);
const page = await browser.newPage({ viewport: { width: 1280, height: 800 } });
await page.addInitScript(noteCounts);
await page.goto(address);
await ready(page);
for (const what of ['the example', 'a million points']) {
  if (what !== 'the example') await drop(page);
  await page.evaluate(() => (window.counts = { inWorker: [], inPage: [] }));
  const { handlers, frames } = await traced(browser, page, () => dragged(page));
  const { inWorker, inPage } = await page.evaluate(() => window.counts);
  console.log(`dragging a corner over ${what}: handlers ${text(handlers)}; what is drawn in a frame ${text(frames)}`);
  console.log(`an edit to its counts: in the worker ${text(inWorker)}; until the page has them ${text(inPage)}`);
}
const { frames } = await traced(browser, page, () => recolouredInPage(page));
console.log(
  `another colouring of a million points, drawn by the processor too: ${text(frames.filter((one) => one > 5))}`,
);
await browser.close();
await server.close();
console.log(
  `load after: ${loadavg()
    .map((one) => one.toFixed(2))
    .join(' ')}`,
);
process.exit(0);
