// The time to understand a viewer's phrase, in the slowest language, and to load a language.
import path from 'node:path';
import { atMost } from '../report/result.mjs';
import { percentile, timeText } from '../report/statistics.mjs';
import { outputOf, programPath, root } from './programs.mjs';

const tail = 0.99;
const microseconds = (samples) => samples.map((nanoseconds) => nanoseconds / 1000);

/** The name of the language for which `cost` is highest. */
function slowest(languages, cost) {
  return Object.keys(languages).reduce((a, b) => (cost(languages[a]) >= cost(languages[b]) ? a : b));
}

export function measure({ short }) {
  const folder = path.join(root, 'testing/spoken');
  const languages = JSON.parse(outputOf(programPath('bench_phrases'), [folder, short ? '2' : '50']));
  const understood = slowest(languages, ({ ours }) => percentile(ours, tail));
  const loaded = slowest(languages, ({ load }) => percentile(load, 0.5));
  const { ours, against } = languages[understood];
  const lookup = percentile(microseconds(against), 0.5);
  const lines = [
    atMost(100, {
      what: `understanding a text, p99, slowest language (${understood})`,
      against: `a hash table of the same texts: ${timeText(lookup)}`,
      figure: percentile(microseconds(ours), tail),
      unit: ' µs',
      details: `p50 ${timeText(percentile(microseconds(ours), 0.5))}`,
    }),
    atMost(5, {
      what: `loading a language, slowest (${loaded})`,
      against: 'nothing: its phrase file is read as it is',
      figure: percentile(microseconds(languages[loaded].load), 0.5) / 1000,
      unit: ' ms',
    }),
  ];
  const series = Object.fromEntries(Object.entries(languages).map(([tag, s]) => [tag, microseconds(s.ours)]));
  return {
    lines,
    samples: languages,
    plots: [{ kind: 'distribution', title: 'Understanding a text', unit: 'µs', series }],
  };
}
