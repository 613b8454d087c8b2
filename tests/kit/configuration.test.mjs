// corvis.json and `corvis init`: a first test that passes, and options from the file.
import assert from 'node:assert/strict';
import { mkdirSync, readFileSync, statSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { run, scratchFolder, writePage } from '../../testing/corvis.mjs';

test('init writes a first test that passes, and overwrites nothing', async (t) => {
  const folder = writePage(t, '<p>hello</p>');
  const written = await run(['init'], { cwd: folder });
  assert.equal(written.code, 0, written.text);
  const tested = await run(['test-app', '--junit', 'voice.xml'], { cwd: folder });
  assert.equal(tested.code, 0, tested.text);
  assert.match(tested.text, /^1\.\.1$[^]*^ok 1 - voice\/first\.voice:/m);
  assert.notEqual(statSync(path.join(folder, 'voice-tests.sh')).mode & 0o111, 0);
  const { $schema } = JSON.parse(readFileSync(path.join(folder, 'corvis.json'), 'utf8'));
  assert.equal(JSON.parse(readFileSync($schema, 'utf8')).type, 'object');
  writeFileSync(path.join(folder, 'corvis.json'), '{"application": "here"}');
  const again = await run(['init', 'there'], { cwd: folder });
  assert.match(again.text, /^Kept corvis\.json, which exists\.$/m);
  assert.equal(readFileSync(path.join(folder, 'corvis.json'), 'utf8'), '{"application": "here"}');
  const nothing = await run(['init'], { cwd: scratchFolder(t) });
  assert.deepEqual([nothing.code, /No index\.html/.test(nothing.text)], [2, true], nothing.text);
});

test('the file of --config sets options; the command line wins; a mistake starts nothing', async (t) => {
  const folder = scratchFolder(t);
  mkdirSync(path.join(folder, 'app'));
  const size = 'value "innerWidth" is "';
  const files = {
    'app/index.html': '<!doctype html><p>hello</p>',
    'app/a.voice': `${size}640"\n`,
    'b.voice': `${size}320"\n`,
    'good.json': '{"application": "app", "scripts": "app/a.voice", "size": "640x480"}',
    'bad.json': '{"application": "app",\n "scripst": []}',
  };
  for (const [name, text] of Object.entries(files)) writeFileSync(path.join(folder, name), text);
  const rows = [
    [['--config', path.join(folder, 'good.json')], 0, /^ok 1 .*640/m],
    [['--config', 'good.json', '--size', '320x200', 'b.voice'], 0, /^ok 1 - b\.voice:1/m],
    [['--config', 'bad.json'], 2, /^bad\.json:2:2: Unknown key "scripst"\. Did you mean "scripts"\?$/m],
  ];
  for (const [options, code, printed] of rows) {
    const result = await run(['test-app', ...options], { cwd: folder });
    assert.equal(result.code, code, result.text);
    assert.match(result.text, printed);
  }
});
