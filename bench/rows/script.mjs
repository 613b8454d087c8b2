// The script API in Chromium: the time to start it in a page, and the time of a command through it.
import { scriptText, startBrowser } from '../../testing/browser.mjs';
import { atMost } from '../report/result.mjs';
import { median, timeText } from '../report/statistics.mjs';

/** Runs in the page: measures starting scripts that the engine has not seen, several at a time, in microseconds. */
function startOnce({ text, times, round }) {
  // Several at a time, because the clock is coarser than one start; all different, because the engine caches scripts.
  function time(body) {
    const texts = Array.from({ length: times }, (_, i) => `${body}//${round} ${i}`.padEnd(text.length + 20));
    class NativeManager {
      addListener() {}
      callSync() {
        return { status: 'success' };
      }
      isFailure() {
        return false;
      }
    }
    const xwalk = { utils: { type: {}, converter: {}, validator: { Types: {} }, NativeManager } };
    const silent = { log() {} };
    const start = performance.now();
    for (const each of texts) {
      const build = new Function('xwalk', 'extension', 'console', 'exports', 'CorviException', each);
      build(xwalk, {}, silent, {}, Error);
    }
    return ((performance.now() - start) * 1000) / times;
  }
  const ours = time(`${text}\n`);
  return { ours, against: time(`/*${'-'.repeat(text.length - 4)}*/\n`) };
}

/** Runs in the page: measures a command through the script, and a bare listener that answers it, in microseconds. */
function dispatchOnce({ times }) {
  const { voice } = window;
  const listener = voice.listeners.get('ACTION_PLAY');
  const native = voice.peek('native_');
  const bare = (message) => native.callSync('Response', { action: message.action, response: 'success' });
  function time(listen) {
    const start = performance.now();
    for (let i = 0; i < times; i++) listen({ listenerId: 'ACTION_PLAY', action: 'ACTION_PLAY', param: '' });
    const microseconds = ((performance.now() - start) * 1000) / times;
    voice.calls.length = 0;
    voice.logs.length = 0;
    return microseconds;
  }
  return { ours: time(listener), against: time(bare) };
}

async function collect(rounds, measureOnce) {
  const samples = { ours: [], against: [] };
  for (let i = -3; i < rounds; i++) {
    const { ours, against } = await measureOnce(i);
    if (i < 0) continue;
    samples.ours.push(ours);
    samples.against.push(against);
  }
  return samples;
}

const difference = ({ ours, against }) => median(ours) - median(against);
const medians = ({ ours, against }) => `${timeText(median(ours))} − ${timeText(median(against))}`;

export async function measure({ short }) {
  const browser = await startBrowser();
  let start;
  let dispatch;
  try {
    const page = await browser.open('<p>An empty page</p>');
    await page.evaluate(() => window.voice.api.setCallback({ onplay: () => true }));
    const text = scriptText();
    start = await collect(short ? 3 : 101, (round) => page.evaluate(startOnce, { text, times: 10, round }));
    dispatch = await collect(short ? 3 : 101, () => page.evaluate(dispatchOnce, { times: 5000 }));
  } finally {
    await browser.close();
  }
  const lines = [
    atMost(2, {
      what: 'start of the script API in a page',
      against: 'an empty script of the same size: the difference',
      figure: difference(start) / 1000,
      unit: ' ms',
      details: medians(start),
    }),
    atMost(20, {
      what: 'a command through the script',
      against: 'a bare listener that answers: the difference',
      figure: difference(dispatch),
      unit: ' µs',
      details: medians(dispatch),
    }),
  ];
  const plot = (title, { ours, against }, other) => ({
    kind: 'distribution',
    title,
    unit: 'µs',
    series: { 'the script API': ours, [other]: against },
  });
  return {
    lines,
    samples: { start, dispatch },
    plots: [
      plot('Start of the script API', start, 'an empty script'),
      plot('A command through the script', dispatch, 'a bare listener'),
    ],
  };
}
