// Draws what is known about one step.
import { count, duration, h, mark, table } from './elements.js';
import { itemTable, pagePictures } from './page_pictures.js';
import { failingPart } from './run.js';

function sourceLine(step) {
  const parts = step.status === 'failed' ? failingPart(step) : [step.source];
  const [head, failing, tail] = parts;
  return h(
    'pre',
    { class: 'source' },
    h('span', { class: 'line-number' }, `${step.file}:${step.line}`),
    h('code', {}, head, failing && h('mark', {}, failing), tail)
  );
}

function failure(step) {
  if (step.status !== 'failed') return null;
  const compared = step.expected && [
    h('dt', {}, 'Expected'),
    h('dd', { class: 'expected' }, h('code', {}, step.expected)),
    h('dt', {}, 'Actual'),
    h('dd', { class: 'actual' }, h('code', {}, step.actual)),
  ];
  return h(
    'div',
    { class: 'failure' },
    step.message && h('p', {}, step.message),
    compared && h('dl', { class: 'facts' }, compared)
  );
}

// What was said before a step that says nothing itself, such as an expectation.
function lastSaid(step) {
  const earlier = step.test.steps.slice(0, step.index).reverse();
  const said = step.said === undefined && earlier.find((other) => other.said !== undefined);
  return said && `${said.said} → ${said.answer ?? 'no answer'}`;
}

function facts(step) {
  const answered = step.answer !== undefined;
  const rows = [
    ['Said', step.said],
    ['After', lastSaid(step)],
    ['Action', step.action],
    ['Data', step.data],
    ['Answer', answered ? step.answer : step.action && 'none'],
    [
      'Answer time',
      answered && duration(step.answer_ms) + (step.pieces > 1 ? `, ${count(step.pieces, 'piece')}` : ''),
    ],
    ['Step time', step.status !== 'skipped' && duration(step.ms)],
    ['Screenshot', step.screenshot],
  ];
  const shown = rows.filter(([, value]) => value);
  return h(
    'dl',
    { class: 'facts' },
    shown.map(([name, value]) => [h('dt', {}, name), h('dd', {}, value)])
  );
}

// Hides the boxes of the items, and shows them again.
function numbersButton() {
  const { classList } = document.body;
  const button = h(
    'button',
    { class: 'chip numbers', 'aria-pressed': String(!classList.contains('bare')) },
    'numbers'
  );
  button.addEventListener('click', () =>
    button.setAttribute('aria-pressed', String(!classList.toggle('bare')))
  );
  return button;
}

function section(title, ...content) {
  return h('section', {}, h('h4', {}, title), content);
}

function consoleLines(step) {
  const lines =
    step.lines.length > 0
      ? step.lines.map(({ level, text }) => [level, text])
      : step.failureLines.map((line) => [line.split(':')[0], line.slice(line.indexOf(':') + 2)]);
  if (lines.length === 0) return null;
  const row = ([level, text]) =>
    h('li', { class: level }, h('span', { class: 'level' }, level), h('span', {}, text));
  return section('Console', h('ul', { class: 'console' }, lines.map(row)));
}

// The address without the origin of a folder's own server, which differs in each run.
function shortAddress(url) {
  return url.replace(/^http:\/\/[\w-]+\.localhost:\d+(?=\/)/, '');
}

function requests(step) {
  if (step.requests.length === 0) return null;
  const hasStatus = step.requests.some(({ status }) => status > 0);
  const heads = ['Kind', 'Address', hasStatus && 'Status', 'Time'].filter(Boolean);
  const row = ({ kind, url, status, ms }) =>
    h(
      'tr',
      { class: status >= 400 ? 'bad' : '' },
      h('td', {}, kind),
      h('td', { class: 'url', title: url }, shortAddress(url)),
      hasStatus && h('td', { class: 'number' }, status || '–'),
      h('td', { class: 'number' }, duration(ms))
    );
  return section('Network', table(heads, step.requests.map(row)));
}

/** The details of a step, under a heading. */
export function stepDetails(step) {
  const pictures = pagePictures(step);
  const items = itemTable(step);
  return [
    h('h3', { tabindex: '-1' }, mark(step.status), step.source),
    step.notes.map((note) => h('p', { class: 'note' }, note)),
    sourceLine(step),
    failure(step),
    facts(step),
    pictures && section('The page', numbersButton(), pictures),
    consoleLines(step),
    items && section('Items', h('div', { class: 'scroll' }, items)),
    requests(step),
  ];
}
