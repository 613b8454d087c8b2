// A reference implementation of the element map, to compare the script's with: no optimization, every path is built
// from the element upwards. The body of a function that runs inside a page and returns {layout, paths}.
const layout = [];
const paths = [];
let insideIframe = false;

/** The engine's own getter or method, which no name in the page hides. */
function own(prototype, name) {
  const { get, value } = Object.getOwnPropertyDescriptor(prototype, name);
  return (object, ...values) => (get ?? value).apply(object, values);
}
const typeOf = own(Node.prototype, 'nodeType');
const parentOf = own(Node.prototype, 'parentNode');
const childrenOf = own(Node.prototype, 'childNodes');
const textOf = own(Node.prototype, 'textContent');
const tagNameOf = own(Element.prototype, 'tagName');
const has = own(Element.prototype, 'hasAttribute');
const attributeOf = own(Element.prototype, 'getAttribute');
const elementsOf = own(Element.prototype, 'getElementsByTagName');
const boxOf = own(Element.prototype, 'getBoundingClientRect');
const styleOf = own(HTMLElement.prototype, 'style');
const activeElementOf = own(Document.prototype, 'activeElement');
const allOf = own(Document.prototype, 'getElementsByTagName');

function pathOf(element) {
  if (typeOf(element) !== 1) return '';
  const id = attributeOf(element, 'id');
  if (id) return `//*[@id="${id}"]`;
  const siblings = [...childrenOf(parentOf(element))].filter((child) => typeOf(child) === 1);
  const same = siblings.filter((child) => tagNameOf(child) === tagNameOf(element));
  const position = same.length > 1 ? `[${same.indexOf(element) + 1}]` : '';
  return `${pathOf(parentOf(element))}/${tagNameOf(element).toLowerCase()}${position}`;
}

function isActivatable(element, tag) {
  if (tag === 'li' && has(element, 'tabindex')) return true;
  if (has(element, 'onclick') || tag === 'button') return true;
  if (has(element, 'href') && tag !== 'link') return true;
  if (!has(element, 'draggable')) return false;
  const { visibility, display } = (tag === 'form' ? styleOf(element) : element.style) ?? {};
  return visibility !== 'hidden' || display !== 'none' || element.disabled === false;
}

function titleOf(element) {
  const images = [...elementsOf(element, 'img')];
  const candidates = [
    textOf(element),
    attributeOf(element, 'title'),
    attributeOf(element, 'aria-label'),
    ...images.flatMap((image) => ['aria-label', 'alt', 'title'].map((name) => attributeOf(image, name))),
  ];
  const title = candidates.find((candidate) => candidate && candidate.trim() !== '') ?? '';
  return title.trim().replace(/\s\s+/g, ' ');
}

function record(element, title) {
  const box = boxOf(element);
  const style = window.getComputedStyle(element);
  const id = layout.length;
  layout.push({
    id,
    title,
    x: Math.round(box.left),
    y: Math.round(box.top),
    w: Math.round(box.width),
    h: Math.round(box.height),
    focused: element === activeElementOf(document),
    visible: style.display !== 'none' && style.visibility !== 'hidden',
    iframe: insideIframe,
  });
  paths.push({ id, xpath: pathOf(element) });
}

function walk(elements) {
  for (const element of [...elements]) {
    const tag = tagNameOf(element).toLowerCase();
    if (tag === 'iframe') {
      insideIframe = true;
      walk(allOf(element.contentWindow.document, '*'));
    } else if (isActivatable(element, tag) && titleOf(element) !== '') {
      record(element, titleOf(element));
    }
  }
  insideIframe = false;
}

walk(allOf(document, '*'));
return { layout, paths };
