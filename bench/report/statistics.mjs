// Statistics of samples, and their formatting.

/** The value below which `share` (0 to 1) of the samples lie. */
export function percentile(samples, share) {
  const sorted = [...samples].sort((a, b) => a - b);
  return sorted[Math.min(sorted.length - 1, Math.floor(share * sorted.length))];
}

export const median = (samples) => percentile(samples, 0.5);

/** The ratio of `ours` to `against` at the percentile `share` of each. */
export const ratioAt = (share, { ours, against }) => percentile(ours, share) / percentile(against, share);

/** A number with three significant digits. */
export const threeDigits = (value) => Number(value.toPrecision(3)).toString();

/** Formats a time in microseconds with a suitable unit. */
export function timeText(microseconds) {
  if (microseconds >= 1e6) return `${threeDigits(microseconds / 1e6)} s`;
  if (microseconds >= 1e3) return `${threeDigits(microseconds / 1e3)} ms`;
  if (microseconds >= 1) return `${threeDigits(microseconds)} µs`;
  return `${threeDigits(microseconds * 1e3)} ns`;
}
