// Makes elements. Texts become text nodes only, so that nothing from a run is read as markup.

const svgNamespace = 'http://www.w3.org/2000/svg';

function fill(element, attributes, children) {
  for (const [name, value] of Object.entries(attributes)) {
    if (name.startsWith('on')) {
      element.addEventListener(name.slice(2), value);
    } else if (name.startsWith('--')) {
      element.style.setProperty(name, value);
    } else if (value !== false && value != null) {
      element.setAttribute(name, value === true ? '' : value);
    }
  }
  element.append(...children.flat(Infinity).filter((child) => child != null && child !== false));
  return element;
}

/** An element; attributes `on…` are listeners, `--…` style properties; null and false children are left out. */
export function h(name, attributes = {}, ...children) {
  return fill(document.createElement(name), attributes, children);
}

export function svg(name, attributes = {}, ...children) {
  return fill(document.createElementNS(svgNamespace, name), attributes, children);
}

const marks = { passed: '✓', failed: '✗', skipped: '–', flaky: '↻' };

/** The mark of a status, which a screen reader reads as its name. */
export function mark(status) {
  return h(
    'span',
    { class: `mark ${status}` },
    h('span', { 'aria-hidden': 'true' }, marks[status] ?? '·'),
    h('span', { class: 'unseen' }, `${status}: `)
  );
}

export function duration(ms) {
  if (ms == null) return '';
  if (ms < 1) return `${ms.toFixed(2)} ms`;
  if (ms < 10) return `${ms.toFixed(1)} ms`;
  if (ms < 1000) return `${Math.round(ms)} ms`;
  return ms < 60_000
    ? `${(ms / 1000).toFixed(1)} s`
    : `${Math.floor(ms / 60_000)} min ${Math.round((ms % 60_000) / 1000)} s`;
}

/** A table with a row of heads. */
export function table(heads, rows, attributes = {}) {
  const head = heads.map((text) => h('th', { scope: 'col' }, text));
  return h('table', attributes, h('thead', {}, h('tr', {}, head)), h('tbody', {}, rows));
}

/** "1 step", "2 steps". */
export const count = (number, noun) => `${number} ${noun}${number === 1 ? '' : 's'}`;
