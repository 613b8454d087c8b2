// Selecting an item of the element map by its number: the element is found again by its path, focused,
// brought into view and clicked.

// False when the map has no such item. Throws when the item's path leads nowhere any more.
function onItemSelection(id) {
  var path = recordOf(xpathMap, id);
  if (!path) {
    return false;
  }
  var record = recordOf(layoutMap, id);
  console.log(path.xpath);
  console.log('$iframe: ' + record.iframe);
  var element = findByPath(path.xpath, record.iframe);
  console.log('$Obtained node!');
  element.focus();
  element.scrollIntoView();
  activate(element, record);
  return true;
}

// The first record with that id; numbers and their texts are the same.
function recordOf(map, id) {
  return map.filter(function (record) {
    return String(record.id) === String(id);
  })[0];
}

function findByPath(xpath, inIframe) {
  if (inIframe) {
    console.log('$Evaluate within iframe');
  }
  var root = inIframe ? iframeNode.contentDocument : document;
  return root.evaluate(xpath, root, null, XPathResult.FIRST_ORDERED_NODE_TYPE, null).singleNodeValue;
}

// Elements that don't know click(), such as those of an SVG image, get the event in the middle of their box.
function activate(element, record) {
  if (typeof element.click === 'function') {
    element.click();
    return;
  }
  var x = record.x + record.w / 2;
  var y = record.y + record.h / 2;
  console.log('$ClientX: ' + x);
  console.log('ClientY: ' + y);
  var init = { bubbles: false, cancelable: false, view: window, clientX: x, clientY: y };
  element.dispatchEvent(new MouseEvent('click', init));
}
