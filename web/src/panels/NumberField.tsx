// A number with its unit. Written into the document with Enter or when the field is left; Escape gives it up.

import { useEffect, useState } from 'preact/hooks';
import { say } from '../app/actions';

const NUMBER = /^\s*[-−+]?(\d+(\.\d*)?|\.\d+)([eE][-+]?\d+)?\s*$/;

/** The number that a text says; null: it says none. A comma is not taken for a point. */
export function numberIn(text: string): number | null {
  const value = NUMBER.test(text) ? Number(text.replace('−', '-')) : NaN;
  return Number.isFinite(value) ? value : null;
}

interface Props {
  readonly label: string;
  readonly value: number;
  readonly unit: string;
  readonly onCommit: (value: number) => void;
  readonly hidesLabel?: boolean;
  readonly onFocus?: () => void;
}

export function NumberField({ label, value, unit, onCommit, hidesLabel = false, onFocus }: Props) {
  const shown = Number.isFinite(value) ? String(Math.round(value * 1e6) / 1e6) : '';
  const [text, setText] = useState(shown);
  const [isTyping, setTyping] = useState(false);
  useEffect(() => setText(shown), [shown]);
  const isWrong = isTyping && numberIn(text) === null;
  const commit = (): void => {
    setTyping(false);
    const typedValue = numberIn(text);
    if (typedValue === null) {
      if (text !== shown) say(`"${text}" is not a number. Write it with a point, such as 4.2.`, true);
      setText(shown);
    } else if (text !== shown) {
      onCommit(typedValue);
    }
  };
  return (
    <label class={`number ${hidesLabel ? 'bare' : ''}`}>
      <span class={hidesLabel ? 'unseen' : ''}>{label}</span>
      <input
        type="text"
        inputMode="decimal"
        aria-label={hidesLabel ? `${label}, ${unit}` : undefined}
        aria-invalid={isWrong}
        value={isTyping ? text : shown}
        onFocus={onFocus}
        onInput={(event) => {
          setTyping(true);
          setText(event.currentTarget.value);
        }}
        onBlur={commit}
        onKeyDown={(event) => {
          if (event.key === 'Enter') commit();
          if (event.key === 'Escape') {
            setTyping(false);
            setText(shown);
          }
        }}
      />
      <span class="unit" aria-hidden="true">
        {unit}
      </span>
    </label>
  );
}
