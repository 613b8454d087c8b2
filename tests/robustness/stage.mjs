// What the programs in JavaScript share: a page in the real runtime on the bus of the environment, and how a program
// ends.
import path from 'node:path';
import { build, privilegeUri, root } from '../../testing/corvis.mjs';
import { Tv } from '../../testing/tv.mjs';

export const isShort = process.argv.includes('--short');
export const privileges = ['microphone', 'voicecontrol'].map(privilegeUri);
export const voiceService = path.join(build, 'bin/robustness_voice_service');

// Numbers below `limit`, the same ones in every run.
export function randomNumbers(seed) {
  let state = BigInt(seed);
  return (limit) => {
    state = (state * 6364136223846793005n + 1442695040888963407n) & 0xffffffffffffffffn;
    return Number((state >> 33n) % BigInt(limit));
  };
}

// The runtime with the page of this folder, or another, loaded.
export async function startTv(
  t,
  { page = path.join(root, 'tests/robustness/page'), granted = privileges } = {}
) {
  const options = ['--console', 'none', ...granted.flatMap((uri) => ['--privilege', uri])];
  const extension = path.join(build, 'lib/libcorvis_voiceinteraction.so');
  const tv = new Tv(t, process.env.DBUS_SESSION_BUS_ADDRESS, page, { extension, options });
  await tv.loaded();
  return tv;
}

// Runs a program that returns its figures, prints its line, and then what `t.after` was given.
export async function program(name, run) {
  const ends = [];
  try {
    console.log(`${name}: ${await run({ after: (end) => ends.unshift(end) })}`);
  } catch (error) {
    console.log(`${name}: FAILED: ${error.message}`);
    process.exitCode = 1;
  }
  for (const end of ends) await end();
}
