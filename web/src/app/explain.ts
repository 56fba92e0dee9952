import { sayError } from './actions';
import { get, set } from './state';

export type Question =
  | { readonly kind: 'zones' }
  | { readonly kind: 'line'; readonly line: string }
  | { readonly kind: 'track'; readonly line: string; readonly track: number };

/** Asks the engine why, at the moment that is shown. */
export async function explain(question: Question): Promise<void> {
  const { engine, recording, history, moment, activeField } = get();
  if (!engine || !recording) return;
  const options = { activeField };
  try {
    const explanation =
      question.kind === 'zones'
        ? await engine.explainZones(recording.id, history.text, moment, options)
        : question.kind === 'line'
          ? await engine.explainLine(recording.id, history.text, question.line, moment, options)
          : await engine.explainTrack(recording.id, history.text, question.line, question.track, moment, options);
    const what =
      question.kind === 'zones'
        ? 'All zones'
        : question.kind === 'line'
          ? `Line ${question.line}`
          : `Track ${question.track} at line ${question.line}`;
    set({ explanation, explained: `${what}, moment ${moment + 1}` });
  } catch (error) {
    sayError(error);
  }
}
