// Builds the tests and steps of a run from its events.

/** What the tests can be filtered by, the most urgent first. */
export const statuses = ['failed', 'flaky', 'passed', 'skipped'];

class RunReader {
  constructor() {
    this.run = { tests: [], coverage: null, end: null, abort: null };
    this.beginScript('');
  }

  beginScript(file) {
    this.file = file;
    this.view = null;
    this.begin('', 1);
  }

  begin(name, line) {
    this.test = { name, file: this.file, line, status: 'skipped', attempts: 1, steps: [] };
    this.run.tests.push(this.test);
    this.beginAttempt();
  }

  beginAttempt() {
    this.step = null;
    this.pending = { notes: [], lines: [], requests: [] };
  }

  addStep(event) {
    const step = { ...event, ...this.pending, failureLines: event.console ?? [] };
    step.before = this.view;
    step.after = this.view;
    step.index = this.test.steps.length;
    step.test = this.test;
    this.test.steps.push(step);
    this.beginAttempt();
    this.step = step;
  }

  addView(event) {
    this.view = event;
    if (this.step) this.step.after = event;
  }

  addLine(line) {
    if (line.source !== 'api') this.pending.lines.push(line);
  }
}

const readers = new Map([
  ['script', (reader, event) => reader.beginScript(event.file)],
  [
    'test',
    (reader, event) => (event.attempt > 1 ? reader.beginAttempt() : reader.begin(event.text, event.line)),
  ],
  ['note', (reader, event) => reader.pending.notes.push(event.text)],
  ['step', (reader, event) => reader.addStep(event)],
  ['test-end', ({ test }, { status, attempts }) => Object.assign(test, { status, attempts })],
  ['console', (reader, event) => reader.addLine(event)],
  ['request', (reader, event) => reader.pending.requests.push(event)],
  ['crash', (reader) => reader.addLine({ level: 'error', text: 'The page crashed.' })],
  ['closed', (reader) => reader.addLine({ level: 'info', text: 'The application ended.' })],
  ['view', (reader, event) => reader.addView(event)],
  ['coverage', ({ run }, event) => (run.coverage = event)],
  ['abort', ({ run }, event) => (run.abort = event.message)],
  ['end', ({ run }, event) => (run.end = event)],
]);

function complete(test, index) {
  test.id = index;
  test.ms = test.steps.reduce((sum, step) => sum + step.ms, 0);
  test.title = test.name || test.file;
  let begin = 0;
  for (const step of test.steps) {
    step.begin = begin;
    begin += step.ms;
  }
  return test;
}

/** The run with its tests, the failed ones first. */
export function readRun(events) {
  const reader = new RunReader();
  for (const event of events) readers.get(event.event)?.(reader, event);
  const { run } = reader;
  run.tests = run.tests.filter((test) => test.steps.length > 0).map(complete);
  run.tests.sort((a, b) => statuses.indexOf(a.status) - statuses.indexOf(b.status) || a.id - b.id);
  run.steps = run.tests.flatMap((test) => test.steps);
  return run;
}

/** All texts of a test in which a filter searches. */
export function textOf(test) {
  test.text ??= [test.title, test.file]
    .concat(test.steps.flatMap((step) => [step.source, step.said, step.answer, step.message, step.actual]))
    .concat(test.steps.flatMap((step) => step.lines.map((line) => line.text)))
    .join('\n')
    .toLowerCase();
  return test.text;
}

export function stepMatches(step, filter) {
  if (filter.action && step.action !== filter.action) return false;
  const texts = [step.source, step.said, step.answer, step.message, step.actual];
  return !filter.text || texts.join('\n').toLowerCase().includes(filter.text);
}

export function testMatches(test, filter) {
  if (filter.status && test.status !== filter.status) return false;
  if (filter.action && !test.steps.some((step) => step.action === filter.action)) return false;
  return !filter.text || textOf(test).includes(filter.text);
}

/**
 * What changed between the items of two views, by their order: a list of { item, change }, where change is "appeared",
 * "vanished", "moved", "focused" or empty. Items are matched by title; of equal titles the first matches the first.
 */
export function compareItems(before, after) {
  const left = [...(before?.items ?? [])];
  const changes = (after?.items ?? []).map((item) => {
    const at = left.findIndex((other) => other.title === item.title);
    if (!before) return { item, change: '' };
    if (at < 0) return { item, change: 'appeared' };
    const [old] = left.splice(at, 1);
    const isMoved = old.x !== item.x || old.y !== item.y || old.number !== item.number;
    const isFocused = item.focused && !old.focused;
    return { item, old, change: isFocused ? 'focused' : isMoved ? 'moved' : '' };
  });
  return changes.concat(left.map((item) => ({ item, change: 'vanished' })));
}

/** Splits a failed step's line into [head, failing part, tail]: the matcher that failed, or else the statement. */
export function failingPart({ source, expected, statement }) {
  const part = [expected, statement && source.slice(source.indexOf(statement))].find(
    (text) => text && source.includes(text)
  );
  const at = part ? source.lastIndexOf(part) : 0;
  return [
    source.slice(0, at),
    source.slice(at, at + (part ?? source).length),
    source.slice(at + (part ?? source).length),
  ];
}
