// Precedes the script API's element-tests.js, which decides what an item is. Silences its logging, since inspecting a
// page must not write to the page's console.
var console = { log: function () {} };

// Whether the element map includes the element.
function isItem(element) {
  return isActivatable(element, element.localName) && titleOf(element) !== '';
}
