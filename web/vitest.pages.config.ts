import { defineConfig } from 'vitest/config';

// The pages share one browser and one server, and the machine may be small: one file after the other. A browser that
// draws by the processor now and then misses a beat on a busy machine, so what fails is asked twice more.
export default defineConfig({
  test: {
    include: ['tests/pages/**/*.test.ts'],
    fileParallelism: false,
    retry: 2,
    testTimeout: 90000,
    hookTimeout: 90000,
  },
});
