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

function panelOf(plot) {
  const { points, x, y, yScale, mark } = kinds[plot.kind](plot);
  const values = Object.entries(plot.series).flatMap(([series, list]) =>
    points(list).map(([across, up], order) => ({ series, across, up, order }))
  );
  const axis = {
    labelExpr: "format(datum.value, datum.value < 1 ? '~g' : '~s')",
    labelOverlap: true,
  };
  const legend = { title: null, orient: 'top', columns: 2, labelLimit: 0 };
  return {
    title: { text: plot.title, anchor: 'start' },
    width: 310,
    height: 190,
    data: { values },
    mark: { type: 'line', interpolate: 'linear', ...mark },
    encoding: {
      x: { field: 'across', type: 'quantitative', scale: { type: 'log', nice: false }, axis, title: x },
      y: { field: 'up', type: 'quantitative', scale: { nice: false, ...yScale }, axis, title: y },
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
