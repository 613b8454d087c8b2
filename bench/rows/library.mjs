// The time to load the library, and the memory of a page's native object.
import { atMost } from '../report/result.mjs';
import { median, timeText } from '../report/statistics.mjs';
import { libraryPath, ourLibrary, outputOf, programPath } from './programs.mjs';

/** The microseconds that loading takes, and the resident bytes of the process afterwards. */
export const load = (library) => outputOf(programPath('bench_load'), [library]).split(' ').map(Number);

export function measure({ short }) {
  const ours = [];
  const against = [];
  const empty = libraryPath('bench_empty_library');
  for (let i = 0; i < (short ? 5 : 101); i++) {
    ours.push(load(ourLibrary)[0]);
    against.push(load(empty)[0]);
  }
  const bytes = Number(outputOf(programPath('bench_instances'), [ourLibrary, '1000']));
  const lines = [
    atMost(1, {
      what: 'loading and initializing the library',
      against: 'loading an empty library that links the same libraries: the difference',
      figure: (median(ours) - median(against)) / 1000,
      unit: ' ms',
      details: `${timeText(median(ours))} − ${timeText(median(against))}`,
    }),
    atMost(64, {
      what: 'resident memory of one page that listens',
      against: '1,000 of them / 1,000',
      figure: bytes / 1024,
      unit: ' KiB',
    }),
  ];
  const series = { 'the library': ours, 'an empty library': against };
  return {
    lines,
    samples: { ours, against, bytesOfAnInstance: bytes },
    plots: [{ kind: 'distribution', title: 'Loading and initializing', unit: 'µs', series }],
  };
}
