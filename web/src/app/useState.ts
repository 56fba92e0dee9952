import { useEffect, useState } from 'preact/hooks';
import { get, type State, subscribe } from './state';

/** The state; the component is drawn again, once a frame at most, when it changes. */
export function usePage(): State {
  const [state, show] = useState(get());
  useEffect(() => {
    let frame = 0;
    const end = subscribe(() => {
      frame ||= requestAnimationFrame(() => {
        frame = 0;
        show(get());
      });
    });
    show(get());
    return () => {
      end();
      cancelAnimationFrame(frame);
    };
  }, []);
  return state;
}
