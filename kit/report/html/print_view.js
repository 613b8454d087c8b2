// The report on paper: every test with its steps, and the details of the failed ones.
import { count, duration, h, mark } from './elements.js';
import { stepDetails } from './step_details.js';

function stepLine(step) {
  const details = step.status === 'failed' && h('div', { class: 'details' }, stepDetails(step));
  return h(
    'li',
    { class: step.status },
    mark(step.status),
    h('code', {}, step.source),
    ' ',
    step.answer && h('span', { class: 'result' }, `→ ${step.answer} `),
    step.status !== 'skipped' && h('span', { class: 'time' }, duration(step.ms)),
    details
  );
}

function testBlock(test) {
  return h(
    'section',
    { class: 'printed-test' },
    h('h2', {}, mark(test.status), test.title),
    h(
      'p',
      { class: 'place' },
      `${test.file}:${test.line}, ${count(test.steps.length, 'step')}, ${duration(test.ms)}`
    ),
    h('ol', {}, test.steps.map(stepLine))
  );
}

/** What is printed instead of the screen's columns. */
export function printView(tests) {
  return h('div', { class: 'printed' }, tests.map(testBlock));
}
