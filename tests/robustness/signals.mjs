// Runs are interrupted at random moments: by signals, once or twice, to the process or its group; by Ctrl-C in a
// terminal; by SIGKILL. Each ends in time with the status of its signal, and leaves no process and no file.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdirSync, mkdtempSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { constants, tmpdir } from 'node:os';
import path from 'node:path';
import { setTimeout as pause } from 'node:timers/promises';
import { build, processesWith, until } from '../../testing/corvis.mjs';
import { isShort, program, randomNumbers } from './stage.mjs';

const counts = isShort ? { signals: 6, terminal: 2, kills: 2 } : { signals: 200, terminal: 40, kills: 40 };
const atOnce = isShort ? 2 : 3;
const longestLife = 1600;
const timeToEnd = 5000;
const timeToVanish = 3000;
const random = randomNumbers(20261123);
const folder = mkdtempSync(path.join(tmpdir(), 'corvis-signals.'));
const corvis = path.join(build, 'bin/corvis');

writeFileSync(
  path.join(folder, 'index.html'),
  `<!doctype html><script>
    corvis.voiceinteraction.setCallback({
      onplay: function () { var end = Date.now() + 100; while (Date.now() < end); return true; }
    });
    corvis.voiceinteraction.listen();
  </script>`
);
writeFileSync(path.join(folder, 'long.voice'), 'say play\nwait 200 ms\n'.repeat(100));

// Short lives are the most frequent: most happens at the start.
const randomLife = () => random(longestLife) * (random(1000) / 1000);

let number = 0;
function start(command, args, options) {
  const temporary = path.join(folder, `run${++number}`);
  mkdirSync(temporary);
  const env = { ...process.env, DISPLAY: '', TMPDIR: temporary };
  return { child: spawn(command, args, { env, cwd: folder, ...options }), temporary };
}

// Waits until the run has ended, and nothing of it is left. Gives its status and the times that both took.
async function end({ child, temporary }, exited) {
  const begin = Date.now();
  const running = { child, output: () => `${child.spawnargs.join(' ')} has not ended` };
  await until(() => child.exitCode !== null || child.signalCode !== null, running, timeToEnd / 1000);
  const [code, signal] = await exited;
  const ended = Date.now();
  const left = () => [...processesWith(`TMPDIR=${temporary}`), ...readdirSync(temporary)];
  await until(() => left().length === 0, { output: () => `left: ${left()}` }, timeToVanish / 1000);
  return { code: code ?? 128 + constants.signals[signal], took: ended - begin, vanished: Date.now() - ended };
}

const testApp = ['test-app', folder, path.join(folder, 'long.voice')];

async function interrupt() {
  const signal = ['SIGINT', 'SIGTERM', 'SIGHUP', 'SIGQUIT'][random(4)];
  const isForGroup = random(2) === 1;
  const isTwice = random(2) === 1;
  const run = start(corvis, testApp, { stdio: 'ignore', detached: true });
  const exited = once(run.child, 'exit');
  await pause(randomLife());
  const send = () => {
    try {
      process.kill(isForGroup ? -run.child.pid : run.child.pid, signal);
    } catch {
      // The first signal has ended it.
    }
  };
  send();
  if (isTwice) await pause(30).then(send);
  const result = await end(run, exited);
  assert.equal(
    result.code,
    128 + constants.signals[signal],
    `${signal}, group: ${isForGroup}, twice: ${isTwice}`
  );
  return result;
}

async function pressCtrlC() {
  const command = `'${corvis}' run --headless '${folder}'`;
  const run = start('script', ['-qec', command, '/dev/null'], { stdio: ['pipe', 'ignore', 'ignore'] });
  const exited = once(run.child, 'exit');
  // The terminal is there when the program is.
  await until(() => processesWith(`TMPDIR=${run.temporary}`).length > 1, { output: () => 'no program' });
  await pause(randomLife());
  run.child.stdin.write('\x03');
  const result = await end(run, exited);
  assert.equal(result.code, 130, 'Ctrl-C');
  return result;
}

async function kill() {
  const run = start(corvis, testApp, { stdio: 'ignore' });
  const exited = once(run.child, 'exit');
  await pause(randomLife());
  run.child.kill('SIGKILL');
  return end(run, exited);
}

// Does it so often, several at a time; gives the longest times.
async function many(count, once_) {
  let left = count;
  const results = [];
  const lane = async () => {
    while (left-- > 0) results.push(await once_());
  };
  await Promise.all(Array.from({ length: atOnce }, lane));
  const longest = (name) => Math.max(...results.map((result) => result[name]));
  return { count, took: longest('took'), vanished: longest('vanished') };
}

await program('signals', async (t) => {
  t.after(() => rmSync(folder, { recursive: true, force: true }));
  const signals = await many(counts.signals, interrupt);
  const terminal = await many(counts.terminal, pressCtrlC);
  const kills = await many(counts.kills, kill);
  return (
    `${signals.count} signals at random moments, each with its status, after at most ${signals.took} ms; ` +
    `${terminal.count} Ctrl-C in a terminal, at most ${terminal.took} ms; ${kills.count} times SIGKILL, everything ` +
    `gone after at most ${kills.vanished} ms; no process and no file left`
  );
});
