// The built page in a browser: a small server for its files, and what tests do with mouse and keyboard.

import { createReadStream, existsSync, mkdirSync, statSync } from 'node:fs';
import { createServer, type Server } from 'node:http';
import type { AddressInfo } from 'node:net';
import { extname, normalize } from 'node:path';
import { fileURLToPath } from 'node:url';
import { type Browser, type BrowserContext, chromium, type Page } from 'playwright-core';
import type { Pt } from '../../src/edit/model';

const DIST = fileURLToPath(new URL('../../dist/', import.meta.url));
const OUTPUT = fileURLToPath(new URL('../../test-output/', import.meta.url));
const TYPES: Readonly<Record<string, string>> = {
  '.html': 'text/html',
  '.js': 'text/javascript',
  '.css': 'text/css',
  '.json': 'application/json',
  '.svg': 'image/svg+xml',
  '.wasm': 'application/wasm',
};

export interface Place {
  readonly address: string;
  readonly browser: Browser;
  close(): Promise<void>;
}

function serve(): Promise<Server> {
  const server = createServer((request, response) => {
    const path = normalize(decodeURIComponent(new URL(request.url ?? '/', 'http://page').pathname)).replace(
      /\/$/,
      '/index.html',
    );
    const file = DIST + path.slice(1);
    if (path.includes('..') || !existsSync(file) || !statSync(file).isFile()) {
      response.writeHead(404).end();
      return;
    }
    response.writeHead(200, { 'Content-Type': TYPES[extname(file)] ?? 'application/octet-stream' });
    createReadStream(file).pipe(response);
  });
  return new Promise((done) => server.listen(0, '127.0.0.1', () => done(server)));
}

/** Chromium of the system, or the one that STUDIO_BROWSER names. */
export async function openPlace(): Promise<Place> {
  const server = await serve();
  const executablePath = process.env['STUDIO_BROWSER'] ?? '/usr/bin/chromium';
  // No faster than the page is drawn: a person would wait for it too.
  const browser = await chromium.launch({ executablePath, args: ['--no-sandbox'], slowMo: 30 });
  return {
    address: `http://127.0.0.1:${(server.address() as AddressInfo).port}/`,
    browser,
    async close() {
      await browser.close();
      server.closeAllConnections();
      server.close();
    },
  };
}

export interface Options {
  readonly width?: number;
  readonly height?: number;
  readonly dark?: boolean;
  readonly query?: string;
  readonly touch?: boolean;
}

/** A person at the page: clicks and keys on the plan in metres, and what came out. */
export class Person {
  readonly faults: string[] = [];

  private constructor(
    readonly page: Page,
    readonly context: BrowserContext,
  ) {}

  static async at(place: Place, options: Options = {}): Promise<Person> {
    const context = await place.browser.newContext({
      viewport: { width: options.width ?? 1280, height: options.height ?? 800 },
      colorScheme: options.dark ? 'dark' : 'light',
      hasTouch: options.touch ?? false,
      acceptDownloads: true,
    });
    context.setDefaultTimeout(20000);
    const page = await context.newPage();
    const person = new Person(page, context);
    page.on('pageerror', (error) => person.faults.push(String(error)));
    page.on('console', (message) => {
      if (message.type() === 'error') person.faults.push(message.text());
    });
    await page.goto(place.address + (options.query ?? ''));
    return person;
  }

  /** Until the example is evaluated and its points are counted. */
  async ready(): Promise<this> {
    await this.page.waitForSelector('.transport', { timeout: 20000 });
    await this.page.waitForSelector('.over[data-scene]:not([data-scene=""])');
    await this.page.waitForFunction(() => /\d+ point/.test(document.querySelector('.labels')?.textContent ?? ''));
    return this;
  }

  /** The document as it stands in the text panel. */
  async text(): Promise<string> {
    await this.page.getByRole('tab', { name: 'Text' }).click();
    const text = await this.page.locator('textarea.document').inputValue();
    await this.page.getByRole('tab', { name: 'Zones' }).click();
    return text;
  }

