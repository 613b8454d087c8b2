// The cost of the log calls while logging is off.
import { atMost } from '../report/result.mjs';
import { median, timeText } from '../report/statistics.mjs';
import { googleBenchmark, libraryPath, ourLibrary } from './programs.mjs';

export function measure({ short }) {
  const libraries = [ourLibrary, libraryPath('bench_unlogged_library')];
  const settings = short ? { repetitions: 5, minTime: 0.005 } : { repetitions: 101, minTime: 0.02 };
  const samples = googleBenchmark('bench_logging', libraries, settings);
  const [ours, against] = [0, 1].map((library) => samples.get(`commands/${library}`));
  const line = atMost(3, {
    what: 'native work of a command with logging switched off',
    against: 'the same code with the log calls compiled out: how much more',
    figure: (median(ours) / median(against) - 1) * 100,
    unit: ' %',
    details: `${timeText(median(ours) / 5)} : ${timeText(median(against) / 5)}`,
  });
  const series = { 'logging switched off': ours, 'log calls compiled out': against };
  return {
    lines: [line],
    samples: { ours, against },
    plots: [{ kind: 'distribution', title: 'Five commands and their answers', unit: 'µs', series }],
  };
}
