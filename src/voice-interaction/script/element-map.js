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
// as the page's. So does an exception.
var insideIframe = false;

// The last inline frame of the walk. Elements inside frames are looked up in its document later.
var iframeNode;

function onRequestContentContext() {
  updateLayoutMap();
  return jsonText(layoutMap);
}

// Replaces the map by one of the current page.
function updateLayoutMap() {
  layoutMap = [];
  xpathMap = [];
  itemId = 0;
  log('Version 1.06');
  addToLayoutMap(elementsOf(document), new NativeMap());
  if (layoutMap.length > 0 && xpathMap.length > 0) {
    log('$Number of elements added to the layout map: ' + layoutMap.length);
  } else {
    log('$NO ELEMENTS FOUND');
  }
}

// Walks the elements of one document, including its frames. `walkMemory` is the cache of generateXpath. It is only
// valid for this walk, because the page may change afterwards.
function addToLayoutMap(elements, walkMemory) {
  try {
    addElementsToLayoutMap(elements, walkMemory);
  } finally {
    insideIframe = false;
  }
}

function addElementsToLayoutMap(elements, walkMemory) {
  var count = elements.length;
  for (var i = 0; i < count; i++) {
    var element = elements[i];
    var tag = tagNameOf(element).toLowerCase();
    if (tag === 'iframe') {
      addIframeToLayoutMap(element, walkMemory);
    } else {
      addElementToLayoutMap(element, tag, walkMemory);
    }
  }
}

function addIframeToLayoutMap(iframe, walkMemory) {
  log('$IFRAME DETECTED!');
  iframeNode = iframe;
  insideIframe = true;
  addToLayoutMap(elementsOf(iframe.contentWindow.document), walkMemory);
}

function addElementToLayoutMap(element, tag, walkMemory) {
  // Checked first, because reading the box takes most of the time of a walk.
  if (!isActivatable(element, tag)) {
    return;
  }
  var box;
  try {
    box = boxOf(element);
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
