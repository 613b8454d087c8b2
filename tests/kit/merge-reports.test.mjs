// `corvis merge-reports`: the shards of a run become one report, as if one machine had run it.
import assert from 'node:assert/strict';
import { readFileSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { run, scratchFolder, writePage } from '../../testing/corvis.mjs';

const page = `<script>
  corvis.voiceinteraction.setCallback({ onplay: function () {}, onpause: function () { return 'no'; } });
  corvis.voiceinteraction.listen();
</script>`;

// The events of a run of one step.
const events = [
  { event: 'start', format: 1, scripts: ['c.voice'], steps: 1 },
  { event: 'script', file: 'c.voice' },
  { event: 'registered', actions: ['ACTION_PLAY', 'ACTION_PAUSE'] },
  { event: 'news', of: 'a later version' },
  {
    ...{
      event: 'step',
      file: 'c.voice',
      line: 2,
      column: 1,
      statement: 'say',
      source: 'say play',
      status: 'passed',
    },
    ...{ ms: 1, said: 'play', action: 'ACTION_PLAY', data: '', answer: 'success', answer_ms: 1, pieces: 1 },
  },
  { event: 'end', status: 0, passed: 1, failed: 0, skipped: 0, ms: 9 },
];
const lines = (list) => list.map((event) => `${JSON.stringify(event)}\n`).join('');

test('the shards of a run are reported as the whole run is, with its status', async (t) => {
  const folder = writePage(t, page);
  const command = (args) => run(args, { cwd: folder });
  writeFileSync(path.join(folder, 'a.voice'), 'test "one"\nsay play\nnote a <note>\n');
  writeFileSync(path.join(folder, 'b.voice'), 'test "two"\nsay pause\nexpect success\nsay play\n');
  const testApp = ['test-app', '--coverage', '.', 'a.voice', 'b.voice'];
  for (const shard of [1, 2]) {
    const { text } = await command([...testApp, '--json', '--shard', `${shard}/2`]);
    writeFileSync(path.join(folder, `${shard}.jsonl`), text);
  }
  const whole = await command(testApp);
  const merged = await command(['merge-reports', '--junit', 'merged.xml', '1.jsonl', '2.jsonl']);
  assert.deepEqual([merged.code, merged.text], [1, whole.text]);
  const junit = readFileSync(path.join(folder, 'merged.xml'), 'utf8');
  assert.match(junit, /<testcase name="one"[^]*<testcase name="two"[^]*<failure message=/);
});

test('what is wrong with a run or its events is said, and the strongest status counts', async (t) => {
  const folder = scratchFolder(t);
  const files = {
    'fine.jsonl': lines(events),
    'failed.jsonl': lines([...events.slice(0, -1), { ...events.at(-1), status: 1 }]),
    'over.jsonl': lines([...events.slice(0, -1), { ...events.at(-1), status: 8 }]),
    'cut.jsonl': lines(events.slice(0, -1)),
    'bad.jsonl': `${lines(events)}no event\n`,
    'empty.jsonl': '',
  };
  for (const [name, text] of Object.entries(files)) writeFileSync(path.join(folder, name), text);
  const rows = [
    [['fine.jsonl', 'fine.jsonl'], 0, '1..2\nok 1 - c.voice:2 say play\nok 2 - c.voice:2 say play\n'],
    [['--coverage-min', '51', 'fine.jsonl'], 7, 'Bail out! The voice coverage is 50 %'],
    [['cut.jsonl'], 1, 'Bail out! The events in cut.jsonl end before their run did.'],
    [['failed.jsonl', 'over.jsonl', 'fine.jsonl'], 8, '1..3\n'],
    [['fine.jsonl', 'bad.jsonl'], 2, 'corvis: bad.jsonl:7: Expected a JSON event'],
    [['empty.jsonl'], 2, "The file empty.jsonl can't be read or has no events"],
    [['missing.jsonl'], 2, "The file missing.jsonl can't be read or has no events"],
  ];
  for (const [args, status, part] of rows) {
    const { code, text } = await run(['merge-reports', ...args], { cwd: folder });
    assert.equal(code, status, `${args}\n${text}`);
    assert.ok(text.includes(part), `${args}\n${text}`);
  }
});
