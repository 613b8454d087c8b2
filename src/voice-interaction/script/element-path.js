// The path by which an element of the map is found again: from its document's root, or from the nearest
// ancestor that has an id.

// `walkMemory` is a Map that a walk keeps for its duration, parent → childrenOf(), so that ancestors and
// siblings are looked at once and not once for each element; without it everything is looked up afresh.
function generateXpath(element, walkMemory) {
  var id = element && idOf(element);
  if (id) {
    return '//*[@id="' + id + '"]';
  }
  if (!element || !isElementNode(element)) {
    return '';
  }
  var memory = walkMemory || new NativeMap();
  var parent = element.parentNode;
  var children = memory.get(parent);
  if (!children) {
    children = childrenOf(parent, element, generateXpath(parent, memory));
    memory.set(parent, children);
  }
  var tag = advanceTo(element, children) || countByTag(element, parent);
  if (!tag.path) {
    tag.path = children.path + '/' + element.tagName.toLowerCase();
  }
  return tag.count > 1 ? tag.path + '[' + tag.position + ']' : tag.path;
}

// A form that has a field named "id" gives that field as its `id`, and so with the names below.
function idOf(node) {
  var id = node.id;
  return typeof id === 'string' || !isElementNode(node) ? id : node.getAttribute('id');
}

function isElementNode(node) {
  return node.nodeType === 1 || typeof node.nodeType === 'object';
}

// What is remembered of a parent's children: its path, and by tag name their path without a position, made when
// it is needed, how many of them there are, and how many `advanceTo` has passed. An element without a parent
// stands alone.
function childrenOf(parent, element, path) {
  var first = parent ? parent.firstElementChild : element;
  if (parent && first && (first.parentNode !== parent || first.previousElementSibling)) {
    first = null;
  }
  var tags = new NativeMap();
  for (var child = first; child; child = child.nextElementSibling) {
    var tag = tags.get(child.tagName);
    if (tag) {
      tag.count++;
    } else {
      tags.set(child.tagName, { path: '', count: 1, position: 0 });
    }
  }
  return { path: path, tags: tags, at: null, tag: null, next: first };
}

// Goes on to the child asked for, counting by tag name, and gives what is remembered of its tag name. A walk
// asks in document order, so each child is passed once. Nothing when the child isn't ahead.
function advanceTo(element, children) {
  while (children.at !== element && children.next) {
    children.at = children.next;
    children.next = children.at.nextElementSibling;
    children.tag = children.tags.get(children.at.tagName);
    if (children.tag) {
      children.tag.position++;
    }
  }
  return children.at === element ? children.tag : undefined;
}

// The same, counted anew: the page changed while it was walked, or a form has fields named like what
// `childrenOf` reads.
function countByTag(element, parent) {
  var same = Array.prototype.filter.call(parent.childNodes, function (child) {
    return child.tagName === element.tagName;
  });
  return { path: '', count: same.length, position: same.indexOf(element) + 1 };
}
