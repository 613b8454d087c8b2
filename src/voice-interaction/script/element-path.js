// Builds the XPath that finds an element of the map again: from its document's root, or from the nearest ancestor with
// an id.

// `walkMemory` is a Map from parent to childrenOf(), which a walk keeps for its duration, so that ancestors and
// siblings are read only once instead of for each element. Without it nothing is cached.
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

// A form's `id` is an element if the form has a field named "id". The same applies to the property names below.
function idOf(node) {
  var id = node.id;
  return typeof id === 'string' || !isElementNode(node) ? id : node.getAttribute('id');
}

function isElementNode(node) {
  return node.nodeType === 1 || typeof node.nodeType === 'object';
}

// The cached data of a parent's children: its path and, by tag name, their path without a position (built on demand),
// their number, and the number that `advanceTo` has passed. An element without a parent has no siblings.
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

// Advances to the given child, counting by tag name, and returns the cached data of its tag name. A walk asks in
// document order, so each child is passed once. Returns nothing if the child is not ahead.
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

// Counts without the cache, if the page changed during the walk or a form has fields named like properties that
// `childrenOf` reads.
function countByTag(element, parent) {
  var same = Array.prototype.filter.call(parent.childNodes, function (child) {
    return child.tagName === element.tagName;
  });
  return { path: '', count: same.length, position: same.indexOf(element) + 1 };
}
