// Voice control in Playwright's pages, for all engines: a fixture and matchers for its test runner, and a function for
// pages that a test opens itself.
import { readFileSync } from 'node:fs';
import { isDeepStrictEqual } from 'node:util';

const simulator = readFileSync(new URL('../simulator/script.js', import.meta.url), 'utf8');
const pollInterval = 20;

/** Runs in every page before its scripts. Frames get no voice control, as on a TV. */
const installing = (options) => `if (window === window.top) {
  const { install } = (function () { ${simulator}; return corvisSimulator; })();
  delete globalThis.corvisSimulator;
  install(window, ${JSON.stringify(options)});
}`;

/** Runs in the page: calls a method of its TV. */
function callTv([method, args]) {
  const tv = window[Symbol.for('corvis.voiceinteraction.simulator')];
  if (!tv) throw new Error('This page was loaded before voice control was installed; reload it.');
  return tv[method](...args);
}

/** Says phrases to a page and returns its answers. */
class Voice {
  #page;
  #timeout;
  #last;

  constructor(page, timeout) {
    this.#page = page;
    this.#timeout = timeout;
  }

  /** The event of the last phrase or command. */
  get last() {
    if (!this.#last) throw new Error('Nothing has been said yet; say something first.');
    return this.#last;
  }

  get answer() {
    return this.last.answer;
  }

  #call(method, ...args) {
    return this.#page.evaluate(callTv, [method, args]);
  }

  async #isListening() {
    try {
      return await this.#call('isListening');
    } catch (error) {
      // The page is navigating.
      if (/context was destroyed|navigat/i.test(error.message)) return false;
      throw error;
    }
  }

  async listening() {
    const deadline = Date.now() + this.#timeout;
    while (!(await this.#isListening())) {
      if (Date.now() > deadline)
        throw new Error(`The page has not called listen() within ${this.#timeout} ms.`);
      await new Promise((resolve) => setTimeout(resolve, pollInterval));
    }
  }

  async #speak(method, ...args) {
    await this.listening();
    this.#last = await this.#call(method, ...args);
    if (this.#last.message) throw new Error(this.#last.message);
    return this.#last;
  }

  say(text) {
    return this.#speak('say', text);
  }

  send(action, data) {
    return this.#speak('send', ...(data === undefined ? [action] : [action, data]));
  }

  async items(title) {
    await this.listening();
    return this.#call('items', title);
  }

  async item(title) {
    const items = await this.items(title);
    if (items.length === 1) return items[0];
    const all = items.length === 0 ? await this.items() : items;
    const names = all.map((item) => `"${item.title}"`).join(', ');
    throw new Error(
      `Expected one item with the title "${title}", found ${items.length}; there are ${names || 'none'}.`
    );
  }

  restartService() {
    return this.#call('restartService');
  }

  setPrivileges(names) {
    return this.#call('setPrivileges', names);
  }

  events() {
    return this.#call('events');
  }
}

/**
 * Adds a TV's voice control to the page, from its next document on, and returns the object to say phrases with.
 * `options` are those of the simulator, and `timeout`, the time to wait until the page listens, in milliseconds.
 */
export async function installVoice(page, { timeout = 20_000, ...options } = {}) {
  await page.addInitScript({ content: installing(options) });
  return new Voice(page, timeout);
}

/**
 * Fixtures for `test.extend`: `voice`, and the option `voiceOptions`. Automatic, so that the page has voice control
 * even if a hook that uses only `page` loads it.
 */
export const voiceFixtures = {
  voiceOptions: [{}, { option: true }],
  voice: [async ({ page, voiceOptions }, use) => use(await installVoice(page, voiceOptions)), { auto: true }],
};

/** Whether a text equals another, matches a regular expression, or is the JSON of a value. */
function matches(text, expected) {
  if (typeof expected === 'string') return text === expected;
  if (expected instanceof RegExp) return expected.test(text);
  try {
    return isDeepStrictEqual(JSON.parse(text), expected);
  } catch {
    return false;
  }
}

const shown = (value) => (value instanceof RegExp ? String(value) : JSON.stringify(value));

function verdict(matcher, pass, what, expected, actual) {
  return {
    pass,
    message: () => `${matcher.isNot ? 'Unexpected' : 'Expected'} ${what} ${expected}, received ${actual}`,
  };
}

/** Matchers for `expect.extend`. */
export const voiceMatchers = {
  /** Checks the last answer. */
  toAnswer(voice, expected) {
    const { answer, exception, said } = voice.last;
    const thrown = exception ? `; the callback threw ${exception}` : '';
    const what = `the answer to "${said}" to be`;
    return verdict(this, matches(answer, expected), what, shown(expected), shown(answer) + thrown);
  },

  /** Checks the action of the last phrase, and its data. */
  toSend(voice, action, data) {
    const { action: sent, data: sentData, said } = voice.last;
    const pass = sent === action && (data === undefined || matches(sentData, data));
    const expected = data === undefined ? action : `${action} ${shown(data)}`;
    return verdict(this, pass, `"${said}" to become`, expected, `${sent} ${shown(sentData)}`);
  },
};
