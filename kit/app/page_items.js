// Lists the items as the script API would, for a page that doesn't listen. Follows item_rules.js.
function pageItems() {
  var items = [];
  function walk(root, isInFrame) {
    var elements = root.getElementsByTagName('*');
    for (var i = 0; i < elements.length; i++) {
      var element = elements[i];
      if (element.localName === 'iframe') {
        try {
          walk(element.contentWindow.document, true);
        } catch (error) {
          continue;
        }
      } else if (isItem(element)) {
        var box = element.getBoundingClientRect();
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
    }
  }
  walk(document, false);
  return items;
}
