// The viewer of a report: reads the run from the document, draws it, and follows clicks, keys and the address.
import { coverageView } from './coverage_view.js';
import { durationsView } from './durations_view.js';
import { count, duration, h, mark } from './elements.js';
import { printView } from './print_view.js';
import { readRun, statuses, testMatches } from './run.js';
import { stepDetails } from './step_details.js';
import { stepList } from './step_list.js';
import { filterFields, testList } from './test_list.js';

const dataOf = (id) => JSON.parse(document.getElementById(id).textContent);
const run = readRun(dataOf('events'));
const callbacks = dataOf('callbacks');

const tabs = ['tests', 'coverage', 'durations'];
const state = { tab: 'tests', test: run.tests[0], step: null, filter: { status: '', text: '', action: '' } };

const parts = {
  nav: h('nav', { 'aria-label': 'Report' }),
  fields: h('div'),
  list: h('div', { class: 'list' }),
  test: h('section', { class: 'chosen-test', 'aria-label': 'Test' }),
  details: h('section', { class: 'details', 'aria-label': 'Step' }),
  page: h('div', { class: 'wide' }),
  columns: h('div', { class: 'columns' }),
};

// The step to look at first: the one that failed, or the last that ran.
function firstStep(test) {
  const failed = test.steps.find((step) => step.status === 'failed');
  return failed ?? test.steps.filter((step) => step.status !== 'skipped').at(-1) ?? test.steps[0];
}

function numberOf(status) {
  return run.tests.filter((test) => test.status === status).length;
}

function verdict() {
  if (run.abort) return 'failed';
  return statuses.find((status) => numberOf(status) > 0) ?? 'skipped';
}

function summary() {
  const numbers = statuses
    .filter((status) => numberOf(status) > 0)
    .map((status) => `${numberOf(status)} ${status}`);
  return numbers.join(', ') || 'no tests';
}

function header() {
  const facts = [
    count(run.tests.length, 'test'),
    count(run.steps.length, 'step'),
    run.end && duration(run.end.ms),
    run.coverage && `voice coverage ${run.coverage.percent} %`,
  ];
  const shares = statuses.map((status) => h('span', { class: status, '--share': String(numberOf(status)) }));
  return h(
    'header',
    {},
    h(
      'div',
      { class: 'title' },
      h('h1', {}, mark(verdict()), summary()),
      h('p', {}, facts.filter(Boolean).join(' · '))
    ),
    parts.nav,
    h('div', { class: 'strip', 'aria-hidden': 'true' }, shares),
    run.abort && h('p', { class: 'abort', role: 'alert' }, run.abort)
  );
}

function drawNav() {
  const tab = (name) =>
    h(
      'button',
      { 'aria-current': state.tab === name ? 'page' : false, onclick: () => go({ tab: name }) },
      name[0].toUpperCase() + name.slice(1)
    );
  parts.nav.replaceChildren(...tabs.map(tab));
}

function drawList() {
  parts.list.replaceChildren(...testList(run, state.filter, state.test, (test) => go({ test })));
}

function drawTest() {
  const { test } = state;
  if (!test) return parts.test.replaceChildren(h('p', {}, 'No test was run.'));
  parts.test.replaceChildren(
    h('h2', {}, mark(test.status), test.title),
    h(
      'p',
      { class: 'place' },
      `${test.file}:${test.line} · ${count(test.steps.length, 'step')} · ${duration(test.ms)}`
    ),
    stepList(test, state.step, state.filter, (step) => go({ step }))
  );
}

function drawStep() {
  parts.details.replaceChildren(
    ...(state.step ? stepDetails(state.step).flat(Infinity).filter(Boolean) : [])
  );
  const rows = parts.test.querySelectorAll('.step');
  rows.forEach((row, index) => {
    if (index === state.step?.index) row.setAttribute('aria-current', 'step');
    else row.removeAttribute('aria-current');
  });
}

function drawPage() {
  const isList = state.tab === 'tests';
  parts.columns.hidden = !isList;
  parts.page.hidden = isList;
  if (state.tab === 'coverage' && run.coverage)
    parts.page.replaceChildren(...coverageView(run, callbacks, chooseAction));
  if (state.tab === 'durations')
    parts.page.replaceChildren(...durationsView(run, (test, step) => go({ tab: 'tests', test, step })));
}

