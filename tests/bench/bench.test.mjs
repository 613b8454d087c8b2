// The benchmarks run, print each of their rows, and keep samples and plots. How fast anything is, is not tested.
import assert from 'node:assert/strict';
import { readFileSync, readdirSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { processesWith, run, scratchFolder } from '../../testing/corvis.mjs';

// How the rows begin.
const names =
  `round trip of a command, p50 | round trip of a command, p99 | native work of a command and its answer |
  answer of 1 MiB, cut and sent | answer of 16 MiB, cut and sent | highest memory use during an answer of 16 MiB |
  bundle of 1024 entries to JSON | element map, worst workload | element map: times faster |
  element map: time for each item | start of the script API in a page | a command through the script |
  loading and initializing the library | resident memory of one page that listens | stripped library |
  relocations of the library | script API | resident memory of a process with the library |
  \`corvis test-app\` until its first result | each further script | 2 scripts with \`--jobs 2\` |
  native work of a command with logging switched off | the simulator, one file | the simulator in a fresh page |
  a phrase in the simulator | understanding a text, p99, slowest language | loading a language, slowest`.split(
    / \|\s+/
  );

test('every row is measured and printed, with its samples and plots kept', async (t) => {
  const folder = scratchFolder(t);
  const [json, plots] = ['samples.json', 'plots.svg'].map((name) => path.join(folder, name));
  const { code, text } = await run(['bench', '--short', '--json', json, '--plots', plots], {
    env: { TMPDIR: folder },
    seconds: 300,
  });
  assert.equal(code, 0, text);
  const rows = text.split('\n').filter((line) => /^\| (?!what|-)/.test(line));
  for (const row of rows) assert.match(row, /^(\| [^|]+){2}\| -?\d[^|]* \| [≤≥] \d[^|]* \| (yes|NO) \|$/);
  const missing = names.filter((name) => !rows.some((row) => row.startsWith(`| ${name}`)));
  assert.deepEqual(missing, [], text);

  const report = JSON.parse(readFileSync(json, 'utf8'));
  assert.equal(report.flatMap(({ lines }) => lines).length, rows.length);
  const roundTrip = report.find(({ name }) => name === 'round-trip').samples;
  assert.ok(roundTrip.ours.length >= 100 && roundTrip.ours.every((time) => time > 0));
  assert.equal(roundTrip.ours.length, roundTrip.against.length);
  const picture = readFileSync(plots, 'utf8');
  assert.ok(picture.startsWith('<svg') && !/NaN|undefined|Infinity/.test(picture));
  assert.deepEqual(readdirSync(folder).sort(), [path.basename(plots), path.basename(json)]);
  assert.deepEqual(processesWith(folder), []);
});
