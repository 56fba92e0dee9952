// The page of one test after the other, in one browser.

import { afterAll, afterEach, beforeAll, beforeEach, expect } from 'vitest';
import { openPlace, Person, type Place } from './page';

/** Those of the test that runs. */
export let place: Place;
export let person: Person;

/** Opens the page anew for every test of a file, and expects that nothing went wrong in it. */
export function openForEveryTest(): void {
  beforeAll(async () => {
    place = await openPlace();
  });
  afterAll(() => place.close());
  beforeEach(async () => {
    person = await Person.at(place);
    await person.ready();
  });
  afterEach(async () => {
    expect(person.faults).toEqual([]);
    await person.leave();
  });
}
