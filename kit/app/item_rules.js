// Precedes the script API's element-tests.js, which decides what an item is. Silences its logging, since inspecting a
// page must not write to the page's console.
var console = { log: function () {} };

// The frames around the element, the innermost first.
function framesAround(element) {
  var frames = [];
  var frame = element.ownerDocument.defaultView.frameElement;
  for (; frame; frame = frame.ownerDocument.defaultView.frameElement) frames.push(frame);
  return frames;
}

function hasBox(element) {
  var box = element.getBoundingClientRect();
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
  return isActivatable(element, element.localName) && titleOf(element) !== '';
}
