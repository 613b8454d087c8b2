// What the programs in JavaScript share: a page in the real runtime on the bus of the environment, and how a program
// ends.
import { execFileSync, spawn } from 'node:child_process';
import { once } from 'node:events';
import path from 'node:path';
import { build, privilegeUri, root } from '../../testing/corvis.mjs';

export const appId = 'com.example.patient';
export const isShort = process.argv.includes('--short');
export const privileges = ['microphone', 'voicecontrol'].map(privilegeUri);

// Numbers below `limit`, the same ones in every run.
export function randomNumbers(seed) {
  let state = BigInt(seed);
  return (limit) => {
    state = (state * 6364136223846793005n + 1442695040888963407n) & 0xffffffffffffffffn;
    return Number((state >> 33n) % BigInt(limit));
  };
}

export function require(holds, sentence) {
  if (!holds) throw new Error(sentence);
}

// Waits for a promise, at most ten seconds.
export async function within(promise, what) {
  let timer;
  const late = new Promise((resolve, reject) => {
    timer = setTimeout(() => reject(new Error(`waited in vain for ${what}`)), 10000);
  });
  try {
    return await Promise.race([promise, late]);
  } finally {
    clearTimeout(timer);
  }
}

// The runtime with the page of this folder, or another. Returns what ends it.
export function startTv({ page = path.join(root, 'tests/robustness/page'), granted = privileges } = {}) {
  const child = spawn(
    path.join(build, 'bin/corvis-tv'),
    [
      ...['--app-id', appId, '--headless', '--console', 'none'],
      ...['--extension', path.join(build, 'lib/libcorvis_voiceinteraction.so')],
      ...granted.flatMap((uri) => ['--privilege', uri]),
      page,
    ],
    { stdio: ['ignore', 'inherit', 'inherit'] }
  );
  return async () => {
    child.kill('SIGTERM');
    if (child.exitCode === null) await once(child, 'exit');
  };
}

// Calls a method of the runtime's control interface; arguments as dbus-send takes them.
export function control(method, ...args) {
  const call = ['--session', '--print-reply=literal', `--dest=${appId}.runtime`, '/corvis/tv'];
  return execFileSync('dbus-send', [...call, `corvis.tv.Control.${method}`, ...args], {
    encoding: 'utf8',
    maxBuffer: 1e8,
    stdio: ['ignore', 'pipe', 'ignore'],
  });
}

// An expression's value in the page.
export function evaluate(expression) {
  return JSON.parse(control('Evaluate', `string:${expression}`));
}

// Tries until it does not throw, at most ten seconds.
export async function eventually(attempt) {
  const deadline = Date.now() + 10000;
  for (;;) {
    try {
      return attempt();
    } catch (error) {
      if (Date.now() > deadline) throw error;
      await new Promise((resolve) => setTimeout(resolve, 20));
    }
  }
}

// Runs a program that returns its figures, and prints its line.
export async function program(name, run) {
  try {
    console.log(`${name}: ${await run()}`);
  } catch (error) {
    console.log(`${name}: FAILED: ${error.message}`);
    process.exitCode = 1;
  }
}
