// The map of the elements that a user can activate. A content-context request walks the page and numbers all such
// elements that have a readable title; an item selection refers to that number later.

// The elements found by the last walk, in document order: {id, title, x, y, w, h, focused, visible, iframe}. The box is
// relative to the viewport of the element's own document, in whole CSS pixels.
var layoutMap = [];

// The path of each element: {id, xpath}, in the same order.
var xpathMap = [];

// The number of the next element.
var itemId = 0;

// Whether the walk is inside an inline frame. The end of every frame resets it, so elements after a nested frame count
// as the page's. A walk that ends with an exception does not reset it.
var insideIframe = false;

// The last inline frame of the walk. Elements inside frames are looked up in its document later.
var iframeNode;

function onRequestContentContext() {
  updateLayoutMap();
  return JSON.stringify(layoutMap);
}

// Replaces the map by one of the current page.
function updateLayoutMap() {
  layoutMap = [];
  xpathMap = [];
  itemId = 0;
  console.log('Version 1.06');
  addToLayoutMap(document.getElementsByTagName('*'), new NativeMap());
  if (layoutMap.length > 0 && xpathMap.length > 0) {
    console.log('$Number of elements added to the layout map: ' + layoutMap.length);
  } else {
    console.log('$NO ELEMENTS FOUND');
  }
}

// Walks the elements of one document, including its frames. `walkMemory` is the cache of generateXpath. It is only
// valid for this walk, because the page may change afterwards.
function addToLayoutMap(elements, walkMemory) {
  var count = elements.length;
  for (var i = 0; i < count; i++) {
    var element = elements[i];
    var tag = element.tagName.toLowerCase();
    if (tag === 'iframe') {
      addIframeToLayoutMap(element, walkMemory);
    } else {
      addElementToLayoutMap(element, tag, walkMemory);
    }
  }
  insideIframe = false;
}

function addIframeToLayoutMap(iframe, walkMemory) {
  console.log('$IFRAME DETECTED!');
  iframeNode = iframe;
  insideIframe = true;
  addToLayoutMap(iframe.contentWindow.document.getElementsByTagName('*'), walkMemory);
}

function addElementToLayoutMap(element, tag, walkMemory) {
  // Checked first, because reading the box takes most of the time of a walk.
  if (!isActivatable(element, tag)) {
    return;
  }
  var box;
  try {
    box = element.getBoundingClientRect();
  } catch (error) {
    return;
  }
  var title = titleOf(element);
  if (title === '') {
    return;
  }
  layoutMap.push({
    id: itemId,
    title: title,
    x: Math.round(box.left),
    y: Math.round(box.top),
    w: Math.round(box.width),
    h: Math.round(box.height),
    focused: hasFocus(element),
    visible: isVisible(element),
    iframe: insideIframe,
  });
  xpathMap.push({ id: itemId, xpath: generateXpath(element, walkMemory) });
  itemId++;
}
