// Finds the position of each item's frame and whether the item is shown. Items are listed in document order, those of a frame at the frame's
// position, so each item is the next element that qualifies and has the same box. `boxes` holds [x, y, w, h] per item.
function itemPlaces(boxes) {
  var places = [];
  function walk(root, left, top) {
    var elements = elementsOf(root);
    for (var i = 0; i < elements.length && places.length < boxes.length; i++) {
      var element = elements[i];
      if (nameOf(element) === 'iframe') {
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
        var box = boxOf(element);
        var wanted = boxes[places.length];
        if (
          Math.round(box.left) === wanted[0] &&
          Math.round(box.top) === wanted[1] &&
          Math.round(box.width) === wanted[2] &&
          Math.round(box.height) === wanted[3]
        ) {
          places.push([left, top, isShown(element)]);
        }
      }
    }
  }
  walk(document, 0, 0);
  return { width: window.innerWidth, height: window.innerHeight, frames: places };
}
