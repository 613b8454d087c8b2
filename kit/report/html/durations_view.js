// Draws what took how long.
import { duration, h, mark, table } from './elements.js';

const mostSteps = 20;
const wide = { class: 'durations' };

function bar(ms, longest) {
  return h(
    'span',
    { class: 'bar', 'aria-hidden': 'true' },
    h('span', { '--share': `${(100 * ms) / (longest || 1)}%` })
  );
}

function slowest(entries, open) {
  const longest = entries[0]?.ms;
  return entries.map(({ status, title, place, ms, target }) =>
    h(
      'tr',
      {},
      h('td', {}, mark(status), h('button', { class: 'link', onclick: () => open(...target) }, title)),
      h('td', { class: 'place' }, place),
      h('td', { class: 'number' }, duration(ms)),
      h('td', {}, bar(ms, longest))
    )
  );
}

function answerTimes(steps) {
  const byAction = new Map();
  for (const step of steps) {
    if (step.answer_ms === undefined) continue;
    byAction.set(step.action, [...(byAction.get(step.action) ?? []), step.answer_ms]);
  }
  const rows = [...byAction].map(([action, times]) => {
    times.sort((a, b) => a - b);
    return { action, number: times.length, median: times[times.length >> 1], most: times.at(-1) };
  });
  return rows.sort((a, b) => b.most - a.most);
}

/** The durations; `open(test, step)` shows one of them. */
export function durationsView(run, open) {
  const by = (a, b) => b.ms - a.ms;
  const tests = [...run.tests].sort(by).slice(0, mostSteps);
  const steps = [...run.steps].sort(by).slice(0, mostSteps);
  const answers = answerTimes(run.steps);
  const cells = ({ action, number, median, most }) =>
    h(
      'tr',
      {},
      h('td', {}, action),
      h('td', { class: 'number' }, String(number)),
      h('td', { class: 'number' }, duration(median)),
      h('td', { class: 'number' }, duration(most)),
      h('td', {}, bar(most, answers[0].most))
    );
  const testRow = (test) => ({ ...test, place: `${test.file}:${test.line}`, target: [test, null] });
  const stepRow = (step) => ({
    ...step,
    title: step.source,
    place: `${step.file}:${step.line}`,
    target: [step.test, step],
  });
  return [
    h('h2', {}, 'Durations'),
    h('h3', {}, 'The slowest tests'),
    table(['Test', 'Place', 'Time', ''], slowest(tests.map(testRow), open), wide),
    h('h3', {}, 'The slowest steps'),
    table(['Step', 'Place', 'Time', ''], slowest(steps.map(stepRow), open), wide),
    h('h3', {}, 'Times to the answer'),
    table(['Action', 'Answers', 'Median', 'Slowest', ''], answers.map(cells), wide),
  ];
}
