// The path by which an element of the map is found again: from its document's root, or from the nearest
// ancestor that has an id.
function generateXpath(element) {
  if (!element || element.nodeType !== 1) {
    return '';
  }
  if (element.id) {
    return '//*[@id="' + element.id + '"]';
  }
  return generateXpath(element.parentNode) + '/' + element.tagName.toLowerCase() + positionSuffix(element);
}

// "[n]" for the n-th of several siblings with the same tag name; empty for an only one.
function positionSuffix(element) {
  var siblings = element.parentNode ? element.parentNode.children : [];
  var count = 0;
  var position = 0;
  for (var i = 0; i < siblings.length; i++) {
    if (siblings[i].tagName === element.tagName) {
      count++;
      position = siblings[i] === element ? count : position;
    }
  }
  return count > 1 ? '[' + position + ']' : '';
}
