// Draws which of the callbacks that an application can have were spoken.
import { h, svg } from './elements.js';

const states = [
  ['spoken', 'Spoken', 'A phrase was said, and the page answered.'],
  ['refused', 'Refused', 'Spoken, but only ever answered with not_support.'],
  ['unspoken', 'Not spoken', 'The page has the callback; no test says a phrase for it.'],
  ['missing', 'Missing', 'The page does not have the callback.'],
];

function stateOf({ callback, action }, coverage) {
  if (coverage.missing_callbacks.includes(callback)) return 'missing';
  if (coverage.not_support.includes(action)) return 'refused';
  return coverage.spoken.includes(action) ? 'spoken' : 'unspoken';
}

function ring(percent) {
  const radius = 42;
  const round = 2 * Math.PI * radius;
  const circle = (attributes) => svg('circle', { cx: 50, cy: 50, r: radius, ...attributes });
  return svg(
    'svg',
    { viewBox: '0 0 100 100', class: 'ring', role: 'img', 'aria-label': `${percent} percent` },
    circle({ class: 'track' }),
    circle({ class: 'value', 'stroke-dasharray': `${(round * percent) / 100} ${round}` }),
    svg('text', { x: 50, y: 56, 'text-anchor': 'middle' }, `${percent} %`)
  );
}

/** The coverage; `choose(action)` shows the tests that speak an action. */
export function coverageView(run, callbacks, choose) {
  const { coverage } = run;
  const cells = callbacks.map((entry) => ({ ...entry, state: stateOf(entry, coverage) }));
  const number = (state) => cells.filter((cell) => cell.state === state).length;
  const has = (action) => run.steps.some((step) => step.action === action);
  const cell = ({ callback, action, state }) => {
    const texts = [
      h('b', {}, callback),
      h('span', {}, action.replace('ACTION_', '')),
      h('i', {}, states.find(([name]) => name === state)[1]),
    ];
    const content = has(action)
      ? h('button', { title: 'Show the tests that speak it', onclick: () => choose(action) }, texts)
      : h('div', {}, texts);
    return h('li', { class: state }, content);
  };
  const legend = states.map(([state, name, meaning]) =>
    h('li', { class: state }, h('b', {}, `${number(state)} ${name.toLowerCase()}`), h('span', {}, meaning))
  );
  return [
    h('h2', {}, 'Voice coverage'),
    h('div', { class: 'coverage-head' }, ring(coverage.percent), h('ul', { class: 'legend' }, legend)),
    h('ul', { class: 'callbacks' }, cells.map(cell)),
  ];
}
