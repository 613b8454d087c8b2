// The lines and the table of the report. A line shows what was measured, against what, the figure, the target and
// whether it is met.
import { percentile, ratioAt, threeDigits, timeText } from './statistics.mjs';

/** A line whose `figure` must be at most `limit`. `details` explain the figure; `unit` follows figure and limit. */
export function atMost(limit, { what, against, figure, unit = '', details = '' }) {
  return {
    what,
    against,
    figure,
    shown: `${threeDigits(figure)}${unit}${details && ` (${details})`}`,
    aim: `≤ ${limit}${unit}`,
    met: figure <= limit,
  };
}

/** A line whose `figure` must be at least `limit`. */
export function atLeast(limit, line) {
  return { ...atMost(limit, line), aim: `≥ ${limit}${line.unit ?? ''}`, met: line.figure >= limit };
}

/** A line for two contenders' samples, compared at `share` of each; `format` shows one sample. */
export function ratioAtMost(limit, samples, { what, against, share = 0.5, format = timeText }) {
  const details = [samples.ours, samples.against].map((list) => format(percentile(list, share))).join(' : ');
  return atMost(limit, { what, against, figure: ratioAt(share, samples), details });
}

/** The lines as one Markdown table. */
export function tableOf(lines) {
  const rows = lines.map(({ what, against, shown, aim, met }) => [
    what,
    against,
    shown,
    aim,
    met ? 'yes' : 'NO',
  ]);
  return [
    '| what | measured against | ratio (ours : the other) | aim | met |',
    '|---|---|---|---|---|',
    ...rows.map((cells) => `| ${cells.join(' | ')} |`),
  ].join('\n');
}
