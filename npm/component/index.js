// <corvis-voice>: a field for development pages in which one says something to the page, with its last answers, and
// the numbers of what can be selected. It is in a shadow tree, so it is none of the page's items.
import { template } from './template.js';

const installed = Symbol.for('corvis.voiceinteraction.simulator');
const shownAnswers = 5;
const settleTime = 150;

/** One line for an event: what was said, what it became, what came back. */
function lineOf({ said, action, data, answer, answer_ms: time, message, exception }) {
  if (message) return `${said}: ${message}`;
  const thrown = exception ? `, the callback threw ${exception}` : '';
  return `${said} → ${action}${data ? ` ${data}` : ''} → ${answer}${thrown} (${time.toFixed(1)} ms)`;
}

/** The box of an item with its number, as far as the page's answer says where it is. */
function boxOf(item, number) {
  const box = document.createElement('div');
  const [left, top] = [item.x ?? item.positionX, item.y ?? item.positionY];
  Object.assign(box.style, {
    left: `${left}px`,
    top: `${top}px`,
    width: `${item.w}px`,
    height: `${item.h}px`,
  });
  box.appendChild(document.createElement('span')).textContent = item.id ?? number;
  return box;
}

// Importing it where there are no elements, as in Node, does no harm.
const Element = globalThis.HTMLElement ?? class {};

export class CorvisVoice extends Element {
  #root;
  #tv;
  #stopListening = () => {};
  #redrawing;
  #redraw = () => {
    clearTimeout(this.#redrawing);
    this.#redrawing = setTimeout(() => this.#drawNumbers(), settleTime);
  };

  constructor() {
    super();
    this.#root = this.attachShadow({ mode: 'open' });
    this.#root.innerHTML = template;
    this.#part('form').addEventListener('submit', (event) => {
      event.preventDefault();
      void this.#say();
    });
    this.#part('#phrase').addEventListener('focus', () => this.#suggest());
    this.#part('#toggle').addEventListener('click', () => (this.numbers = !this.numbers));
    // What is typed is not for the page's own keys.
    for (const kind of ['keydown', 'keyup', 'keypress']) {
      this.#root.addEventListener(kind, (event) => event.stopPropagation());
    }
  }

  #part(selector) {
    return this.#root.querySelector(selector);
  }

  /** The TV that is spoken to: the one installed in the window unless another is set. */
  get tv() {
    return this.#tv ?? window[installed];
  }

  set tv(tv) {
    this.#tv = tv;
    if (this.isConnected) this.connectedCallback();
  }

  get numbers() {
    return this.#part('#toggle').getAttribute('aria-pressed') === 'true';
  }

  set numbers(isShown) {
    this.#part('#toggle').setAttribute('aria-pressed', String(Boolean(isShown)));
    void this.#drawNumbers();
  }

  connectedCallback() {
    this.#stopListening();
    this.#stopListening = this.tv?.onEvent((event) => this.#show(event)) ?? (() => {});
    for (const kind of ['scroll', 'resize']) window.addEventListener(kind, this.#redraw, true);
  }

  disconnectedCallback() {
    this.#stopListening();
    clearTimeout(this.#redrawing);
    for (const kind of ['scroll', 'resize']) window.removeEventListener(kind, this.#redraw, true);
  }

  async #say() {
    const field = this.#part('#phrase');
    const phrase = field.value.trim();
    if (phrase === '') return;
    if (!this.tv) return this.#addLine('No TV is installed in this page; call install(window) first.', true);
    field.value = '';
    await this.tv.say(phrase);
  }

  #show(event) {
    if (event.event !== 'step' || event.statement === 'items') return;
    if (event.statement === 'restart')
      this.#addLine('The voice service has restarted.', event.status === 'failed');
    else this.#addLine(lineOf(event), event.status === 'failed');
    this.#redraw();
  }

  #addLine(text, isFailure) {
    const answers = this.#part('#answers');
    const line = answers.appendChild(document.createElement('p'));
    line.textContent = text;
    line.classList.toggle('failed', isFailure);
    while (answers.children.length > shownAnswers) answers.firstChild.remove();
    line.scrollIntoView?.({ block: 'nearest' });
  }

  #suggest() {
    const options = (this.tv?.phrases() ?? []).map((phrase) => {
      const option = document.createElement('option');
      option.value = phrase;
      return option;
    });
    this.#part('#phrases').replaceChildren(...options);
  }

  async #drawNumbers() {
    const drawn = this.#part('#numbers');
    const items = this.numbers && this.tv ? await this.tv.items().catch(() => []) : [];
    // Where a frame stands, its items' own boxes don't say.
    const boxes = items.map((item, number) => (item.iframe ? undefined : boxOf(item, number)));
    drawn.replaceChildren(...boxes.filter(Boolean));
  }
}

if (globalThis.customElements && !customElements.get('corvis-voice')) {
  customElements.define('corvis-voice', CorvisVoice);
}
