// Where the frames are in which a page's items are. Items come in document order, a frame's in the frame's place, so
// each item is the next element that is one and has its box. `boxes` are the items', [x, y, w, h] each.
function itemPlaces(boxes) {
  var places = [];
  function walk(root, left, top) {
    var elements = root.getElementsByTagName('*');
    for (var i = 0; i < elements.length && places.length < boxes.length; i++) {
      var element = elements[i];
      if (element.localName === 'iframe') {
        var frame = element.getBoundingClientRect();
        try {
          walk(
            element.contentWindow.document,
            left + frame.left + element.clientLeft,
            top + frame.top + element.clientTop
          );
        } catch (error) {
          continue;
        }
      } else if (isItem(element)) {
        var box = element.getBoundingClientRect();
        var wanted = boxes[places.length];
        if (
          Math.round(box.left) === wanted[0] &&
          Math.round(box.top) === wanted[1] &&
          Math.round(box.width) === wanted[2] &&
          Math.round(box.height) === wanted[3]
        ) {
          places.push([left, top]);
        }
      }
    }
  }
  walk(document, 0, 0);
  return { width: window.innerWidth, frames: places };
}
