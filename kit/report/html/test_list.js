// The list of tests, and the fields that filter it.
import { count, duration, h, mark } from './elements.js';
import { statuses, testMatches } from './run.js';

function statusButtons(run, filter, change) {
  const button = (status, text) =>
    h(
      'button',
      {
        class: `chip ${status}`,
        'aria-pressed': String(filter.status === status),
        onclick: () => change({ status }),
      },
      text
    );
  const number = (status) => run.tests.filter((test) => test.status === status).length;
  const present = statuses.filter((status) => number(status) > 0);
  return h(
    'div',
    { class: 'chips', role: 'group', 'aria-label': 'Status' },
    button('', `all ${run.tests.length}`),
    present.map((status) => button(status, `${number(status)} ${status}`))
  );
}

function actionField(run, filter, change) {
  const actions = [...new Set(run.steps.map((step) => step.action).filter(Boolean))].sort();
  const option = (action) =>
    h('option', { value: action, selected: filter.action === action }, action || 'every action');
  return h(
    'select',
    { 'aria-label': 'Action', onchange: (event) => change({ action: event.target.value }) },
    ['', ...actions].map(option)
  );
}

/** The fields; `change` receives what a filter changes. */
export function filterFields(run, filter, change) {
  const search = h('input', {
    type: 'search',
    id: 'search',
    placeholder: 'Search ( / )',
    'aria-label': 'Search in tests, steps, answers and console lines',
    value: filter.text,
    oninput: (event) => change({ text: event.target.value.toLowerCase() }),
  });
  return h(
    'div',
    { class: 'filter', role: 'search' },
    search,
    actionField(run, filter, change),
    statusButtons(run, filter, change)
  );
}

// A thin line of the steps' statuses, in their order.
function strip(test) {
  const number = (status) => test.steps.filter((step) => step.status === status).length;
  const part = (status) => h('span', { class: status, '--share': String(number(status)) });
  return h('span', { class: 'strip', 'aria-hidden': 'true' }, ['passed', 'failed', 'skipped'].map(part));
}

function entry(test, chosen, choose) {
  return h(
    'li',
    {},
    h(
      'button',
      { class: 'test', 'aria-current': test === chosen ? 'true' : false, onclick: () => choose(test) },
      mark(test.status),
      h('span', { class: 'name' }, test.title),
      h('span', { class: 'time' }, duration(test.ms)),
      h('span', { class: 'place' }, `${test.file}:${test.line}`),
      strip(test)
    )
  );
}

/** The tests that pass the filter, with a line that counts them. */
export function testList(run, filter, chosen, choose) {
  const shown = run.tests.filter((test) => testMatches(test, filter));
  const isAll = shown.length === run.tests.length;
  const line = isAll ? count(shown.length, 'test') : `${shown.length} of ${count(run.tests.length, 'test')}`;
  return [
    h('p', { class: 'shown', role: 'status' }, line),
    h(
      'ul',
      { class: 'tests', 'data-list': 'tests' },
      shown.map((test) => entry(test, chosen, choose))
    ),
  ];
}
