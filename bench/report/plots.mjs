// Draws a page of plots as SVG. Each panel shows either cumulative distributions of samples or times over sizes, on
// logarithmic axes.

const panel = { width: 380, height: 280, left: 58, right: 14, top: 66, bottom: 40 };
const columns = 2;
const colours = ['#1b6ac9', '#d1571a', '#5f7d1f', '#8a4bb0', '#a8325e'];

const escape = (text) =>
  String(text).replace(/[&<>"]/g, (c) => ({ '&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;' })[c]);
const element = (name, attributes, inner = '') =>
  `<${name} ${Object.entries(attributes)
    .map(([key, value]) => `${key}="${escape(value)}"`)
    .join(' ')}>${inner}</${name}>`;
const textAt = (x, y, text, attributes = {}) => element('text', { x, y, ...attributes }, escape(text));
const round = (value) => Number(value.toFixed(1));

/** A logarithmic scale from [low, high] to [from, to], with its ticks at 1, 2 and 5 or at powers of ten. */
function logScale(low, high, from, to) {
  const [first, last] = [Math.log10(low), Math.log10(Math.max(high, low * 1.01))];
  const at = (value) => round(from + ((Math.log10(value) - first) / (last - first)) * (to - from));
  const steps = last - first > 2.5 ? [1] : [1, 2, 5];
  const ticks = [];
  for (let power = Math.floor(first); power <= Math.ceil(last); power++) {
    ticks.push(...steps.map((step) => step * 10 ** power).filter((tick) => tick >= low && tick <= high));
  }
  if (ticks.length < 2) ticks.splice(0, 1, low, (low + high) / 2, high);
  return { at, ticks };
}

function linearScale(low, high, from, to, ticks) {
  return { at: (value) => round(from + ((value - low) / (high - low)) * (to - from)), ticks };
}

const siUnits = [
  [1e6, 'M'],
  [1e3, 'k'],
  [1, ''],
];
function shortNumber(value) {
  const [factor, letter] = siUnits.find(([unit]) => value >= unit) ?? [1, ''];
  return `${Number((value / factor).toPrecision(3))}${letter}`;
}

function axes({ x, y, xLabel, yLabel }) {
  const { width, height, left, right, top, bottom } = panel;
  const base = height - bottom;
  const lines = [];
  for (const tick of x.ticks) {
    lines.push(element('line', { x1: x.at(tick), x2: x.at(tick), y1: top, y2: base, class: 'grid' }));
    lines.push(textAt(x.at(tick), base + 14, shortNumber(tick), { 'text-anchor': 'middle' }));
  }
  for (const tick of y.ticks) {
    lines.push(
      element('line', { x1: left, x2: width - right, y1: y.at(tick), y2: y.at(tick), class: 'grid' })
    );
    lines.push(textAt(left - 6, y.at(tick) + 4, shortNumber(tick), { 'text-anchor': 'end' }));
  }
  lines.push(textAt((left + width - right) / 2, height - 8, xLabel, { 'text-anchor': 'middle' }));
  lines.push(textAt(-(top + base) / 2, 14, yLabel, { 'text-anchor': 'middle', transform: 'rotate(-90)' }));
  return lines.join('');
}

function curve(points, { x, y }, colour) {
  const path = points.map(([px, py]) => `${x.at(px)},${y.at(py)}`).join(' ');
  return element('polyline', { points: path, fill: 'none', stroke: colour, 'stroke-width': 1.8 });
}

const dots = (points, { x, y }, colour) =>
  points.map(([px, py]) => element('circle', { cx: x.at(px), cy: y.at(py), r: 2.6, fill: colour })).join('');

/** The legend between title and plot, with two names per line. */
function legend(names) {
  const entry = (name, i) => {
    const x = panel.left + (i % 2) * ((panel.width - panel.left) / 2);
    const y = 38 + 15 * Math.floor(i / 2);
    const swatch = element('rect', { x, y: y - 6, width: 12, height: 4, fill: colours[i] });
    return swatch + textAt(x + 18, y, name);
  };
  return names.map(entry).join('');
}

function draw({ title, xLabel, yLabel, x, y, series, withDots }) {
  const entries = Object.entries(series);
  const curves = entries.map(([, points], i) => curve(points, { x, y }, colours[i]));
  if (withDots) curves.push(...entries.map(([, points], i) => dots(points, { x, y }, colours[i])));
  const head = textAt(panel.left, 20, title, { class: 'title' });
  return head + axes({ x, y, xLabel, yLabel }) + curves.join('') + legend(entries.map(([name]) => name));
}

const xRange = [panel.left, panel.width - panel.right];
const yRange = [panel.height - panel.bottom, panel.top];
const extent = (values) => [Math.min(...values), Math.max(...values)];

/**
 * The cumulative distribution of the samples in percent, without the outermost ones. Samples below the clock's
 * resolution are 0 and can't be drawn on a logarithmic axis.
 */
function sharePoints(samples) {
  const sorted = [...samples].sort((a, b) => a - b);
  const step = Math.max(1, Math.floor(sorted.length / 200));
  const points = sorted.map((value, i) => [value, (100 * (i + 1)) / sorted.length]);
  return points.filter(([value, share], i) => value > 0 && i % step === 0 && share <= 99.5);
}

function drawDistribution({ title, unit, series }) {
  const points = Object.fromEntries(Object.entries(series).map(([name, list]) => [name, sharePoints(list)]));
  const values = Object.values(points).flatMap((list) => list.map(([value]) => value));
  const x = logScale(...extent(values), ...xRange);
  const y = linearScale(0, 100, ...yRange, [0, 25, 50, 75, 100]);
  return draw({ title, xLabel: unit, yLabel: '% took at most', x, y, series: points });
}

function drawScaling({ title, unit, sizes, series }) {
  const points = Object.values(series).flat();
  const x = logScale(...extent(points.map(([size]) => size)), ...xRange);
  const y = logScale(...extent(points.map(([, value]) => value)), ...yRange);
  return draw({ title, xLabel: sizes, yLabel: unit, x, y, series, withDots: true });
}

const style = `text { font: 11px sans-serif; fill: #333; } .title { font-weight: bold; font-size: 12.5px; }
  .grid { stroke: #ddd; } rect.page { fill: #fff; }`;

/** The plots, each {kind: 'distribution' | 'scaling', title, unit, series, sizes}, as the text of an SVG file. */
export function plotPage(plots) {
  const drawing = { distribution: drawDistribution, scaling: drawScaling };
  const place = (i) => [(i % columns) * panel.width, Math.floor(i / columns) * panel.height];
  const panels = plots.map((plot, i) =>
    element('g', { transform: `translate(${place(i)})` }, drawing[plot.kind](plot))
  );
  const [width, height] = [columns * panel.width, Math.ceil(plots.length / columns) * panel.height];
  const page = element('rect', { class: 'page', width, height });
  const attributes = {
    xmlns: 'http://www.w3.org/2000/svg',
    viewBox: `0 0 ${width} ${height}`,
    width,
    height,
  };
  return element('svg', attributes, `<style>${style}</style>${page}${panels.join('\n')}`) + '\n';
}
