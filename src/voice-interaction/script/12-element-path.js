// The path by which an element of the map is found again: from its document's root, or from the nearest ancestor that
// has an id.

// What a walk remembers of the paths that it has built, so that ancestors and siblings are looked at once and not once
// for each element. Belongs to one walk: the page may be another at the next.
function newPathMemory() {
  return { paths: new Map(), suffixes: new Map() };
}

// `memory` is a walk's; without it everything is looked up afresh.
function generateXpath(element, memory) {
  if (!element || element.nodeType !== 1) {
    return '';
  }
  if (element.id) {
    return '//*[@id="' + element.id + '"]';
  }
  memory = memory || newPathMemory();
  var parent = element.parentNode;
  var parentPath = memory.paths.get(parent);
  if (parentPath === undefined) {
    parentPath = generateXpath(parent, memory);
    memory.paths.set(parent, parentPath);
  }
  return parentPath + '/' + element.tagName.toLowerCase() + positionSuffix(element, memory.suffixes);
}

// "[n]" for the n-th of several siblings with the same tag name; empty for an only one.
function positionSuffix(element, suffixes) {
  var suffix = suffixes.get(element);
  if (suffix === undefined) {
    addSuffixes(element.parentNode ? element.parentNode.children : [element], suffixes);
    suffix = suffixes.get(element);
  }
  return suffix;
}

// Finds the suffixes of all the children of one element in one go.
function addSuffixes(siblings, suffixes) {
  var count = siblings.length;
  if (count === 1) {
    suffixes.set(siblings[0], '');
    return;
  }
  var lastOfTag = new Map();
  for (var i = 0; i < count; i++) {
    var sibling = siblings[i];
    var tag = sibling.tagName;
    var last = lastOfTag.get(tag);
    if (last === undefined) {
      lastOfTag.set(tag, { first: sibling, count: 1 });
      suffixes.set(sibling, '');
    } else {
      last.count++;
      if (last.count === 2) {
        suffixes.set(last.first, '[1]');
      }
      suffixes.set(sibling, '[' + last.count + ']');
    }
  }
}
