// Follows the script API's page-operations.js and element-tests.js, which decide what an item is.

// The script API's log lines: inspecting a page must not write to its console.
function log() {}

var ownOwnerDocument = engineOwn('Node', 'ownerDocument');
var ownDefaultView = engineOwn('Document', 'defaultView');

// The frame that contains the element; null in the page itself.
function frameOf(element) {
  var root = objectOf(element, 'ownerDocument', ownOwnerDocument);
  return objectOf(root, 'defaultView', ownDefaultView).frameElement;
}

// The frames around the element, the innermost first.
function framesAround(element) {
  var frames = [];
  for (var frame = frameOf(element); frame; frame = frameOf(frame)) frames.push(frame);
  return frames;
}

function hasBox(element) {
  var box = boxOf(element);
  return box.width > 0 && box.height > 0;
}

// Whether a viewer can see the element, after scrolling if it is outside the screen.
function isShown(element) {
  return [element].concat(framesAround(element)).every(function (shown) {
    return hasBox(shown) && isVisible(shown);
  });
}

// Whether the element map includes the element.
function isItem(element) {
  return isActivatable(element, nameOf(element)) && titleOf(element) !== '';
}

// The element's tag name in lower case.
function nameOf(element) {
  return tagNameOf(element).toLowerCase();
}
