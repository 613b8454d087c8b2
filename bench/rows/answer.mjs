// Answers that don't fit into one message: split and sent over the bus until the other process has all pieces. The plot
// shows only the search for split positions, because the time on the bus would hide it.
import { atMost, ratioAtMost } from '../report/result.mjs';
import { median } from '../report/statistics.mjs';
import { googleBenchmark, outputOf, programPath, startProgram } from './programs.mjs';

const mebibyte = 2 ** 20;
const sizes = [1 / 16, 1 / 4, 1, 4, 16].map((size) => size * mebibyte);
const shown = [mebibyte, 16 * mebibyte];
// The search for split positions halves the answer until its pieces have about 8 KiB.
const nLogN = (size) => size * Math.log2(size / 8192);
const peak = (size) => Number(outputOf(programPath('bench_answer_memory'), [String(size)]));

async function measureOverBus(roundsOf) {
  const receiver = startProgram('bench_answers_over_bus', ['receive']);
  try {
    return shown.map((size) => {
      const args = ['send', String(size), String(roundsOf(size))];
      return [size, JSON.parse(outputOf(programPath('bench_answers_over_bus'), args))];
    });
  } finally {
    await receiver.stop();
  }
}

export async function measure({ short }) {
  const overBus = await measureOverBus((size) => (short ? 2 : (120 * mebibyte) / size + 13));
  const settings = short ? { repetitions: 2, minTime: 0.001 } : { repetitions: 21, minTime: 0.05 };
  const inside = googleBenchmark('bench_channel', [], { filter: '^answer/', ...settings });
  const at = (kind, size) => inside.get(`answer/${kind}/${size}`);
  const lines = overBus.map(([size, samples]) =>
    ratioAtMost(2.5, samples, {
      what: `answer of ${size / mebibyte} MiB, cut and sent`,
      against: 'making and sending the same pieces, the cuts known',
    })
  );
  const [small, large] = overBus.map(([, { ours }]) => median(ours));
  lines.push(
    atMost(1, {
      what: 'answer of 16 MiB, cut and sent',
      against: 'one of 1 MiB, grown as n log n',
      figure: large / small / (nLogN(shown[1]) / nLogN(shown[0])),
    })
  );
  const peaks = shown.map((size) => [size, peak(size)]);
  for (const [size, figure] of peaks) {
    const what = `highest memory use during an answer of ${size / mebibyte} MiB`;
    lines.push(atMost(4, { what, against: 'the size of the answer', figure }));
  }
  const points = (kind) => sizes.map((size) => [size, median(at(kind, size)) / 1000]);
  const series = { 'cut and encoded': points('ours'), 'encoded, the cuts known': points('against') };
  return {
    lines,
    samples: { overBus, inside: Object.fromEntries(inside), peaks },
    plots: [
      { kind: 'scaling', title: 'Answers in pieces, without the bus', unit: 'ms', sizes: 'bytes', series },
    ],
  };
}
