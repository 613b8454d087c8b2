// In front of the script API's element-tests.js, which says what an item is and writes to the console. What looks at a
// page must not.
var console = { log: function () {} };

// Whether the element map takes an element.
function isItem(element) {
  return isActivatable(element, element.localName) && titleOf(element) !== '';
}
