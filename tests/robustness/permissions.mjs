// What must not be possible: the API without its privileges, the bus for other users, and files outside of a run's own folders.
import assert from 'node:assert/strict';
import { spawn, spawnSync } from 'node:child_process';
import { chmodSync, mkdirSync, mkdtempSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { processesWith, root, start, until } from '../../testing/corvis.mjs';
import { privileges, program, startTv, voiceService } from './stage.mjs';

// A page that tries every guarded method when it is asked to, honestly and by tampering, and tells what became of each.
//
// A page could once listen without the privileges: the text of its calls went through String.prototype.replace, which
// is the page's to change.
const guardedPage = `<!doctype html><script>
  const voice = corvis.voiceinteraction;
  const calls = {
    listen: () => voice.listen(),
    setCallback: () => voice.setCallback({ onplay: () => true }),
    getVersion: () => voice.getVersion(),
    getDataFromSearchTerm: () => voice.getDataFromSearchTerm({ title: 'a' }, 'SEARCH_TERM_TITLE'),
    buildCollectionDeeplinkData: () => voice.buildCollectionDeeplinkData('a', 'b', 'c'),
    buildCollectionShowData: () => voice.buildCollectionShowData('a', 'b', 'c', 'd'),
  };
  // What a page can change to get in between the API and its native side, so that a harmless call becomes listen().
  const listen = '{"cmd":"VoiceInteractionHandler_listen","args":{}}';
  const tampering = [
    [String.prototype, 'replace', () => listen],
    [RegExp.prototype, Symbol.replace, () => listen],
    [String.prototype, Symbol.replace, () => listen],
    [Object.prototype, 'toJSON', () => ({ cmd: 'VoiceInteractionHandler_listen', args: null })],
    [String.prototype, 'toJSON', () => 'VoiceInteractionHandler_listen'],
    [JSON, 'stringify', () => listen],
    [JSON, 'parse', () => ({ status: 'success' })],
    [Object.prototype, 'status', 'success'],
    [Map.prototype, 'get', () => () => {}],
    [Function.prototype, 'call', () => ({ status: 'success' })],
  ];
  tampering.forEach(([owner, name, other], i) => {
    calls['getVersion with another ' + String(name) + ' (' + i + ')'] = () => {
      const own = Object.getOwnPropertyDescriptor(owner, name);
      Object.defineProperty(owner, name, { value: other, configurable: true, writable: true });
      try { voice.getVersion(); } finally { delete owner[name]; if (own) Object.defineProperty(owner, name, own); }
    };
  });
  const outcome = (call) => { try { call(); return 'allowed'; } catch (error) { return error.name; } };
  const tryAll = () => Object.entries(calls).map(([name, call]) => name + ': ' + outcome(call));
</script>`;

// Everything that passes over the bus from now on.
async function watchBus(t) {
  const child = spawn('dbus-monitor', ['--session']);
  t.after(() => child.kill());
  let text = '';
  child.stdout.on('data', (data) => (text += data));
  const bus = { output: () => text, sees: (part) => until(() => text.includes(part), bus) };
  await bus.sees('NameLost');
  return bus;
}

const notEnding = (lines, end) => lines.filter((line) => !line.endsWith(end));

async function refuseAll(tv, bus) {
  for (const granted of [[], privileges.slice(0, 1), privileges.slice(1)]) {
    await tv.call('SetPrivileges', granted);
    assert.deepEqual(notEnding(await tv.evaluate('tryAll()'), ': SecurityError'), [], `with ${granted}`);
  }
  // What was on the bus has been read once this last word has.
  await tv.evaluate('"last word"');
  await bus.sees('last word');
  assert.doesNotMatch(bus.output(), /interface=nurvo\./, 'a page without privileges sent something');
  assert.doesNotMatch(bus.output(), /string "com.example.app"/, 'it took its name on the bus');
}

async function withoutPrivileges(t, folder) {
  writeFileSync(path.join(folder, 'index.html'), guardedPage);
  const bus = await watchBus(t);
  // The page would speak with it.
  const service = spawn(voiceService, ['com.example.other'], { stdio: ['pipe', 'ignore', 'ignore'] });
  t.after(() => service.kill());
  await bus.sees('com.kelvaro.tv.vif');
  const tv = await startTv(t, { page: folder, granted: [] });
  const quiet = await watchBus(t);
  await refuseAll(tv, quiet);
  // With both, the same calls work, and the same look at the bus sees them.
  await tv.call('SetPrivileges', privileges);
  const all = await tv.evaluate('tryAll()');
  const honest = all.filter((line) => !line.includes(' with another '));
  assert.deepEqual(notEnding(honest, ': allowed'), []);
  for (const part of ['string "com.example.app"', 'interface=nurvo.']) await quiet.sees(part);
  return (
    `${honest.length} guarded methods refuse without the privileges or with one, also a page that tampers in ` +
    `${all.length - honest.length} ways; nothing on the bus`
  );
}

// Asks the bus of a run for its names, as its own user and as another.
async function otherUsers(t, folder) {
  chmodSync(folder, 0o755);
  const command = start(['run', path.join(root, 'examples/minimal')], { env: { TMPDIR: folder } });
  t.after(() => (command.child.stdin.end(), command.exited));
  const address = await until(() => {
    const found = processesWith(folder).map((text) => /BUS_ADDRESS=(unix:path=[^\0]*)/.exec(text)?.[1]);
    return found.find((one) => one && one !== process.env.DBUS_SESSION_BUS_ADDRESS);
  }, command);
  const call = `dbus-send '--bus=${address}' --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.ListNames`;
  const ask = (as = '') => spawnSync('sh', ['-c', `${as} ${call}`], { cwd: '/' }).status === 0;
  const place = path.dirname(decodeURIComponent(address.replace('unix:path=', '')));
  assert.equal(statSync(place).mode & 0o777, 0o700, `others may enter ${place}`);
  await until(() => ask(), command);
  if (process.getuid() !== 0) return "the bus's folder is its user's alone (root would try another user)";
  const nobody = 'setpriv --reuid=65534 --regid=65534 --clear-groups';
  assert.ok(!ask(nobody), 'another user reached the bus');
  chmodSync(place, 0o755);
  assert.ok(!ask(nobody), 'the bus lets another user in');
  return 'another user is refused by the folder, and by the bus behind it';
}

// Runs an application with an empty home and, where that can be arranged, an empty /tmp; finds what is left there.
function leftovers(folder) {
  const covering = ['--mount', 'mount', '-t', 'tmpfs', 'none', '/tmp'];
  const isTmpEmpty = !root.startsWith('/tmp/') && spawnSync('unshare', covering).status === 0;
  const script = `
    [ -z "$EMPTY" ] || mount -t tmpfs none /tmp; mkdir "$TMPDIR"
    echo play | "$ROOT/corvis" run --headless "$ROOT/examples/minimal" >"$FOLDER/output" 2>&1 &&
      grep -q ACTION_PLAY "$FOLDER/output" || { cat "$FOLDER/output"; exit 1; }
    find "$HOME" "$TMPDIR" $EMPTY -mindepth 1 ! -path "$TMPDIR" ! -name .X11-unix`;
  const kept = Object.entries(process.env).filter(([name]) => !/^XDG_|^DISPLAY$/.test(name));
  const home = path.join(folder, 'home');
  mkdirSync(home);
  const own = isTmpEmpty ? '/tmp/own' : path.join(folder, 'own');
  const run = { ROOT: root, FOLDER: folder, HOME: home, TMPDIR: own, EMPTY: isTmpEmpty ? '/tmp' : '' };
  const command = [...(isTmpEmpty ? ['--mount'] : []), 'bash', '-c', script];
  const env = { ...Object.fromEntries(kept), ...run };
  const { status, stdout } = spawnSync('unshare', command, { env, encoding: 'utf8', timeout: 60000 });
  assert.deepEqual([status, stdout], [0, ''], 'the run failed, or left something behind');
  return `a run leaves nothing in the home folder${isTmpEmpty ? ' and /tmp' : ''}`;
}

program('permissions', async (t) => {
  // Not below /tmp, which one of the runs covers.
  const parent = process.getuid() === 0 ? '/var/tmp' : tmpdir();
  const folder = mkdtempSync(path.join(parent, 'corvis-permissions-'));
  t.after(() => rmSync(folder, { recursive: true, force: true }));
  return [await withoutPrivileges(t, folder), await otherUsers(t, folder), leftovers(folder)].join('; ');
});
