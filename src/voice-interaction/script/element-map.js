// The map of what a user could activate on the page: asked for the content context, the page is walked and
// every such element that has a readable title gets a number, by which an item selection names it later.

// The elements found by the last walk, in its order: {id, title, x, y, w, h, focused, visible, iframe}. The
// box is in the viewport of the element's own document, in whole CSS pixels.
var layoutMap = [];

// Where each of them is: {id, xpath}, in the same order.
var xpathMap = [];

// The number that the next element found gets.
var itemId = 0;

// Whether the elements being walked are an inline frame's. The end of any frame's walk ends it, so what
// follows a nested frame counts as the page's; and a walk that an exception ends leaves it as it is.
var insideIframe = false;

// The last inline frame that a walk met; elements inside frames are looked up again in its document.
var iframeNode;

function onRequestContentContext() {
  updateLayoutMap();
  return JSON.stringify(layoutMap);
}

// Replaces the map by that of the page as it is now.
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

// Walks the elements of one document and those of the frames among them. `walkMemory` is generateXpath's; it
// ends with the walk, because by the next one the page may have changed.
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
  // Reading the box is what takes most of a walk's time, so that most elements are spared it.
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
