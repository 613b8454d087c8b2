// The benchmarks run, print each of their rows, and keep samples and plots. How fast anything is, is not tested.
import assert from 'node:assert/strict';
import { readFileSync, readdirSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { processesWith, run, scratchFolder } from '../../testing/corvis.mjs';

// Two times, each in the unit that suits it.
const times = /\d [nµm]?s : \d.* [nµm]?s/;
const figures = [
  [/^round trip of a command, p50$/, times],
  [/^round trip of a command, p99$/, times],
  [/^native work of a command and its answer$/, / instructions/],
  [/^answer of 1 MiB, cut and sent$/, times],
  [/^answer of 16 MiB, cut and sent$/, times],
  [/^highest memory use during an answer of 16 MiB$/, /\d/],
  [/^bundle of 1024 entries to JSON$/, times],
  [/^element map, worst workload/, times],
  [/^element map: times faster/, times],
  [/^element map: time for each item/, /\d/],
  [/^start of the script API in a page$/, / ms/],
  [/^a command through the script$/, / µs/],
  [/^loading and initializing the library$/, / ms/],
  [/^resident memory of one page that listens$/, / KiB/],
  [/^stripped library/, / KiB/],
  [/^relocations of the library$/, /\d/],
  [/^script API$/, / KiB/],
  [/^resident memory of a process with the library$/, / KiB/],
  [/^native work of a command with logging switched off$/, / %/],
  [/^the simulator, one file$/, / KB/],
  [/^the simulator in a fresh page/, / ms/],
  [/^a phrase in the simulator/, / µs .*a bare turn/],
  [/^understanding a text, p99, slowest language/, / µs/],
  [/^loading a language, slowest/, / ms/],
];

test('every row is measured and printed, with its samples and plots kept', async (t) => {
  const folder = scratchFolder(t);
  const [json, plots] = ['samples.json', 'plots.svg'].map((name) => path.join(folder, name));
  const { code, text } = await run(['bench', '--short', '--json', json, '--plots', plots], {
    env: { TMPDIR: folder },
    seconds: 300,
  });
  assert.equal(code, 0, text);
  const rows = text.split('\n').filter((line) => /^\| (?!what|-)/.test(line));
  const cells = rows.map((row) =>
    row
      .split('|')
      .map((cell) => cell.trim())
      .slice(1, -1)
  );
  for (const row of cells) {
    assert.equal(row.length, 5, row.join(' | '));
    assert.match(row[2], /^-?\d/);
    assert.match(row[3], /^[≤≥] \d/);
    assert.match(row[4], /^(yes|NO)$/);
  }
  for (const [what, unit] of figures) {
    const row = cells.find(([name]) => what.test(name));
    assert.ok(unit.test(row?.[2]), `${what} is missing in:\n${text}`);
  }

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

test('a name that there is not ends in one sentence', async () => {
  const { code, text } = await run(['bench', 'nonsense'], { seconds: 300 });
  assert.equal(code, 2, text);
  assert.match(text, /Unknown benchmark nonsense; use round-trip, .*simulator\./);
});
