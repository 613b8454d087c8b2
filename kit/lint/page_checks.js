// The checks that `corvis lint` runs in a page: elements that voice does not find, or finds under a name other than the
// one that the viewer reads. To add a rule about elements, add a function here and a line to the table.
var elementRules = {
  title: checkTitle,
  label: checkLabel,
  id: checkId,
  shadow: checkShadow,
  item: checkClickable,
};

function findingAt(element, rule, sentence) {
  var boxes = isShown(element) ? [boxInWindow(element)] : [];
  return { rule: rule, sentence: sentence, where: pathOf(element), boxes: boxes };
}

// Returns all findings as a list of {rule, sentence, where, boxes}; the boxes are relative to the window.
function pageChecks() {
  var findings = [];
  var frames = [];
  function report(rule, sentence, element) {
    findings.push(findingAt(element, rule, sentence));
  }
  function checkElement(element) {
    Object.keys(elementRules).forEach(function (rule) {
      elementRules[rule](element, function (sentence, where) {
        report(rule, sentence, where || element);
      });
    });
  }
  function checkFrame(frame) {
    var inner = documentOf(frame);
    if (!inner) {
      return report(
        'frame',
        'A frame of another origin: as long as the page contains it, the page has no items at all.',
        frame
      );
    }
    if (allIn(inner).some(isCandidate)) frames.push(frame);
    check(inner);
  }
  function check(root) {
    allIn(root).forEach(function (element) {
      (nameOf(element) === 'iframe' ? checkFrame : checkElement)(element);
    });
  }
  check(document);
  checkUnseen(report);
  frames.slice(0, -1).forEach(function (frame) {
    report(
      'frame',
      'Only the items of the last frame of a page can be selected; this one comes before it.',
      frame
    );
  });
  return findings;
}

// [x, y, width, height]
function boxInWindow(element) {
  var box = boxOf(element);
  var x = box.left;
  var y = box.top;
  framesAround(element).forEach(function (frame) {
    var outer = frame.getBoundingClientRect();
    x += outer.left + frame.clientLeft;
    y += outer.top + frame.clientTop;
  });
  return [x, y, box.width, box.height];
}

// Of what a form's fields and a document's names could hide, as in page-operations.js.
var ownChildren = engineOwn('Element', 'children');
var ownClassList = engineOwn('Element', 'classList');
var ownClosest = engineOwn('Element', 'closest');
var ownClientRects = engineOwn('Element', 'getClientRects');
var ownId = engineOwn('Element', 'id');
var ownInnerText = engineOwn('HTMLElement', 'innerText');
var ownMatches = engineOwn('Element', 'matches');
var ownParentElement = engineOwn('Node', 'parentElement');
var ownQueryOfDocument = engineOwn('Document', 'querySelectorAll');
var ownQueryOfElement = engineOwn('Element', 'querySelectorAll');
var ownShadowRoot = engineOwn('Element', 'shadowRoot');

// All elements that match, in a document, an element or a shadow root.
function query(root, selector) {
  var own = nodeTypeOf(root) === 9 ? ownQueryOfDocument : ownQueryOfElement;
  return Array.prototype.slice.call(methodOf(root, 'querySelectorAll', own).call(root, selector));
}

function allIn(root) {
  return query(root, '*');
}

function parentOf(element) {
  return objectOf(element, 'parentElement', ownParentElement);
}

// A property that is a text.
function textProperty(element, name, own) {
  return typeof element[name] === 'string' ? element[name] : objectOf(element, name, own);
}

function idOf(element) {
  return textProperty(element, 'id', ownId);
}

function matches(element, selector) {
  return methodOf(element, 'matches', ownMatches).call(element, selector);
}

// The frame's document; null if it is of another origin.
function documentOf(frame) {
  try {
    return frame.contentWindow.document;
  } catch (error) {
    return null;
  }
}

// Whether the element would be an item if it had a title. In a drawing most elements with an href refer to a part of it.
function isCandidate(element) {
  var isPart = element.namespaceURI === 'http://www.w3.org/2000/svg' && nameOf(element) !== 'a';
  return isActivatable(element, nameOf(element)) && (!isPart || hasAttribute(element, 'onclick'));
}

// A short, readable selector of the element.
function pathOf(element) {
  var tag = nameOf(element);
  if (idOf(element)) return tag + '#' + idOf(element);
  var parent = parentOf(element);
  var firstClass = objectOf(element, 'classList', ownClassList)[0];
  var name = tag + (firstClass ? '.' + firstClass : '');
  if (!parent || tag === 'body') return tag;
  var place = Array.prototype.indexOf.call(objectOf(parent, 'children', ownChildren), element) + 1;
  return pathOf(parent) + ' > ' + name + ':nth-child(' + place + ')';
}

