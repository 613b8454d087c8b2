// What an author waits for: the start of a test run, and each of its scripts, one after the other and with two jobs.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { atLeast, atMost } from '../report/result.mjs';
import { median, timeText } from '../report/statistics.mjs';
import { programPath, root } from './programs.mjs';

const application = path.join(root, 'examples/cinema');
const script = 'test "one"\nsay play\nexpect success\nsay pause\nexpect success\n';

/** Runs a script, or those of a folder. Returns the seconds to the first result and to the end. */
async function run(scripts, jobs) {
  const start = performance.now();
  const seconds = () => (performance.now() - start) / 1000;
  const child = spawn(programPath('corvis'), ['test-app', '--jobs', jobs, application, scripts]);
  let first;
  let text = '';
  child.stdout.on('data', (data) => {
    text += data;
    if (first === undefined && text.includes('\nok 1')) first = seconds();
  });
  child.stderr.resume();
  const [status] = await once(child, 'close');
  if (status !== 0) throw new Error(`corvis test-app exited with status ${status}:\n${text}`);
  return { first, whole: seconds() };
}

/** Writes the scripts and runs them, some times. */
async function samplesOf(folder, count, rounds) {
  const files = Array.from({ length: count }, (_, i) => path.join(folder, `${i}.voice`));
  for (const file of files) writeFileSync(file, script);
  const samples = { start: [], script: [], one: [], two: [] };
  for (let i = 0; i < rounds; i++) {
    const single = await run(files[0], '1');
    const { whole } = await run(folder, '1');
    samples.start.push(single.first * 1e6);
    samples.script.push(((whole - single.whole) / (count - 1)) * 1e6);
    samples.one.push(whole * 1e6);
    samples.two.push((await run(folder, '2')).whole * 1e6);
  }
  return samples;
}

export async function measure({ short }) {
  const count = short ? 2 : 50;
  const folder = mkdtempSync(path.join(tmpdir(), 'corvis-bench.'));
  try {
    const samples = await samplesOf(folder, count, short ? 1 : 7);
    const against = 'nothing: an absolute time';
    const lines = [
      atMost(450, {
        what: '`corvis test-app` until its first result',
        against,
        figure: median(samples.start) / 1000,
        unit: ' ms',
      }),
      atMost(100, {
        what: 'each further script of four steps, with a fresh page',
        against,
        figure: median(samples.script) / 1000,
        unit: ' ms',
      }),
      atLeast(1.7, {
        what: `${count} scripts with \`--jobs 2\`: times faster`,
        against: 'one after the other',
        figure: median(samples.one) / median(samples.two),
        details: ['two', 'one'].map((kind) => timeText(median(samples[kind]))).join(' : '),
      }),
    ];
    return { lines, samples, plots: [] };
  } finally {
    rmSync(folder, { recursive: true });
  }
}
