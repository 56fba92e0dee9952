import { expect, test } from 'vitest';
import { kindOfText } from '../../src/app/kinds';

test('tracks and lists are told from points by their first line', () => {
  expect(kindOfText('a.csv', 'stamp,id,class,x,y,length,width,heading,zmin,zmax\n0,1,car,')).toBe('tracks');
  expect(kindOfText('a.csv', '\uFEFFstamp,id,class\n')).toBe('tracks');
  expect(kindOfText('a.CSV', '\n# a note\nx,y,z,stamp\n')).toBe('points');
  expect(kindOfText('0001.txt', '0 2 Car 0 0 -1.79 296.7 161.7 455.2 292.3 2.0 1.8 4.4 -4.5 1.8 13.4 -2.1\n')).toBe(
    'labels',
  );
  expect(kindOfText('0001.txt', '0 -1 DontCare -1 -1 -10 219 188 245 218 -1000 -1000 -1000 -10 -1 -1 -1 0.5')).toBe(
    'labels',
  );
  expect(kindOfText('a.txt', '0 2 3 0 0 -1.79 296.7 161.7 455.2 292.3 2.0 1.8 4.4 -4.5 1.8 13.4 -2.1\n')).toBe(
    'points',
  );
  expect(kindOfText('list.txt', '# frames\n0.1 frame_00.pcd\n')).toBe('stamps');
  expect(kindOfText('list.txt', '\uFEFF0.1 frame_00.pcd\n')).toBe('stamps');
  expect(kindOfText('list.csv', '1763800000.25, day 1/frame 00.bin\r\n')).toBe('stamps');
  expect(kindOfText('a.txt', '1 2 3\n4 5 6\n')).toBe('points');
  expect(kindOfText('a.txt', '')).toBe('points');
  expect(kindOfText('frame.pcd', '0.1 frame_00.pcd\n')).toBe('points');
});