function plain(text) {
  return (text || '').replace(/\s+/g, ' ').trim();
}

function checkTitle(element, report) {
  if (isCandidate(element) && isShown(element) && !isItem(element)) {
    report('The item has no text, title, aria-label or image with an alt, so voice skips it.');
  }
}

function checkLabel(element, report) {
  if (!isItem(element) || !isShown(element)) return;
  var shown = plain(textProperty(element, 'innerText', ownInnerText));
  var label = plain(attributeOf(element, 'aria-label'));
  if (shown && shown.toLowerCase() !== plain(textOf(element)).toLowerCase()) {
    report('The viewer reads "' + shown + '", but its spoken name is "' + titleOf(element) + '".');
  }
  if (shown && label && label.toLowerCase().indexOf(shown.toLowerCase()) < 0) {
    report('The viewer reads "' + shown + '", but its aria-label is "' + label + '".');
  }
}

// A selection finds an item by its own id or the id of its nearest ancestor.
function checkId(element, report) {
  if (!isItem(element) || !isShown(element)) return;
  var owner = methodOf(element, 'closest', ownClosest).call(element, '[id]');
  if (!owner) return;
  var id = idOf(owner);
  var root = objectOf(owner, 'ownerDocument', ownOwnerDocument);
  if (id.indexOf('"') >= 0) {
    report('A quotation mark in an id keeps its items from being selected.', owner);
  } else if (query(root, '[id="' + CSS.escape(id) + '"]').length > 1) {
    report('The id "' + id + '" is not unique: a selection clicks the first element with it.', owner);
  }
}

function checkShadow(element, report) {
  var root = objectOf(element, 'shadowRoot', ownShadowRoot);
  var hasTargets =
    root &&
    allIn(root).some(function (inner) {
      return isCandidate(inner) || matches(inner, clickable);
    });
  if (hasTargets) report('Its items are in a shadow root, which voice does not search.');
}

var clickable = 'input:not([type=hidden]), select, textarea, summary, [role=button], [role=link], [tabindex]';

function looksClickable(element) {
  if (matches(element, clickable)) return attributeOf(element, 'tabindex') !== '-1';
  var parent = parentOf(element);
  return (
    getComputedStyle(element).cursor === 'pointer' &&
    (!parent || getComputedStyle(parent).cursor !== 'pointer')
  );
}

// All items of the page and of its frames.
function itemsIn(root) {
  return allIn(root).reduce(function (items, element) {
    var inner = nameOf(element) === 'iframe' && documentOf(element);
    return items.concat(inner ? itemsIn(inner) : isItem(element) ? [element] : []);
  }, []);
}

function isWithoutSize(element) {
  var rects = methodOf(element, 'getClientRects', ownClientRects).call(element);
  return rects.length > 0 && !hasBox(element);
}

// Items that no viewer sees, which are still listed: one finding for all of a kind, at the first of them.
function checkUnseen(report) {
  var unseen = itemsIn(document).filter(function (element) {
    return !isShown(element);
  });
  var isHidden = function (element) {
    return !isWithoutSize(element);
  };
  reportAll('no-size', 'without a size (0×0)', unseen.filter(isWithoutSize), report);
  reportAll('hidden', 'hidden', unseen.filter(isHidden), report);
}

function reportAll(rule, state, items, report) {
  if (items.length === 0) return;
  var isOne = items.length === 1;
  var are = isOne ? 'An item is ' : items.length + ' items are ';
  var them = isOne ? 'it' : 'them';
  var advice =
    '. Remove ' + them + ' from the document while ' + (isOne ? 'it is' : 'they are') + ' not shown.';
  report(rule, are + state + ', but voice lists and selects ' + them + advice, items[0]);
}

function hasCandidateAbove(element) {
  for (var above = parentOf(element); above; above = parentOf(above)) {
    if (isCandidate(above)) return true;
  }
  return false;
}

function checkClickable(element, report) {
  if (
    !isCandidate(element) &&
    isShown(element) &&
    looksClickable(element) &&
    !hasCandidateAbove(element) &&
    !allIn(element).some(isCandidate)
  ) {
    report(
      'The element looks clickable but is not an item. Make it a button, a link with an href or an li with a ' +
        'tabindex, or give it an onclick or draggable attribute.'
    );
  }
}
