// Draws a page of plots as SVG. Each panel shows either cumulative distributions of samples or times over sizes, on
// logarithmic axes.
import { View, parse } from 'vega';
import { compile } from 'vega-lite';

const columns = 2;

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

const kinds = {
  distribution: ({ unit }) => ({
    points: sharePoints,
    x: unit,
    y: '% took at most',
    yScale: { domain: [0, 100] },
    mark: {},
  }),
  scaling: ({ unit, sizes }) => ({
    points: (list) => list,
    x: sizes,
    y: unit,
    yScale: { type: 'log' },
    mark: { point: true },
  }),
};

const number = "format(datum.value, datum.value < 1 ? '~g' : '~s')";
/** The labels of an axis; on a logarithmic one those that begin with 1, 2 or 5. */
const labelsOf = (scale) =>
  scale.type === 'log'
    ? `indexof([1, 2, 5], round(datum.value / pow(10, floor(log(datum.value) / LN10 + 1e-9)))) < 0 ? '' : ${number}`
    : number;
const axisOf = (field, title, scale) => ({
  field,
  title,
  type: 'quantitative',
  scale: { nice: false, ...scale },
  axis: { labelExpr: labelsOf(scale), labelOverlap: 'greedy' },
});

function panelOf(plot) {
  const { points, x, y, yScale, mark } = kinds[plot.kind](plot);
  const values = Object.entries(plot.series).flatMap(([series, list]) =>
    points(list).map(([across, up], order) => ({ series, across, up, order }))
  );
  const legend = { title: null, orient: 'top', columns: 2, labelLimit: 0 };
  return {
    title: { text: plot.title, anchor: 'start' },
    width: 310,
    height: 190,
    data: { values },
    mark: { type: 'line', interpolate: 'linear', ...mark },
    encoding: {
      x: axisOf('across', x, { type: 'log' }),
      y: axisOf('up', y, yScale),
      color: { field: 'series', type: 'nominal', sort: Object.keys(plot.series), legend },
      order: { field: 'order' },
    },
  };
}

/** The plots, each {kind: 'distribution' | 'scaling', title, unit, series, sizes}, as the text of an SVG file. */
export async function plotPage(plots) {
  const page = {
    background: 'white',
    columns,
    concat: plots.map(panelOf),
    resolve: { scale: { color: 'independent' } },
  };
  const view = new View(parse(compile(page).spec), { renderer: 'none' });
  return `${await view.toSVG()}\n`;
}
