// What `corvis lint` asks of a page: which of its elements voice will not find, or find under another name than
// the one the viewer reads. Gives
// a list of {rule, sentence, where}.
function pageChecks() {
  // What the element map takes.
  var item = 'li[tabindex], [onclick], button, [href]:not(link), [draggable]';
  var clickable =
    'input:not([type=hidden]), select, textarea, summary, [role=button], [role=link], [tabindex]';
  var findings = [];

  function report(rule, sentence, element) {
    findings.push({ rule: rule, sentence: sentence, where: element ? pathOf(element) : '' });
  }

  // A selector for people: short, and enough to find the element.
  function pathOf(element) {
    if (element.id) return element.localName + '#' + element.id;
    var parent = element.parentElement;
    var name = element.localName + (element.classList[0] ? '.' + element.classList[0] : '');
    if (!parent || element.localName === 'body') return element.localName;
    var place = Array.prototype.indexOf.call(parent.children, element) + 1;
    return pathOf(parent) + ' > ' + name + ':nth-child(' + place + ')';
  }

  function plain(text) {
    return (text || '').replace(/\s+/g, ' ').trim();
  }

  function attribute(element, names) {
    for (var i = 0; i < names.length; i++) {
      var value = plain(element.getAttribute(names[i]));
      if (value) return value;
    }
    return '';
  }

  function titleOf(element) {
    var title = plain(element.textContent) || attribute(element, ['title', 'aria-label']);
    var images = element.getElementsByTagName('img');
    for (var i = 0; i < images.length && !title; i++)
      title = attribute(images[i], ['aria-label', 'alt', 'title']);
    return title;
  }

  // Nothing to see is nothing to say; elements off the screen may still be scrolled to.
  function isShown(element) {
    var box = element.getBoundingClientRect();
    return box.width > 0 && box.height > 0;
  }

  function isClickable(element) {
    if (element.matches(clickable)) return element.getAttribute('tabindex') !== '-1';
    var pointer = getComputedStyle(element).cursor === 'pointer';
    return (
      pointer && (!element.parentElement || getComputedStyle(element.parentElement).cursor !== 'pointer')
    );
  }

  function checkItem(element) {
    var title = titleOf(element);
    if (!title) {
      report('title', 'It has no text, title, aria-label or image with an alt, so voice skips it.', element);
      return;
    }
    var shown = plain(element.innerText);
    if (shown && shown.toLowerCase() !== plain(element.textContent).toLowerCase()) {
      report('label', 'The viewer reads "' + shown + '", but its spoken name is "' + title + '".', element);
    }
    var label = attribute(element, ['aria-label']);
    if (shown && label && label.toLowerCase().indexOf(shown.toLowerCase()) < 0) {
      report('label', 'The viewer reads "' + shown + '", but its aria-label is "' + label + '".', element);
    }
    checkId(element);
  }

  // A selection finds an item with an id, or below an element with one, by that id.
  function checkId(element) {
    var owner = element.closest('[id]');
    if (!owner) return;
    if (owner.id.indexOf('"') >= 0) {
      report('id', 'A quotation mark in an id keeps its items from being selected.', owner);
    } else if (owner.ownerDocument.querySelectorAll('[id="' + CSS.escape(owner.id) + '"]').length > 1) {
      report('id', 'The id "' + owner.id + '" is not the only one: a selection clicks the first.', owner);
    }
  }

  function checkFrame(frame, frames) {
    var inner = null;
    try {
      inner = frame.contentWindow.document;
    } catch (error) {
      report('frame', 'A frame of another origin: while it is there, the page has no items at all.', frame);
    }
    if (!inner) return;
    if (inner.querySelector(item)) frames.push(frame);
    check(inner, frames);
  }

  function check(root, frames) {
    Array.prototype.forEach.call(root.querySelectorAll('*'), function (element) {
      if (element.localName === 'iframe') return checkFrame(element, frames);
      if (element.shadowRoot && element.shadowRoot.querySelector(item + ', ' + clickable)) {
        report('shadow', 'Its items are in a shadow root, where voice does not look.', element);
      }
      if (element.matches(item)) {
        if (isShown(element)) checkItem(element);
      } else if (
        isShown(element) &&
        isClickable(element) &&
        !element.closest(item) &&
        !element.querySelector(item)
      ) {
        report(
          'item',
          'It looks clickable but is no item: make it a button, a link or an li with a tabindex.',
          element
        );
      }
    });
  }

  var frames = [];
  check(document, frames);
  frames.slice(0, -1).forEach(function (frame) {
    report(
      'frame',
      'Only the items of the last frame of a page can be selected; this one comes before it.',
      frame
    );
  });
  return findings;
}
