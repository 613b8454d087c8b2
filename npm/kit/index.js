// The desktop kit for tests in Node: runs an application in the kit's web engine, with `corvis run --json`.
import { spawn } from 'node:child_process';
import { createInterface } from 'node:readline';

// How long the kit may take to exit by itself, in milliseconds; it ends its processes within two seconds.
const grace = 5_000;

/** The running kits, which end with this process. */
const running = new Set();
process.on('exit', () => running.forEach((child) => child.kill()));

const defaults = { command: 'corvis', args: [], env: {}, cwd: undefined };

function checkedOptions(options) {
  const unknown = Object.keys(options).find((name) => !(name in defaults));
  if (unknown)
    throw new TypeError(`Unknown option "${unknown}"; known are ${Object.keys(defaults).join(', ')}.`);
  return { ...defaults, ...options };
}

function start(app, { command, args, env, cwd }) {
  const child = spawn(command, ['run', '--json', '--headless', ...args, '--', app], {
    cwd,
    env: { ...process.env, ...env },
  });
  // Ignored: the exit of the kit reports why it no longer accepts commands.
  child.stdin.on('error', () => {});
  running.add(child);
  return child;
}

/** The items in an event, in the form of the simulator's. */
function itemsOf({ answer, numbers }) {
  const items = JSON.parse(answer);
  return numbers.map((number) => items[number]);
}

class Kit {
  #child;
  #events = [];
  #listeners = new Set();
  #waiting = new Map();
  #lastId = 0;
  #last;
  #reason = '';
  #standardError = '';
  #exited;

  constructor(child) {
    this.#child = child;
    child.stderr.setEncoding('utf8').on('data', (text) => (this.#standardError += text));
    createInterface({ input: child.stdout }).on('line', (line) => this.#take(JSON.parse(line)));
    this.#exited = new Promise((resolve) => {
      child.on('error', (error) => resolve(this.#end(`corvis can't be started: ${error.message}.`)));
      child.on('close', () => resolve(this.#end('The run has ended.')));
    });
  }

  #take(event) {
    this.#events.push(event);
    if (event.event === 'abort') this.#reason = event.message;
    for (const listener of this.#listeners) listener(event);
    if (event.event === 'step' || event.event === 'error') this.#settle(event);
  }

  #settle(event) {
    const { resolve, reject } = this.#waiting.get(event.id);
    this.#waiting.delete(event.id);
    const { message, expected, actual } = event;
    const problem = message ?? (expected && `Expected ${expected}, received ${actual}.`);
    if (problem) reject(Object.assign(new Error(problem), { event }));
    else resolve(event);
  }

  #end(sentence) {
    running.delete(this.#child);
    this.#reason ||= this.#standardError.trim() || sentence;
    for (const { reject } of this.#waiting.values()) reject(new Error(this.#reason));
    this.#waiting.clear();
  }

  /** Resolves with the command's event. */
  #send(command, members = {}) {
    if (!running.has(this.#child)) return Promise.reject(new Error(this.#reason));
    const id = ++this.#lastId;
    this.#child.stdin.write(`${JSON.stringify({ id, command, ...members })}\n`);
    return new Promise((resolve, reject) => this.#waiting.set(id, { resolve, reject }));
  }

  async #speak(command, members) {
    this.#last = await this.#send(command, members);
    return this.#last;
  }

  get last() {
    if (!this.#last) throw new Error('Nothing has been said yet; say something first.');
    return this.#last;
  }

  get answer() {
    return this.last.answer;
  }

  say(text) {
    return this.#speak('say', { text });
  }

  send(action, data) {
    return this.#speak('send', { action, data });
  }

  press(key, times = 1) {
    return this.#send('press', { key, times });
  }

  type(text) {
    return this.#send('type', { text });
  }

  async items(title) {
    return itemsOf(await this.#send('items', { title }));
  }

  async show(selector, matcher) {
    return (await this.#send('show', { selector, matcher })).value;
  }

  async value(expression, matcher) {
    return (await this.#send('value', { expression, matcher })).value;
  }

  screenshot(file, { items = false } = {}) {
    return this.#send('screenshot', { file, items });
  }

  open(url) {
    return this.#send('open', { url });
  }

  reload() {
    return this.#send('reload');
  }

  restartService() {
    return this.#send('restart');
  }

  do(statement) {
    return this.#send('do', { statement });
  }

  events() {
    return this.#events.slice();
  }

  onEvent(listener) {
    this.#listeners.add(listener);
    return () => this.#listeners.delete(listener);
  }

  async close() {
    this.#child.stdin.end();
    const timer = setTimeout(() => this.#child.kill('SIGKILL'), grace);
    await this.#exited;
    clearTimeout(timer);
  }

  // Engines without this symbol have no `await using`, either.
  async [Symbol.asyncDispose ?? Symbol('asyncDispose')]() {
    await this.close();
  }

  /** Resolves when the page is loaded; rejects when it can't be. */
  async begin() {
    await this.#send('value', { expression: 'null' });
    return this;
  }
}

/**
 * Runs an application: a folder with an index.html, an HTML file or a URL. All commands wait for their answer; a
 * failure is an Error with the kit's message.
 */
export async function launch(app, options = {}) {
  const kit = new Kit(start(app, checkedOptions(options)));
  try {
    return await kit.begin();
  } catch (error) {
    await kit.close();
    throw error;
  }
}
