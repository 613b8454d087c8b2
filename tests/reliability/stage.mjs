// What the programs in JavaScript share: a page in the real runtime on the bus of the environment, and how a program
// ends.
import { execFileSync, spawn } from 'node:child_process';
import { once } from 'node:events';
import path from 'node:path';
import { build, root } from '../kit/corvis.mjs';

export const appId = 'com.example.patient';
export const isShort = process.argv.includes('--short');
const privilege = 'http://developer.nurvo.example/privilege';

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

// The runtime with the page of this folder.
export function startTv() {
  const child = spawn(
    path.join(build, 'bin/corvis-tv'),
    [
      ...['--app-id', appId, '--headless', '--console', 'none'],
      ...['--extension', path.join(build, 'lib/libcorvis_voiceinteraction.so')],
      ...['--privilege', `${privilege}/microphone`, '--privilege', `${privilege}/voicecontrol`],
      path.join(root, 'tests/reliability/page'),
    ],
    { stdio: ['ignore', 'inherit', 'inherit'] }
  );
  return async () => {
    child.kill('SIGTERM');
    if (child.exitCode === null) await once(child, 'exit');
  };
}

// An expression's value in the page.
export function evaluate(expression) {
  const call = ['--session', '--print-reply=literal', `--dest=${appId}.runtime`, '/corvis/tv'];
  const text = execFileSync('dbus-send', [...call, 'corvis.tv.Control.Evaluate', `string:${expression}`], {
    encoding: 'utf8',
    maxBuffer: 1e8,
  });
  return JSON.parse(text);
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
