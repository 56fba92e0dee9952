import { useEffect, useState } from 'preact/hooks';
import type { Size } from './camera';

/** The size of an element in CSS pixels, as it changes. */
export function useSize(element: { readonly current: Element | null }): Size {
  const [size, setSize] = useState<Size>({ width: 800, height: 600 });
  useEffect(() => {
    const watched = element.current;
    if (!watched) return;
    const observer = new ResizeObserver(() => {
      const { width, height } = watched.getBoundingClientRect();
      if (width > 0 && height > 0) setSize({ width, height });
    });
    observer.observe(watched);
    return () => observer.disconnect();
  }, []);
  return size;
}

/** Whether the page is shown in dark colours. */
export function useDark(): boolean {
  const [isDark, setDark] = useState(() => matchMedia('(prefers-color-scheme: dark)').matches);
  useEffect(() => {
    const query = matchMedia('(prefers-color-scheme: dark)');
    const follow = (): void => setDark(query.matches);
    query.addEventListener('change', follow);
    return () => query.removeEventListener('change', follow);
  }, []);
  return isDark;
}
