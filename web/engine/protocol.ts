// What a page and the worker say to each other.

import type { EngineCore } from './core';
import type { Progress, Refusal, SessionOptions } from './types';

type Methods = {
  [Name in keyof EngineCore]: EngineCore[Name] extends (...args: never[]) => unknown ? Name : never;
}[keyof EngineCore];

/** The calls that are answered at once. */
export type Call = Exclude<Methods, 'startRun' | 'stepRun' | 'progressOf' | 'resultOf'>;

export type Request =
  | { readonly id: number; readonly call: Call; readonly args: readonly unknown[] }
  | { readonly id: number; readonly call: 'run'; readonly args: readonly [number, string, SessionOptions] }
  | { readonly id: number; readonly call: 'cancel' };

export type Reply =
  | { readonly id: number; readonly result: unknown }
  | { readonly id: number; readonly refusal: Refusal }
  | { readonly id: number; readonly progress: Progress };

/** The module is there, or why it is not. */
export const READY = 0;
