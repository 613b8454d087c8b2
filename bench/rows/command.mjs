// The native work of commands and their answers, counted in instructions: twice as many commands less once as many,
// so that loading and starting cancel out.
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { atMost } from '../report/result.mjs';
import { libraryPath, ourLibrary, outputOf, programPath } from './programs.mjs';

/** The instructions of the whole program, and what it printed. */
function count(library, rounds, folder) {
  const file = path.join(folder, 'callgrind.out');
  const tool = ['--tool=callgrind', `--callgrind-out-file=${file}`, '--quiet'];
  const output = outputOf('valgrind', [...tool, programPath('bench_command'), library, String(rounds)]);
  const total = readFileSync(file, 'utf8').match(/^(?:summary|totals): (\d+)/m);
  return { instructions: Number(total[1]), output };
}

/** The instructions that a round of the exchanges takes in each of the libraries. */
export function instructionsOfRounds(libraries, rounds) {
  const folder = mkdtempSync(path.join(tmpdir(), 'corvis-bench-'));
  try {
    const runs = libraries.map((library) => [rounds, 2 * rounds].map((n) => count(library, n, folder)));
    const outputs = new Set(runs.map(([once]) => once.output));
    if (outputs.size !== 1) throw new Error(`the libraries did different work: ${[...outputs].join('; ')}`);
    return runs.map(([once, twice]) => (twice.instructions - once.instructions) / rounds);
  } finally {
    rmSync(folder, { recursive: true });
  }
}

export function measure({ short }) {
  const libraries = [ourLibrary, libraryPath('bench_least_library')];
  const [ours, against] = instructionsOfRounds(libraries, short ? 10 : 100);
  const line = atMost(1.3, {
    what: 'native work of a command and its answer',
    against: 'one decode, one JSON text, one bundle, one encode',
    figure: ours / against,
    details: `${Math.round(ours / 5)} : ${Math.round(against / 5)} instructions`,
  });
  return { lines: [line], samples: { ours: [ours], against: [against] }, plots: [] };
}
