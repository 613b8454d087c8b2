// The native work of commands and their answers, in instructions. Runs with N and 2N commands are subtracted, so that
// loading and starting cancel out. The platform's binding, which parses the page's calls, is the same on both sides and
// larger than either, so it is counted separately and subtracted.
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { atMost } from '../report/result.mjs';
import { threeDigits } from '../report/statistics.mjs';
import { libraryPath, ourLibrary, outputOf, programPath } from './programs.mjs';

// The number of exchanges that bench_command plays in a round.
const exchanges = 5;

/** The instructions and the output of the whole program. */
function count(library, rounds, folder) {
  const file = path.join(folder, 'callgrind.out');
  const tool = ['--tool=callgrind', `--callgrind-out-file=${file}`, '--quiet'];
  const output = outputOf('valgrind', [...tool, programPath('bench_command'), library, String(rounds)]);
  const total = readFileSync(file, 'utf8').match(/^(?:summary|totals): (\d+)/m);
  return { instructions: Number(total[1]), output };
}

/** The instructions that a library needs for a round of the exchanges, and the output of the program. */
function countRounds(library, rounds, folder) {
  const [once, twice] = [rounds, 2 * rounds].map((n) => count(library, n, folder));
  return { instructions: (twice.instructions - once.instructions) / rounds, output: once.output };
}

export function measure({ short }) {
  const folder = mkdtempSync(path.join(tmpdir(), 'corvis-bench-'));
  const others = ['least', 'leaner', 'binding', 'unlogged'].map((name) => `bench_${name}_library`);
  const libraries = [ourLibrary, ...others.map(libraryPath)];
  let runs;
  try {
    runs = libraries.map((library) => countRounds(library, short ? 10 : 100, folder));
  } finally {
    rmSync(folder, { recursive: true });
  }
  const [ours, against, leaner, binding, unlogged] = runs.map(({ instructions }) => instructions / exchanges);
  if (runs[0].output !== runs[1].output)
    throw new Error(`Expected both libraries to do the same work: ${runs[0].output}; ${runs[1].output}`);
  const figure = (ours - binding) / (against - binding);
  const line = atMost(1.4, {
    what: 'native work of a command and its answer',
    against: 'one decode, one JSON text by picojson, one bundle, one encode',
    figure,
    details:
      `${Math.round(ours - binding)} : ${Math.round(against - binding)} instructions, of ours ` +
      `${Math.round(ours - unlogged)} for log calls; to ${Math.round(leaner - binding)} without picojson: ` +
      `${threeDigits((ours - binding) / (leaner - binding))}`,
  });
  return { lines: [line], samples: { ours, against, leaner, binding, unlogged }, plots: [] };
}
