// Selects an item of the element map by its number: finds the element by its path, focuses it, scrolls it into view and
// clicks it.

// Returns false if the map has no such item. Throws if the item's path no longer leads to an element.
function onItemSelection(id) {
  var path = recordOf(xpathMap, id);
  if (!path) {
    return false;
  }
  var record = recordOf(layoutMap, id);
  log(path.xpath);
  log('$iframe: ' + record.iframe);
  var element = findByPath(path.xpath, record.iframe);
  log('$Obtained node!');
  methodOf(element, 'focus', ownFocus).call(element);
  methodOf(element, 'scrollIntoView', ownScrollIntoView).call(element);
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
    log('$Evaluate within iframe');
  }
  var type = XPathResult.FIRST_ORDERED_NODE_TYPE;
  var root = inIframe ? iframeNode.contentDocument : document;
  return methodOf(root, 'evaluate', ownEvaluate).call(root, xpath, root, null, type, null).singleNodeValue;
}

// Elements without click(), such as those of an SVG image, receive a click event at the center of their box.
function activate(element, record) {
  var click = methodOf(element, 'click', ownClick);
  if (typeof click === 'function') {
    click.call(element);
    return;
  }
  var x = record.x + record.w / 2;
  var y = record.y + record.h / 2;
  log('$ClientX: ' + x);
  log('ClientY: ' + y);
  var init = { bubbles: false, cancelable: false, view: window, clientX: x, clientY: y };
  element.dispatchEvent(new MouseEvent('click', init));
}