  /** Where a place of the plan is on the screen. */
  async pixel(p: Pt): Promise<Pt> {
    return this.page.evaluate((q) => {
      const view = document.querySelector('.plan')!;
      const box = view.getBoundingClientRect();
      const [x, y, scale] = (view as HTMLElement).dataset['camera']!.split(' ').map(Number) as [number, number, number];
      return { x: box.left + box.width / 2 + (q.x - x) * scale, y: box.top + box.height / 2 - (q.y - y) * scale };
    }, p);
  }

  async click(p: Pt, options: { modifiers?: ('Shift' | 'Alt')[]; clickCount?: number } = {}): Promise<void> {
    const at = await this.pixel(p);
    for (const key of options.modifiers ?? []) await this.page.keyboard.down(key);
    await this.page.mouse.move(at.x, at.y);
    await this.page.mouse.click(at.x, at.y, { clickCount: options.clickCount ?? 1 });
    for (const key of options.modifiers ?? []) await this.page.keyboard.up(key);
    await this.frame();
  }

  async drag(from: Pt, to: Pt, modifiers: ('Shift' | 'Alt')[] = []): Promise<void> {
    const [a, b] = [await this.pixel(from), await this.pixel(to)];
    for (const key of modifiers) await this.page.keyboard.down(key);
    await this.page.mouse.move(a.x, a.y);
    await this.page.mouse.down();
    await this.page.mouse.move((a.x + b.x) / 2, (a.y + b.y) / 2, { steps: 3 });
    await this.page.mouse.move(b.x, b.y, { steps: 3 });
    await this.page.mouse.up();
    for (const key of modifiers) await this.page.keyboard.up(key);
    await this.frame();
  }

  async press(...keys: string[]): Promise<void> {
    for (const key of keys) await this.page.keyboard.press(key);
    await this.frame();
  }

  /** The note that is shown. */
  async message(): Promise<string> {
    await this.frame();
    return (await this.page.locator('.message').textContent()) ?? '';
  }

  /** Until the page has drawn what was done. */
  async frame(): Promise<void> {
    await this.page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))));
  }

  /** The colour of the points at a place of the plan, such as "#b8500c"; empty: there is none. */
  async colourAt(p: Pt): Promise<string> {
    const at = await this.pixel(p);
    return this.page.evaluate(({ x, y }) => {
      const canvas = document.querySelector<HTMLCanvasElement>('.plan canvas')!;
      const box = canvas.getBoundingClientRect();
      const copy = document.createElement('canvas');
      [copy.width, copy.height] = [canvas.width, canvas.height];
      const context = copy.getContext('2d')!;
      context.drawImage(canvas, 0, 0);
      const ratio = canvas.width / box.width;
      const [left, top] = [Math.round((x - box.left) * ratio), Math.round((y - box.top) * ratio)];
      const { data } = context.getImageData(left - 2, top - 2, 5, 5);
      const lit = Array.from({ length: 25 }, (_, i) => 4 * i).find((i) => data[i + 3] === 255);
      const two = (value: number): string => value.toString(16).padStart(2, '0');
      return lit === undefined ? '' : `#${[0, 1, 2].map((k) => two(data[lit + k]!)).join('')}`;
    }, at);
  }

  async picture(name: string): Promise<void> {
    mkdirSync(OUTPUT, { recursive: true });
    await this.page.screenshot({ path: `${OUTPUT}${name}.png` });
  }

  async leave(): Promise<void> {
    await this.context.close();
  }
}

/** Drops files on the page, as a person does with the mouse. */
export async function dropFiles(
  person: Person,
  files: readonly { readonly name: string; readonly text: string | Buffer }[],
): Promise<void> {
  const data = await person.page.evaluateHandle(
    (list) => {
      const transfer = new DataTransfer();
      for (const { name, letters } of list)
        transfer.items.add(new File([Uint8Array.from(atob(letters), (c) => c.charCodeAt(0))], name));
      return transfer;
    },
    files.map(({ name, text }) => ({ name, letters: Buffer.from(text).toString('base64') })),
  );
  await person.page.dispatchEvent('.plan, .solid', 'drop', { dataTransfer: data });
}
