// The npm package's simulator in Chromium: its size, its start-up time, and the time of a command.
import { readFileSync } from 'node:fs';
import path from 'node:path';
import { brotliCompressSync, gzipSync } from 'node:zlib';
import { chromium } from 'playwright-core';
import { build } from '../../testing/corvis.mjs';
import { atMost } from '../report/result.mjs';
import { median, timeText } from '../report/statistics.mjs';

const folder = path.join(build, 'npm/package/simulator');
const kilobyte = 1000;

/** Runs in a new page: measures the microseconds from evaluating the script to the availability of the API. */
function readyOnce(text) {
  const start = performance.now();
  (0, eval)(text);
  globalThis.tv = globalThis.corvisSimulator.install(window);
  return (performance.now() - start) * 1000;
}

/** Runs in the page: measures a command and a phrase until their answers, and a bare turn, in microseconds. */
async function commandOnce(times) {
  const { port1, port2 } = new MessageChannel();
  const bareTurn = () =>
    new Promise((resolve) => {
      port1.onmessage = resolve;
      port2.postMessage(null);
    });
  async function time(run) {
    const start = performance.now();
    for (let i = 0; i < times; i++) await run();
    return ((performance.now() - start) * 1000) / times;
  }
  return {
    command: await time(() => globalThis.tv.send('ACTION_MEDIA_SET_PLAY_POSITION', '90')),
    phrase: await time(() => globalThis.tv.say('go to 1:30')),
    turn: await time(bareTurn),
  };
}

/** Runs in the page as its application. */
function startApplication() {
  const { voiceinteraction } = window.corvis;
  voiceinteraction.setCallback({ onsetplayposition: (seconds) => seconds });
  voiceinteraction.listen();
}

async function sample(browser, short) {
  const text = readFileSync(path.join(folder, 'script.js'), 'utf8');
  const samples = { ready: [], command: [], phrase: [], turn: [] };
  for (let i = 0; i < (short ? 2 : 21); i++) {
    const page = await browser.newPage();
    samples.ready.push(await page.evaluate(readyOnce, text));
    await page.evaluate(startApplication);
    // Warm-up: the first commands include compilation.
    await page.evaluate(commandOnce, short ? 10 : 1000);
    const times = await page.evaluate(commandOnce, short ? 10 : 1000);
    for (const [name, time] of Object.entries(times)) samples[name].push(time);
    await page.close();
  }
  return samples;
}

function linesOf(samples, bytes) {
  const answered = (what, times) =>
    atMost(100, {
      what: `${what} in the simulator, until it is answered`,
      against: 'nothing: an absolute time, with the turn of the main loop in it',
      figure: median(times),
      unit: ' µs',
      details: `a bare turn takes ${timeText(median(samples.turn))}`,
    });
  return [
    atMost(350, {
      what: 'the simulator, one file',
      against: 'its bytes / 1,000',
      figure: bytes.length / kilobyte,
      unit: ' KB',
    }),
    atMost(120, {
      what: 'the simulator, one file, compressed',
      against: 'its bytes after Brotli / 1,000',
      figure: brotliCompressSync(bytes).length / kilobyte,
      unit: ' KB',
      details: `gzip -9 makes ${Math.round(gzipSync(bytes, { level: 9 }).length / kilobyte)} KB`,
    }),
    atMost(50, {
      what: 'the simulator in a fresh page, from its text to the API',
      against: 'nothing: an absolute time',
      figure: median(samples.ready) / 1000,
      unit: ' ms',
    }),
    answered('a command', samples.command),
    answered('a phrase', samples.phrase),
  ];
}

export async function measure({ short }) {
  const executablePath = process.env.CORVIS_CHROMIUM ?? '/usr/bin/chromium';
  const browser = await chromium.launch({ executablePath, args: ['--no-sandbox', '--disable-gpu'] });
  const samples = await sample(browser, short).finally(() => browser.close());
  const series = { 'a command': samples.command, 'a phrase': samples.phrase, 'a bare turn': samples.turn };
  return {
    lines: linesOf(samples, readFileSync(path.join(folder, 'index.js'))),
    samples,
    plots: [{ kind: 'distribution', title: 'A phrase in the simulator', unit: 'µs', series }],
  };
}
