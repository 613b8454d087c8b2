// Draws the page before and after a step: its picture, with the items as boxes with numbers.
import { h, svg, table } from './elements.js';
import { compareItems } from './run.js';

let images;

/** The picture of a view as a data URL; undefined if the page could not be painted. */
function imageOf(view) {
  images ??= JSON.parse(document.getElementById('pictures').textContent);
  return Object.hasOwn(images, view.picture ?? '') ? images[view.picture] : undefined;
}

const isOnScreen = ({ width, height }) => width > 0 && height > 0;

function label(item, width, size) {
  const text = String(item.number);
  const box = size * (0.7 + 0.62 * text.length);
  const height = size * 1.35;
  const x = Math.min(Math.max(item.x - box / 2, 0), Math.max(0, width - box));
  const y = Math.max(item.y - height / 2, 0);
  return svg(
    'g',
    {},
    svg('rect', { x, y, width: box, height, rx: size * 0.25, class: 'label' }),
    svg('text', { x: x + box / 2, y: y + size * 1.03, 'font-size': size, 'text-anchor': 'middle' }, text)
  );
}

function boxes(view, changes) {
  const size = view.width / 72;
  const shown = changes.filter(({ item }) => isOnScreen(item));
  const group = ({ item, change }) =>
    svg(
      'g',
      { class: `item ${change} ${item.focused ? 'focus' : ''} ${item.visible === false ? 'hidden' : ''}` },
      svg('title', {}, `${item.number} ${item.title}`),
      svg('rect', { x: item.x, y: item.y, width: item.width, height: item.height, rx: size / 6 }),
      label(item, view.width, size)
    );
  const frame = { viewBox: `0 0 ${view.width} ${view.height}`, class: 'boxes', 'aria-hidden': 'true' };
  return svg('svg', frame, shown.map(group));
}

/** A view with a caption; a click enlarges it. */
function figure(caption, view, changes) {
  const image = imageOf(view);
  const size = { width: view.width, height: view.height };
  const picture = image
    ? h('img', { src: image, alt: `The page ${caption}`, decoding: 'async', ...size })
    : h('div', { class: 'unpainted', '--ratio': `${view.width} / ${view.height}` }, 'not painted');
  const frame = h('div', { class: 'screen' }, picture, boxes(view, changes));
  const enlarge = () => {
    const dialog = h('dialog', {
      class: 'enlarged',
      'aria-label': `The page ${caption}`,
      onclick: () => dialog.close(),
    });
    dialog.append(frame.cloneNode(true), h('button', { autofocus: true }, 'Close'));
    dialog.addEventListener('close', () => dialog.remove());
    document.body.append(dialog);
    dialog.showModal();
  };
  const button = h('button', { class: 'screen-button', title: 'Enlarge', onclick: enlarge }, frame);
  return h('figure', {}, h('figcaption', {}, caption), button);
}

/** The pictures of a step, or null if there is none. */
export function pagePictures({ before, after }) {
  if (!after) return null;
  const changes = compareItems(before, after);
  if (!before || before === after) {
    const caption = before ? 'before and after the step' : 'after the step';
    return h('div', { class: 'screens' }, figure(caption, after, changes));
  }
  const isThere = ({ change }) => change !== 'vanished';
  const then = changes
    .filter(({ change }) => change !== 'appeared')
    .map(({ item, old, change }) => ({ item: old ?? item, change: change === 'vanished' ? change : '' }));
  return h(
    'div',
    { class: 'screens two' },
    figure('before the step', before, then),
    figure('after the step', after, changes.filter(isThere))
  );
}

function row({ item, old, change }) {
  const moved = old && old.number !== item.number ? `moved from ${old.number}` : change;
  return h(
    'tr',
    { class: change },
    h('td', { class: 'number' }, change === 'vanished' ? '' : String(item.number)),
    h('td', {}, item.title),
    h('td', { class: 'number' }, isOnScreen(item) && `${item.x}, ${item.y}`),
    h('td', { class: 'number' }, isOnScreen(item) ? `${item.width} × ${item.height}` : 'not on the screen'),
    h(
      'td',
      {},
      [
        moved,
        item.focused && change !== 'focused' && 'has focus',
        isOnScreen(item) && item.visible === false && 'not visible',
      ]
        .filter(Boolean)
        .join(', ')
    )
  );
}

/** The items after a step and what changed, as a table. */
export function itemTable({ before, after }) {
  if (!after || (after.items.length === 0 && !before?.items.length)) return null;
  const changes = compareItems(before, after);
  const rows = [...changes.filter(({ change }) => change), ...changes.filter(({ change }) => !change)].map(
    row
  );
  return table(['Number', 'Title', 'Position', 'Size', 'Change'], rows, { class: 'items' });
}
