// Builds the XPath that finds an element of the map again: from its document's root, or from the nearest ancestor with
// an id.

var elementNode = 1;
var documentNode = 9;

// `walkMemory` is a Map from parent to childrenOf(), which a walk keeps for its duration, so that ancestors and
// siblings are read only once instead of for each element. Without it nothing is cached.
function generateXpath(element, walkMemory) {
  var type = element ? nodeTypeOf(element) : documentNode;
  var id = type === documentNode ? '' : idOf(element, type);
  if (id) {
    return '//*[@id="' + id + '"]';
  }
  if (type !== elementNode) {
    return '';
  }
  var memory = walkMemory || new NativeMap();
  var parent = objectOf(element, 'parentNode', ownParentNode);
  var children = memory.get(parent);
  if (!children) {
    children = childrenOf(parent, element, generateXpath(parent, memory));
    memory.set(parent, children);
  }
  var tag = advanceTo(element, children) || countByTag(element, parent);
  if (!tag.path) {
    tag.path = children.path + '/' + tagNameOf(element).toLowerCase();
  }
  return tag.count > 1 ? tag.path + '[' + tag.position + ']' : tag.path;
}

function idOf(node, type) {
  var id = node.id;
  return typeof id === 'string' || type !== elementNode ? id : attributeOf(node, 'id');
}

function nextOf(element) {
  return objectOf(element, 'nextElementSibling', ownNextElementSibling);
}

// The cached data of a parent's children: its path and, by tag name, their path without a position (built on demand),
// their number, and the number that `advanceTo` has passed. An element without a parent has no siblings.
function childrenOf(parent, element, path) {
  var first = parent ? objectOf(parent, 'firstElementChild', ownFirstElementChild) : element;
  var tags = new NativeMap();
  for (var child = first; child; child = nextOf(child)) {
    var name = tagNameOf(child);
    var tag = tags.get(name);
    if (tag) {
      tag.count++;
    } else {
      tags.set(name, { path: '', count: 1, position: 0 });
    }
  }
  return { path: path, tags: tags, at: null, tag: null, next: first };
}

// Advances to the given child, counting by tag name, and returns the cached data of its tag name. A walk asks in
// document order, so each child is passed once. Returns nothing if the child is not ahead.
function advanceTo(element, children) {
  while (children.at !== element && children.next) {
    children.at = children.next;
    children.next = nextOf(children.at);
    children.tag = children.tags.get(tagNameOf(children.at));
    if (children.tag) {
      children.tag.position++;
    }
  }
  return children.at === element ? children.tag : undefined;
}

// Counts without the cache, if the page changed during the walk or the parent has only lists of its children.
function countByTag(element, parent) {
  var name = tagNameOf(element);
  var siblings = objectOf(parent, 'childNodes', ownChildNodes) || parent.children || [element];
  var same = Array.prototype.filter.call(siblings, function (child) {
    return tagNameOf(child) === name;
  });
  return { path: '', count: same.length, position: same.indexOf(element) + 1 };
}
