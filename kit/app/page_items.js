// Lists the items as the script API would, for a page that doesn't listen. Follows item_rules.js.
function pageItems() {
  var items = [];
  var isInFrame = false;
  function add(element) {
    var box = boxOf(element);
    items.push({
      id: items.length,
      title: titleOf(element),
      x: Math.round(box.left),
      y: Math.round(box.top),
      w: Math.round(box.width),
      h: Math.round(box.height),
      focused: hasFocus(element),
      visible: isVisible(element),
      iframe: isInFrame,
    });
  }
  function walkFrame(frame) {
    try {
      var root = frame.contentWindow.document;
      isInFrame = true;
      walk(root);
    } catch (error) {
      // The frame is of another origin.
    }
  }
  function walk(root) {
    var elements = elementsOf(root);
    for (var i = 0; i < elements.length; i++) {
      if (nameOf(elements[i]) === 'iframe') {
        walkFrame(elements[i]);
      } else if (isItem(elements[i])) {
        add(elements[i]);
      }
    }
    // Also what follows a nested frame in its frame counts as the page's.
    isInFrame = false;
  }
  walk(document);
  return items;
}
