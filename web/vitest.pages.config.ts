import { defineConfig } from 'vitest/config';

// The pages share one browser and one server, and the machine may be small: one file after the other.
export default defineConfig({
  test: { include: ['tests/pages/**/*.test.ts'], fileParallelism: false, testTimeout: 90000, hookTimeout: 90000 },
});
