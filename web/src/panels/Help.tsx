import { useEffect, useRef } from 'preact/hooks';
import { KEYS } from '../app/keys';
import { set } from '../app/state';

export function Help() {
  const dialog = useRef<HTMLDialogElement>(null);
  useEffect(() => dialog.current?.showModal(), []);
  return (
    <dialog ref={dialog} class="help" aria-labelledby="help-title" onClose={() => set({ showHelp: false })}>
      <h2 id="help-title">Keys</h2>
      <table>
        <tbody>
          {KEYS.map((key) => (
            <tr key={key.keys}>
              <th scope="row">
                <kbd>{key.keys}</kbd>
              </th>
              <td>{key.what}</td>
            </tr>
          ))}
        </tbody>
      </table>
      <p>
        With the mouse: drag an empty place to move the view, the wheel goes nearer. Shift and click selects more, Shift
        and drag selects what is in the box. A second click takes what lies below. Alt leaves the pointer where it is,
        Shift holds the direction to steps of 15°.
      </p>
      <form method="dialog">
        <button autofocus>Close</button>
      </form>
    </dialog>
  );
}
