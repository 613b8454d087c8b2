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

/** Runs in the page: measures a phrase until its answer, and a bare turn of the event loop, in microseconds. */
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
  const ours = await time(() => globalThis.tv.say('go to 1:30'));
  return { ours, against: await time(bareTurn) };
}

/** Runs in the page as its application. */
function startApplication() {
  const { voiceinteraction } = window.corvis;
  voiceinteraction.setCallback({ onsetplayposition: (seconds) => seconds });
  voiceinteraction.listen();
}

async function sample(browser, short) {
  const text = readFileSync(path.join(folder, 'script.js'), 'utf8');
  const samples = { ready: [], ours: [], against: [] };
  for (let i = 0; i < (short ? 2 : 21); i++) {
    const page = await browser.newPage();
    samples.ready.push(await page.evaluate(readyOnce, text));
    await page.evaluate(startApplication);
    // Warm-up: the first commands include compilation.
    await page.evaluate(commandOnce, short ? 10 : 1000);
    const { ours, against } = await page.evaluate(commandOnce, short ? 10 : 1000);
    samples.ours.push(ours);
    samples.against.push(against);
    await page.close();
  }
  return samples;
}

function linesOf(samples, bytes) {
  const [ours, against] = [median(samples.ours), median(samples.against)];
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
    atMost(100, {
      what: 'a phrase in the simulator, until it is answered',
      against: 'nothing: an absolute time, with the turn of the main loop in it',
      figure: ours,
      unit: ' µs',
      details: `a bare turn takes ${timeText(against)}`,
    }),
  ];
}

export async function measure({ short }) {
  const executablePath = process.env.CORVIS_CHROMIUM ?? '/usr/bin/chromium';
  const browser = await chromium.launch({ executablePath, args: ['--no-sandbox', '--disable-gpu'] });
  const samples = await sample(browser, short).finally(() => browser.close());
  const series = { 'a phrase': samples.ours, 'a bare turn': samples.against };
  return {
    lines: linesOf(samples, readFileSync(path.join(folder, 'index.js'))),
    samples,
    plots: [{ kind: 'distribution', title: 'A phrase in the simulator', unit: 'µs', series }],
  };
}
