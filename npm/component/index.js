// <corvis-voice>: a field for phrases on development pages, with the page's last answers and the numbers of its items.
// Its contents are in a shadow tree, so they are not among the page's items.
import { template } from './template.js';

const installed = Symbol.for('corvis.voiceinteraction.simulator');
const shownAnswers = 5;
const settleTime = 150;

/** Describes an event in one line: the phrase, the action and the answer. */
function lineOf({ said, action, data, answer, answer_ms: time, message, exception }) {
  if (message) return `${said}: ${message}`;
  const thrown = exception ? `, the callback threw ${exception}` : '';
  return `${said} → ${action}${data ? ` ${data}` : ''} → ${answer}${thrown} (${time.toFixed(1)} ms)`;
}

/** Makes the box of an item with its number; items without a size get only a label. */
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

// Allows importing the file without HTMLElement, for example in Node.
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
    // Typing in the field must not trigger the page's key handlers.
    for (const kind of ['keydown', 'keyup', 'keypress']) {
      this.#root.addEventListener(kind, (event) => event.stopPropagation());
    }
  }

  #part(selector) {
    return this.#root.querySelector(selector);
  }

  /** The TV that the phrases are said to; by default the one installed in the window. */
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
    // Items in frames are not drawn: their boxes are relative to the frame, whose position is unknown.
    const boxes = items.map((item, number) => (item.iframe ? undefined : boxOf(item, number)));
    drawn.replaceChildren(...boxes.filter(Boolean));
  }
}

if (globalThis.customElements && !customElements.get('corvis-voice')) {
  customElements.define('corvis-voice', CorvisVoice);
}
