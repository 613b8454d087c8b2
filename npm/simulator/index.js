// A TV's voice control in a page: installs corvis.voiceinteraction and acts as the TV's voice service.
import { startMachine } from './machine.js';
import { attach, detach } from './page.js';
import { inLaterTurn } from './turns.js';

export { prepare } from './machine.js';

const defaults = {
  appId: 'com.example.app',
  privileges: ['microphone', 'voicecontrol'],
  language: 'en',
  console: 'none',
};

// Limits the memory of a page that stays open all day.
const mostEvents = 10_000;

// The key under which other code, such as the component, finds the TV of a window. It does not clash with page names.
const installed = Symbol.for('corvis.voiceinteraction.simulator');

/** The TV that is installed in a window, or undefined. */
export const tvOf = (window) => window[installed];

function checkedOptions(options) {
  const unknown = Object.keys(options).find((name) => !(name in defaults));
  if (unknown)
    throw new TypeError(`Unknown option "${unknown}"; known are ${Object.keys(defaults).join(', ')}.`);
  const all = { ...defaults, ...options };
  if (!['none', 'page', 'all'].includes(all.console)) {
    throw new TypeError(`Expected the console to be none, page or all, not "${all.console}".`);
  }
  if (all.language !== 'en' && typeof all.language?.phrases !== 'string') {
    throw new TypeError(
      `Expected the language to be "en" or what corvis-voiceinteraction/languages has, not "${all.language}".`
    );
  }
  return all;
}

class Tv {
  #events = [];
  #listeners = new Set();
  #machine;
  #window;
  #path;
  #isDelivering = false;

  constructor(window, options) {
    this.#window = window;
    let deliver = () => {};
    this.#machine = startMachine({
      deliver: (text) => deliver(text),
      event: (text) => this.#take(JSON.parse(text)),
    });
    this.#path = this.#machine.text('start', options.appId, JSON.stringify(options.privileges));
    this.#speak(options.language);
    this.#machine('open_page');
    deliver = attach(window, this.#path, {
      machine: this.#calls(),
      print: (level, text, source) => this.#print(options.console, level, text, source),
      isWatching: options.console !== 'none',
    });
  }

  /** English is built in, and read when something is first said. */
  #speak(language) {
    const problem = language === 'en' ? '' : this.#machine.text('speak', language.phrases);
    if (problem) throw new TypeError(problem);
  }

  /**
   * Handles the page's synchronous calls. Messages that they send to the voice service are delivered in a later turn.
   */
  #calls() {
    return {
      text: (...args) => {
        const reply = this.#machine.text(...args);
        this.#deliverLater();
        return reply;
      },
    };
  }

  #deliverLater() {
    if (this.#isDelivering) return;
    this.#isDelivering = true;
    void inLaterTurn(() => {
      this.#isDelivering = false;
      this.#machine('deliver');
    });
  }

  #print(kept, level, text, source) {
    this.#machine('console', level, text, source);
    if (kept === 'all' || source === 'page') this.#take({ event: 'console', level, text, source });
  }

  #take(event) {
    this.#events.push(event);
    if (this.#events.length > mostEvents) this.#events.shift();
    for (const listener of this.#listeners) listener(event);
  }

  /** Resolves with the step's event, which is the last one that the step emits. */
  #step(...args) {
    return inLaterTurn(() => {
      this.#machine(...args);
      return this.#events.at(-1);
    });
  }

  say(text) {
    return this.#step('say', String(text));
  }

  send(action, data) {
    if (typeof data !== 'object' || data === null) {
      return this.#step('send', data === undefined ? action : `${action} ${data}`);
    }
    return this.#step('send_entries', action, JSON.stringify(Object.entries(data).flat().map(String)));
  }

  async items(title = '') {
    const event = await this.#step('items', title);
    if (event.message) throw new Error(event.message);
    const items = JSON.parse(event.answer);
    return event.numbers.map((number) => items[number]);
  }

  restartService() {
    return this.#step('restart');
  }

  setPrivileges(names) {
    this.#machine('set_privileges', JSON.stringify(names));
  }

  phrases() {
    return JSON.parse(this.#machine.text('phrases'));
  }

  isListening() {
    return this.#machine('is_listening') === 1;
  }

  events() {
    return this.#events.slice();
  }

  onEvent(listener) {
    this.#listeners.add(listener);
    return () => this.#listeners.delete(listener);
  }

  uninstall() {
    if (tvOf(this.#window) !== this) return;
    this.#machine('close_page');
    delete this.#window[installed];
    detach(this.#window, this.#path);
  }
}

/** Installs a TV in a window and replaces an installed one. */
export function install(window = globalThis.window ?? globalThis, options = {}) {
  const checked = checkedOptions(options);
  tvOf(window)?.uninstall();
  const tv = new Tv(window, checked);
  Object.defineProperty(window, installed, { value: tv, configurable: true });
  return tv;
}
