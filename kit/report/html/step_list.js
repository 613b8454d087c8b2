// The timeline of a test: its steps under each other, each with a bar from its beginning to its end.
import { duration, h, mark } from './elements.js';
import { stepMatches } from './run.js';

// What a step's row shows under its line: what came back.
function result(step) {
  if (step.status === 'failed') return step.message || `${step.actual} instead of ${step.expected}`;
  return step.action ? `${step.action} → ${step.answer ?? 'no answer'}` : '';
}

function timeBar(step, total) {
  const share = (ms) => `${(100 * ms) / (total || 1)}%`;
  const place = { '--begin': share(step.begin), '--share': share(step.ms) };
  return h('span', { class: 'span', 'aria-hidden': 'true' }, h('span', place));
}

function entry(step, chosen, filter, choose) {
  const isMatch = stepMatches(step, filter);
  const isFirst = step.attempt > 1 && step.test.steps[step.index - 1].attempt !== step.attempt;
  const note = step.notes.map((text) => h('p', { class: 'note' }, text));
  const button = h(
    'button',
    {
      class: `step ${step.status} ${isMatch ? '' : 'aside'}`,
      'aria-current': step === chosen ? 'step' : false,
      onclick: () => choose(step),
    },
    mark(step.status),
    h('span', { class: 'source-text' }, step.source),
    h('span', { class: 'time' }, step.status === 'skipped' ? '' : duration(step.ms)),
    h('span', { class: 'result' }, result(step)),
    timeBar(step, step.test.ms)
  );
  return h('li', {}, isFirst && h('p', { class: 'attempt' }, `Attempt ${step.attempt}`), note, button);
}

/** The steps of a test; those that the filter does not mean are dimmed. */
export function stepList(test, chosen, filter, choose) {
  const rows = test.steps.map((step) => entry(step, chosen, filter, choose));
  return h('ol', { class: 'steps', 'data-list': 'steps' }, rows);
}
