// Everything that happened, in words, with what the edit gained and lost.

import { useMemo, useState } from 'preact/hooks';
import { seek } from '../app/play';
import type { State } from '../app/state';
import { compared } from './differences';

const MOST = 2000;

export function Events({ state }: { state: State }) {
  const { session, before, moment } = state;
  const [changesOnly, showChangesOnly] = useState(false);
  const list = useMemo(
    () => (session ? compared((before.session ?? session).events, session.events) : []),
    [session, before.session],
  );
  if (!session) return <p class="note">Events come with a recording.</p>;
  const shown = changesOnly ? list.filter((one) => one.change !== 'same') : list;
  const [gained, lost] = ['gained', 'lost'].map((change) => list.filter((one) => one.change === change).length);
  return (
    <div class="events">
      <p class="note">
        {session.events.length} {session.events.length === 1 ? 'event' : 'events'}; {gained} gained and {lost} lost
        against {before.label}.
      </p>
      <label class="check">
        <input
          type="checkbox"
          checked={changesOnly}
          onChange={(event) => showChangesOnly(event.currentTarget.checked)}
        />{' '}
        only what differs
      </label>
      {session.warnings.map((warning, i) => (
        <p key={i} class="note doubtful">
          {warning}
        </p>
      ))}
      <ol>
        {shown.slice(0, MOST).map(({ event, change }, i) => (
          <li key={i} class={`${change} ${event.moment === moment ? 'now' : ''}`}>
            <button type="button" onClick={() => seek(event.moment)}>
              <span class="sign">
                {change === 'gained' ? '+' : change === 'lost' ? '−' : ''}
                <span class="unseen">{change === 'same' ? '' : change}</span>
              </span>
              {event.line.trimStart()}
            </button>
          </li>
        ))}
      </ol>
      {shown.length > MOST ? (
        <p class="note">
          The first {MOST} of {shown.length} are shown; save the table for all.
        </p>
      ) : null}
    </div>
  );
}
