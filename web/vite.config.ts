import { defineConfig } from 'vite';

export default defineConfig({
  base: './', // the page works from any folder of a static host
  build: { target: 'es2022', assetsInlineLimit: 0, modulePreload: { polyfill: false } },
  worker: { format: 'es' },
  oxc: { jsx: { runtime: 'automatic', importSource: 'preact' } },
});
