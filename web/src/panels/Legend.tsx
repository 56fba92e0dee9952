// What the colours of the points mean.

import type { Scene } from '../../engine/types';
import type { State } from '../app/state';
import { RAMP_STOPS, rampEnds } from '../scene/colours';

function Ramp({ state, scene }: { state: State; scene: Scene }) {
  const { colouring } = state;
  if (colouring === 'verdict') return null;
  const ends = rampEnds(scene, colouring);
  if (!ends) return <span class="doubtful">this frame has no intensities</span>;
  const digits = (value: number): string => String(Number(value.toPrecision(3)));
  const unit = colouring === 'height' ? ' m over the ground' : '';
  return (
    <span class="ramp">
      {colouring} {digits(ends.low)}{' '}
      <i class="colours" style={{ background: `linear-gradient(90deg, ${RAMP_STOPS.join(', ')})` }} />{' '}
      {digits(ends.high)}
      {unit}
    </span>
  );
}

export function Legend({ state, scene }: { state: State; scene: Scene }) {
  return (
    <span class="legend">
      <i class="dot counted" /> counts in a zone <i class="dot taken" /> taken by an exclusion zone{' '}
      {state.greysOut ? (
        <>
          <i class="dot away" /> out of reach{' '}
        </>
      ) : null}
      <Ramp state={state} scene={scene} />
    </span>
  );
}
