// Runs the native benchmark programs.
import { spawn, spawnSync } from 'node:child_process';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

export const root = path.resolve(path.dirname(fileURLToPath(import.meta.url)), '../..');
export const build = process.env.CORVIS_BUILD ?? path.join(root, 'build');

export const programPath = (name) => path.join(build, 'bin', name);
export const libraryPath = (name) => path.join(build, 'lib', `${name}.so`);
export const ourLibrary = libraryPath('libcorvis_voiceinteraction');

/** Runs a command and returns its output. Throws with its standard error if it fails. */
export function outputOf(command, args) {
  const result = spawnSync(command, args, { encoding: 'utf8', maxBuffer: 1 << 30 });
  if (result.error) throw result.error;
  if (result.status !== 0)
    throw new Error(`${command} exited with status ${result.status}: ${result.stderr}`);
  return result.stdout;
}

/** Starts a program that runs until `stop` is called, or until this process ends. */
export function startProgram(name, args) {
  const child = spawn(programPath(name), args, { stdio: ['ignore', 'ignore', 'inherit'] });
  const kill = () => child.kill('SIGTERM');
  const ended = new Promise((resolve) => child.once('exit', resolve));
  process.once('exit', kill);
  return {
    stop() {
      process.removeListener('exit', kill);
      kill();
      return ended;
    },
  };
}

/**
 * Runs a Google Benchmark program with its repetitions in random order. Returns the samples by name, in microseconds of
 * processor time per iteration.
 */
export function googleBenchmark(name, args, { filter = '.', repetitions, minTime }) {
  const output = outputOf(programPath(name), [
    ...args,
    `--benchmark_filter=${filter}`,
    `--benchmark_repetitions=${repetitions}`,
    `--benchmark_min_time=${minTime}`,
    '--benchmark_enable_random_interleaving=true',
    '--benchmark_format=json',
  ]);
  const samples = new Map();
  for (const run of JSON.parse(output).benchmarks.filter(({ run_type }) => run_type === 'iteration')) {
    const list = samples.get(run.run_name) ?? [];
    list.push(run.cpu_time / 1000);
    samples.set(run.run_name, list);
  }
  return samples;
}
