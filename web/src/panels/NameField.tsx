// A name with the bytes that it has left.

import { useEffect, useState } from 'preact/hooks';
import { bytesOf, LONGEST_NAME } from '../edit/limits';

export function NameField({
  label,
  name,
  isLimited,
  onCommit,
}: {
  label: string;
  name: string;
  isLimited: boolean;
  onCommit: (name: string) => boolean;
}) {
  const [text, setText] = useState(name);
  useEffect(() => setText(name), [name]);
  const bytes = bytesOf(text);
  const isWrong = isLimited && (bytes === 0 || bytes > LONGEST_NAME);
  const commit = (): void => {
    if (text !== name && !onCommit(text)) setText(name);
  };
  return (
    <label class="name">
      <span>{label}</span>
      <input
        type="text"
        value={text}
        aria-invalid={isWrong}
        onInput={(event) => setText(event.currentTarget.value)}
        onBlur={commit}
        onKeyDown={(event) => {
          if (event.key === 'Enter') commit();
          if (event.key === 'Escape') setText(name);
        }}
      />
      {isLimited ? (
        <span class={`unit ${isWrong ? 'wrong' : ''}`}>
          {bytes} of {LONGEST_NAME} bytes
        </span>
      ) : null}
    </label>
  );
}
