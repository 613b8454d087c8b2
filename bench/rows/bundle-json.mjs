// Converting a command's bundle to JSON, by its number of entries.
import { atMost, ratioAtMost } from '../report/result.mjs';
import { median } from '../report/statistics.mjs';
import { googleBenchmark } from './programs.mjs';

const shownCounts = [4, 64, 1024];
const counts = [4, 16, 64, 256, 1024];

export function measure({ short }) {
  const settings = short ? { repetitions: 3, minTime: 0.002 } : { repetitions: 25, minTime: 0.02 };
  const samples = googleBenchmark('bench_channel', [], { filter: '^bundle/', ...settings });
  const at = (kind, count) => samples.get(`bundle/${kind}/${count}`);
  const points = (kind) => counts.map((count) => [count, median(at(kind, count))]);
  const against = 'decoding the same bundle and reading each entry, without making a text';
  const lines = shownCounts.map((count) =>
    ratioAtMost(
      1.5,
      { ours: at('ours', count), against: at('against', count) },
      { what: `bundle of ${count} entries to JSON`, against }
    )
  );
  const perEntry = (count) => median(at('ours', count)) / count;
  lines.push(
    atMost(1.5, {
      what: 'bundle to JSON: time for each entry',
      against: 'of 1024 entries, to that of 64 (linear is 1)',
      figure: perEntry(1024) / perEntry(64),
    })
  );
  const series = {
    'bundle to JSON': points('ours'),
    'decoding alone': points('decode'),
    'decoding and reading': points('against'),
  };
  return {
    lines,
    samples: Object.fromEntries(samples),
    plots: [{ kind: 'scaling', title: 'Bundle to JSON', unit: 'µs', sizes: 'entries', series }],
  };
}
