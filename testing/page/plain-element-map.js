// A reference implementation of the element map, to compare the script's with: no optimization, every path is built
// from the element upwards. The body of a function that runs inside a page and returns {layout, paths}.
const layout = [];
const paths = [];
let insideIframe = false;

function pathOf(element) {
  if (element.nodeType !== 1) return '';
  if (element.id) return `//*[@id="${element.id}"]`;
  const same = [...element.parentNode.children].filter((child) => child.tagName === element.tagName);
  const position = same.length > 1 ? `[${same.indexOf(element) + 1}]` : '';
  return `${pathOf(element.parentNode)}/${element.tagName.toLowerCase()}${position}`;
}

function isActivatable(element, tag) {
  if (tag === 'li' && element.hasAttribute('tabindex')) return true;
  if (element.hasAttribute('onclick') || tag === 'button') return true;
  if (element.hasAttribute('href') && tag !== 'link') return true;
  if (!element.hasAttribute('draggable')) return false;
  const { visibility, display } = element.style;
  return visibility !== 'hidden' || display !== 'none' || element.disabled === false;
}

function titleOf(element) {
  const images = [...element.getElementsByTagName('img')];
  const candidates = [
    element.textContent,
    element.getAttribute('title'),
    element.getAttribute('aria-label'),
    ...images.flatMap((image) => ['aria-label', 'alt', 'title'].map((name) => image.getAttribute(name))),
  ];
  const title = candidates.find((candidate) => candidate && candidate.trim() !== '') ?? '';
  return title.trim().replace(/\s\s+/g, ' ');
}

function record(element, title) {
  const box = element.getBoundingClientRect();
  const style = window.getComputedStyle(element);
  const id = layout.length;
  layout.push({
    id,
    title,
    x: Math.round(box.left),
    y: Math.round(box.top),
    w: Math.round(box.width),
    h: Math.round(box.height),
    focused: element === document.activeElement,
    visible: style.display !== 'none' && style.visibility !== 'hidden',
    iframe: insideIframe,
  });
  paths.push({ id, xpath: pathOf(element) });
}

function walk(elements) {
  for (const element of [...elements]) {
    const tag = element.tagName.toLowerCase();
    if (tag === 'iframe') {
      insideIframe = true;
      walk(element.contentWindow.document.getElementsByTagName('*'));
    } else if (isActivatable(element, tag) && titleOf(element) !== '') {
      record(element, titleOf(element));
    }
  }
  insideIframe = false;
}

walk(document.getElementsByTagName('*'));
return { layout, paths };
