// `--watch`: what is saved is seen. Each wait has a condition; nothing depends on how fast a save is noticed.
import assert from 'node:assert/strict';
import { mkdirSync, renameSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { scratchFolder, start, until } from '../../testing/corvis.mjs';

const page = (text) => `<!doctype html><p id="state">${text}</p>
<script src="part/state.js"></script><script>corvis.voiceinteraction.listen();</script>`;

// A folder with an application and two scripts, and a command that runs in it. `shows` waits until the command has
// printed something more; what came before it is returned.
function watch(t, args, state = 'first') {
  const folder = scratchFolder(t);
  // At once, so that no half of it is seen.
  const write = (name, text) => {
    writeFileSync(path.join(folder, '.new'), text);
    renameSync(path.join(folder, '.new'), path.join(folder, name));
  };
  for (const name of ['app/part', 'app/node_modules', 'app/.cache', 'scripts'])
    mkdirSync(path.join(folder, name), { recursive: true });
  write('app/index.html', page(state));
  write('app/part/state.js', '');
  write('scripts/a.voice', 'timeout 1 s\nshow "#state" is "first"\n');
  write('scripts/b.voice', 'timeout 1 s\nvalue "1 + 1" is "2"\n');
  const command = start(args, { cwd: folder, env: { XDG_STATE_HOME: path.join(folder, 'state') } });
  t.after(() => command.child.kill('SIGKILL'));
  let seen = 0;
  const shows = async (part) => {
    await until(() => command.output().includes(part, seen), command, 40);
    const before = command.output().slice(seen, command.output().indexOf(part, seen));
    seen += before.length + part.length;
    return before;
  };
  const type = (text) => command.child.stdin.write(text);
  return { folder, write, shows, type, exited: command.exited };
}

test('the prompt goes on with a page that was saved', async (t) => {
  const { folder, write, shows, type, exited } = watch(t, ['run', '--watch', 'app']);
  type('show "#state"\n');
  await shows('first\n');
  const reloaded = 'The application has changed; the page has been reloaded.\n';
  write('app/index.html', page('second'));
  await shows(reloaded);
  type('show "#state"\n');
  await shows('second\n');
  // As some editors save: a new file takes the place of the old one.
  write('app/part/new.js', 'document.querySelector("#state").textContent = "third";');
  await shows(reloaded);
  renameSync(path.join(folder, 'app/part/new.js'), path.join(folder, 'app/part/state.js'));
  await shows(reloaded);
  type('show "#state"\n');
  await shows('third\n');
  // Neither of these counts; the folder that is new does.
  for (const name of ['node_modules/a.js', '.cache/a', 'talk.voice']) write(`app/${name}`, '');
  mkdirSync(path.join(folder, 'app/fresh'));
  assert.equal(await shows(reloaded), '');
  type('quit\n');
  assert.equal((await exited).code, 0);
});

const keys = 'Waiting for changes. Keys: a = all, f = failed, Enter = the same again, q = quit\n';

test('scripts run again when they or the application are saved, those that failed first', async (t) => {
  const args = ['test-app', '--tap', '--watch', '--junit', 'app/r.xml', 'app', 'scripts'];
  const { write, shows, type, exited } = watch(t, args);
  const save = (name, statement) => write(`scripts/${name}.voice`, `timeout 1 s\n${statement}\n`);
  assert.match(await shows(keys), /^ok 2 - scripts\/a[^]*^ok 4 - scripts\/b/m);
  save('b', 'value "1 + 1" is "3"');
  assert.match(await shows(keys), /^1\.\.2$[^]*^not ok 2 - scripts\/b/m);
  write('app/index.html', page('second'));
  assert.match(await shows(keys), /^1\.\.4\n[^]*^not ok 2 - scripts\/b[^]*^not ok 4 - scripts\/a/m);
  save('a', 'show "#state" equals "x"');
  assert.match(await shows(keys), /scripts\/a\.voice:2:15: Unknown comparison/);
  save('a', 'show "#state" is "second"');
  assert.match(await shows(keys), /^1\.\.2\n[^]*^ok 2 - scripts\/a/m);
  for (const [key, results] of [
    ['f', /^1\.\.2\n[^]*^not ok 2 - scripts\/b/m],
    ['', /^1\.\.2\n[^]*^not ok 2 - scripts\/b/m],
    ['a', /^1\.\.4\n/m],
  ]) {
    type(`${key}\n`);
    assert.match(await shows(keys), results);
  }
  type('q\n');
  assert.equal((await exited).code, 1);
});

test('an application that ends is started again', async (t) => {
  const { write, shows, type, exited } = watch(t, ['test-app', '--tap', '--watch', 'app', 'scripts/a.voice']);
  await shows(keys);
  write('scripts/a.voice', 'value "window.close()" is "null"\nexpect closed\n');
  await shows(keys);
  write('scripts/a.voice', 'show "#state" is "first"\n');
  assert.match(await shows(keys), /^ok 1/m);
  type('q\n');
  assert.equal((await exited).code, 0);
});
