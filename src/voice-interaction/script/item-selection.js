// Selects an item of the element map by its number: finds the element by its path, focuses it, scrolls it into view and
// clicks it.

// Returns false if the map has no such item. Throws if the item's path no longer leads to an element.
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

// The first record with this id. The id may be a number or its text.
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

// Elements without click(), such as those of an SVG image, receive a click event at the center of their box.
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
