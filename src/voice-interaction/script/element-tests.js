// The properties of an element for the element map: whether a user can activate it, its title, focus and visibility.

// `tag` is the element's tag name in lower case.
function isActivatable(element, tag) {
  return (
    (tag === 'li' && hasAttribute(element, 'tabindex')) ||
    hasAttribute(element, 'onclick') ||
    tag === 'button' ||
    (hasAttribute(element, 'href') && tag !== 'link') ||
    (hasAttribute(element, 'draggable') && isInUse(element))
  );
}

// Intentionally weak: any one of the three conditions is sufficient. Elements of foreign namespaces have no inline style.
function isInUse(element) {
  var style = objectOf(element, 'style', ownStyle) || {};
  return style.visibility !== 'hidden' || style.display !== 'none' || element.disabled === false;
}

function hasFocus(element) {
  return element === objectOf(document, 'activeElement', ownActiveElement);
}

// Considers only the element's own computed style, not its ancestors'.
function isVisible(element) {
  var style = window.getComputedStyle(element);
  return style.display !== 'none' && style.visibility !== 'hidden';
}

var whiteSpaceRun = /\s{2,}/;
var whiteSpaceRuns = /\s{2,}/g;

// The element's text, or the text of its attributes or of its images' attributes; empty if all are empty. Runs of white
// space become one space.
function titleOf(element) {
  var title = textOf(element).trim();
  if (title === '') {
    log('$Empty title');
    title = titleFromAttributes(element, ['title', 'aria-label']);
  }
  if (title === '') {
    log('$No title and no aria label');
    title = titleFromImages(imagesOf(element));
  }
  // Few titles contain runs, and testing for one is cheaper than a replacement without a match.
  return whiteSpaceRun.test(title) ? title.replace(whiteSpaceRuns, ' ') : title;
}

function titleFromImages(images) {
  var title = '';
  for (var i = 0; i < images.length && title === ''; i++) {
    title = titleFromAttributes(images[i], ['aria-label', 'alt', 'title']);
  }
  return title;
}

// The first attribute that contains more than white space, trimmed; empty if there is none.
function titleFromAttributes(element, names) {
  for (var i = 0; i < names.length; i++) {
    var title = hasAttribute(element, names[i]) ? attributeOf(element, names[i]).trim() : '';
    if (title !== '') {
      return title;
    }
  }
  return '';
}
