// Answers that don't fit into one message: cut and sent.
import { atMost, ratioAtMost } from '../report/result.mjs';
import { median } from '../report/statistics.mjs';
import { googleBenchmark, outputOf, programPath } from './programs.mjs';

const mebibyte = 2 ** 20;
const sizes = [1 / 16, 1 / 4, 1, 4, 16].map((size) => size * mebibyte);
const shown = [mebibyte, 16 * mebibyte];
// The search for the cuts halves the answer until pieces of some 8 KiB are left.
const nLogN = (size) => size * Math.log2(size / 8192);
const peak = (size) => Number(outputOf(programPath('bench_answer_memory'), [String(size)]));

export function measure({ short }) {
  const settings = short ? { repetitions: 2, minTime: 0.001 } : { repetitions: 21, minTime: 0.05 };
  const samples = googleBenchmark('bench_channel', [], { filter: '^answer/', ...settings });
  const at = (kind, size) => samples.get(`answer/${kind}/${size}`);
  const lines = shown.map((size) =>
    ratioAtMost(
      2.5,
      { ours: at('ours', size), against: at('against', size) },
      {
        what: `answer of ${size / mebibyte} MiB, cut and sent`,
        against: 'making and sending the same pieces, the cuts known',
      }
    )
  );
  const [small, large] = shown.map((size) => median(at('ours', size)));
  lines.push(
    atMost(1.1, {
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
  const series = { 'cut and sent': points('ours'), 'cuts known': points('against') };
  return {
    lines,
    samples: { ...Object.fromEntries(samples), peaks },
    plots: [{ kind: 'scaling', title: 'Answers in pieces', unit: 'ms', sizes: 'bytes', series }],
  };
}
