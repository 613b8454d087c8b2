// What must not be possible: the API without its privileges, the bus for other users, and files outside of a run's own
// folders.
import { spawn, spawnSync } from 'node:child_process';
import {
  chmodSync,
  existsSync,
  mkdirSync,
  mkdtempSync,
  readFileSync,
  rmSync,
  statSync,
  writeFileSync,
} from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { build, root } from '../../testing/corvis.mjs';
import { appId, control, evaluate, eventually, privileges, program, require, startTv } from './stage.mjs';

const isRoot = process.getuid() === 0;

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
      try {
        voice.getVersion();
      } finally {
        delete owner[name];
        if (own) Object.defineProperty(owner, name, own);
      }
    };
  });
  function tryAll() {
    return Object.keys(calls).map((name) => {
      try {
        calls[name]();
        return name + ': allowed';
      } catch (error) {
        return name + ': ' + error.name;
      }
    });
  }
</script>`;

// Everything that passes over the bus from now on.
async function watchBus(children) {
  const child = spawn('dbus-monitor', ['--session']);
  children.push(child);
  let text = '';
  child.stdout.on('data', (data) => (text += data));
  const sees = (part) => eventually(() => require(text.includes(part), `${part} was not seen on the bus`));
  await sees('NameLost');
  return { text: () => text, sees };
}

// The voice service, which the page would speak with.
async function startService(children) {
  children.push(
    spawn(path.join(build, 'bin/robustness_voice_service'), [appId], { stdio: ['pipe', 'ignore', 'ignore'] })
  );
  await eventually(() => require(askBus().includes('com.kelvaro.tv.vif'), 'the voice service did not start'));
}

async function refuseAll(bus) {
  for (const granted of [[], privileges.slice(0, 1), privileges.slice(1)]) {
    control('SetPrivileges', `array:string:${granted.join()}`);
    const allowed = evaluate('tryAll()').filter((line) => !line.endsWith(': SecurityError'));
    require(allowed.length === 0, `with ${granted.join() || 'no privilege'}: ${allowed}`);
  }
  // What was on the bus has been read once this last word has.
  evaluate('"last word"');
  await bus.sees('last word');
  require(!bus.text().includes('interface=nurvo.'), 'a page without privileges sent something');
  require(!bus.text().includes(`string "${appId}"`), 'a page without privileges took its name on the bus');
}

async function withoutPrivileges(folder) {
  writeFileSync(path.join(folder, 'index.html'), guardedPage);
  const endTv = startTv({ page: folder, granted: [] });
  const children = [];
  try {
    await startService(children);
    const all = await eventually(() => evaluate('tryAll()'));
    const bus = await watchBus(children);
    await refuseAll(bus);
    // With both, the same calls work, and the same look at the bus sees them.
    control('SetPrivileges', `array:string:${privileges.join()}`);
    const honest = (line) => !line.includes(' with another ');
    const refused = evaluate('tryAll()').filter((line) => honest(line) && !line.endsWith(': allowed'));
    require(refused.length === 0, `with both privileges: ${refused}`);
    await bus.sees(`string "${appId}"`);
    await bus.sees('interface=nurvo.');
    const methods = all.filter(honest).length;
    return (
      `${methods} guarded methods refuse without the privileges or with one, also a page that tampers in ` +
      `${all.length - methods} ways; nothing on the bus`
    );
  } finally {
    for (const child of children) child.kill();
    await endTv();
  }
}

// The names on the bus; nothing when it does not answer. `as` is a command to run the question with.
function askBus(...as) {
  const call = ['dbus-send', '--session', '--print-reply', '--dest=org.freedesktop.DBus', '/'];
  const command = [...as, ...call, 'org.freedesktop.DBus.ListNames'];
  return spawnSync(command[0], command.slice(1), { encoding: 'utf8' }).stdout;
}

function otherUsers() {
  const folder = path.dirname(
    decodeURIComponent(process.env.DBUS_SESSION_BUS_ADDRESS.replace('unix:path=', ''))
  );
  require((statSync(folder).mode & 0o777) === 0o700, `others may enter ${folder}`);
  require(askBus(), 'the bus does not answer its own user');
  if (!isRoot) return "the bus's folder is its user's alone (as root, another user would be tried)";
  const nobody = ['setpriv', '--reuid=65534', '--regid=65534', '--clear-groups'];
  require(!askBus(...nobody), 'another user reached the bus');
  // The bus itself refuses, too.
  chmodSync(folder, 0o755);
  const names = askBus(...nobody);
  chmodSync(folder, 0o700);
  require(!names, 'the bus lets another user in');
  return 'another user is refused by the folder, and by the bus behind it';
}

// Runs an application with an empty home and, where that can be arranged, an empty /tmp; gives what is left there.
function leftovers(folder) {
  const home = path.join(folder, 'home');
  const covering = ['--mount', 'mount', '-t', 'tmpfs', 'none', '/tmp'];
  const isTmpEmpty = !root.startsWith('/tmp/') && spawnSync('unshare', covering).status === 0;
  const script = [
    ...(isTmpEmpty ? ['mount -t tmpfs none /tmp', 'mkdir -p "$TMPDIR"'] : []),
    `echo play | "${root}/corvis" run --headless "${root}/examples/minimal" >"${folder}/output" 2>&1 || exit 1`,
    `find "$HOME" "$TMPDIR" ${isTmpEmpty ? '/tmp' : ''} -mindepth 1 ! -path "$TMPDIR" ! -name .X11-unix`,
  ].join('\n');
  const command = [...(isTmpEmpty ? ['unshare', '--mount'] : []), 'bash', '-c', script];
  mkdirSync(home);
  const env = { ...process.env, HOME: home, TMPDIR: isTmpEmpty ? '/tmp/own' : path.join(folder, 'own') };
  for (const name of ['XDG_CACHE_HOME', 'XDG_CONFIG_HOME', 'XDG_DATA_HOME', 'XDG_RUNTIME_DIR', 'DISPLAY'])
    delete env[name];
  mkdirSync(path.join(folder, 'own'));
  const run = spawnSync(command[0], command.slice(1), { env, encoding: 'utf8', timeout: 60000 });
  const output = existsSync(`${folder}/output`) ? readFileSync(`${folder}/output`, 'utf8') : '';
  require(run.status === 0, `the run failed: ${output}${run.stderr}`);
  require(output.includes('ACTION_PLAY'), `the application did not answer: ${output}`);
  require(run.stdout === '', `the run left behind: ${run.stdout}`);
  return `a run leaves nothing in the home folder${isTmpEmpty ? ' and /tmp' : ''}`;
}

await program('permissions', async () => {
  // Not below /tmp, which one of the runs covers.
  const folder = mkdtempSync(path.join(isRoot ? '/var/tmp' : tmpdir(), 'corvis-permissions-'));
  try {
    return [await withoutPrivileges(folder), otherUsers(), leftovers(folder)].join('; ');
  } finally {
    rmSync(folder, { recursive: true, force: true });
  }
});