function changeFilter(change) {
  const { filter } = state;
  Object.assign(filter, change);
  if ('status' in change || 'action' in change) drawFields();
  const shown = run.tests.filter((test) => testMatches(test, filter));
  if (shown.length > 0 && !shown.includes(state.test)) return go({ test: shown[0] });
  drawList();
  drawTest();
}

function drawFields() {
  const active = document.activeElement;
  const label = parts.fields.contains(active) ? active.textContent : null;
  parts.fields.replaceChildren(filterFields(run, state.filter, changeFilter));
  if (label === null) return;
  [...parts.fields.querySelectorAll('button, select')].find((field) => field.textContent === label)?.focus();
}

function chooseAction(action) {
  changeFilter({ action, status: '', text: '' });
  go({ tab: 'tests', step: state.test.steps.find((step) => step.action === action) });
}

/** Shows a tab, test or step, and notes it in the address. */
function go(change) {
  const isOther = 'test' in change && change.test !== state.test;
  Object.assign(state, change);
  if (state.test && (('test' in change && !change.step) || !state.step)) state.step = firstStep(state.test);
  const focused = focusedPlace();
  drawNav();
  drawPage();
  drawList();
  if (isOther || !('step' in change) || change.test) drawTest();
  drawStep();
  focused();
  const place =
    state.tab === 'tests' && state.test
      ? `test-${state.test.id + 1}-step-${state.step.index + 1}`
      : state.tab;
  if (location.hash !== `#${place}`) history.replaceState(null, '', `#${place}`);
}

// Remembers which entry of a list or tab has the focus; the returned function gives it back after drawing.
function focusedPlace() {
  const { activeElement } = document;
  const area = [parts.nav, parts.list, parts.test].find((part) => part.contains(activeElement));
  if (!area) return () => {};
  return () => area.querySelector('[aria-current]')?.focus();
}

function followAddress() {
  const place = location.hash.slice(1);
  const numbers = /^test-(\d+)-step-(\d+)$/.exec(place);
  const test = numbers && run.tests.find(({ id }) => id === numbers[1] - 1);
  const step = test?.steps[numbers[2] - 1];
  go(test ? { tab: 'tests', test, step } : { tab: tabs.includes(place) ? place : 'tests', test: state.test });
}

function moveFocus(by) {
  const list = document.activeElement.closest('[data-list]') ?? parts.test.querySelector('[data-list]');
  const entries = [...list.querySelectorAll('button')];
  const current = entries.indexOf(document.activeElement.closest('button'));
  const from = current >= 0 ? current : entries.findIndex((entry) => entry.hasAttribute('aria-current'));
  const next = entries[Math.min(Math.max(from + by, 0), entries.length - 1)];
  next.focus();
  next.click();
}

function nextFailure() {
  const failed = run.tests.filter((test) => test.status === 'failed');
  const next = failed[(failed.indexOf(state.test) + 1) % failed.length];
  if (next) go({ tab: 'tests', test: next });
}

const keys = new Map([
  ['ArrowDown', () => moveFocus(1)],
  ['ArrowUp', () => moveFocus(-1)],
  ['ArrowLeft', () => parts.list.querySelector('[aria-current]')?.focus()],
  ['ArrowRight', () => parts.test.querySelector('[aria-current]')?.focus()],
  ['/', () => document.getElementById('search').focus()],
  ['f', nextFailure],
]);

function takeKey(event) {
  const isTyping = event.target.closest('input, select, dialog');
  if (isTyping || event.ctrlKey || event.altKey || event.metaKey || !keys.has(event.key)) return;
  if (state.tab !== 'tests' && event.key !== 'f') return;
  event.preventDefault();
  keys.get(event.key)();
}

function start() {
  document.title = `${summary()} – voice report`;
  const side = h('aside', { 'aria-label': 'Tests' }, parts.fields, parts.list);
  const hint = h('p', { class: 'keys' }, '↑ ↓ steps or tests · ← → tests, steps · / search · f next failure');
  parts.columns.append(side, parts.test, parts.details);
  document.body.append(header(), h('main', {}, parts.columns, parts.page), h('footer', {}, hint));
  drawFields();
  followAddress();
  addEventListener('hashchange', followAddress);
  addEventListener('keydown', takeKey);
  addEventListener('beforeprint', () => document.body.append(printView(run.tests)));
  addEventListener('afterprint', () => document.querySelector('.printed')?.remove());
}

start();
