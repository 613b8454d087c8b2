// Reads the page safely from the names in it: a form's fields hide the form's properties of the same names, and a
// document's forms, images and frames hide the document's. An object in place of a text, a number or a function is such an
// element; then, and for properties that are objects anyway, the engine's own getter or method is used, which the script
// takes from the prototypes when it starts. If there is none, or the object isn't the engine's, the property is read
// plainly.

// The getter or method `name` of the objects of `type`; undefined if the engine doesn't offer it on their prototype.
function engineOwn(type, name) {
  try {
    var own = Object.getOwnPropertyDescriptor(window[type].prototype, name);
    return own.get || own.value;
  } catch (error) {
    return undefined;
  }
}

var ownNodeType = engineOwn('Node', 'nodeType');
var ownParentNode = engineOwn('Node', 'parentNode');
var ownChildNodes = engineOwn('Node', 'childNodes');
var ownTextContent = engineOwn('Node', 'textContent');
var ownTagName = engineOwn('Element', 'tagName');
var ownFirstElementChild = engineOwn('Element', 'firstElementChild');
var ownNextElementSibling = engineOwn('Element', 'nextElementSibling');
var ownHasAttribute = engineOwn('Element', 'hasAttribute');
var ownGetAttribute = engineOwn('Element', 'getAttribute');
var ownElements = engineOwn('Element', 'getElementsByTagName');
var ownBox = engineOwn('Element', 'getBoundingClientRect');
var ownScrollIntoView = engineOwn('Element', 'scrollIntoView');
var ownStyle = engineOwn('HTMLElement', 'style');
var ownFocus = engineOwn('HTMLElement', 'focus');
var ownClick = engineOwn('HTMLElement', 'click');
var ownActiveElement = engineOwn('Document', 'activeElement');
var ownElementsOfDocument = engineOwn('Document', 'getElementsByTagName');
var ownEvaluate = engineOwn('Document', 'evaluate');

// A property that is an object or null.
function objectOf(object, name, own) {
  if (own) {
    try {
      var value = own.call(object);
      if (value !== undefined) {
        return value;
      }
    } catch (error) {
      // The object is not the engine's.
    }
  }
  return object[name];
}

function isObject(value) {
  return typeof value === 'object' && value !== null;
}

// A property that is a text or a number.
function primitiveOf(object, name, own) {
  var value = object[name];
  return isObject(value) ? objectOf(object, name, own) : value;
}

// A method, to be called with the object; undefined if the object has none.
function methodOf(object, name, own) {
  var method = object[name];
  return isObject(method) && own && isEngineNode(object) ? own : method;
}

function isEngineNode(object) {
  try {
    return ownNodeType.call(object) > 0;
  } catch (error) {
    return false;
  }
}

// By name and without a call where possible, because they are read most often.

function tagNameOf(element) {
  var tag = element.tagName;
  return isObject(tag) ? objectOf(element, 'tagName', ownTagName) : tag;
}

function hasAttribute(element, name) {
  if (isObject(element.hasAttribute)) {
    return methodOf(element, 'hasAttribute', ownHasAttribute).call(element, name);
  }
  return element.hasAttribute(name);
}

function attributeOf(element, name) {
  return methodOf(element, 'getAttribute', ownGetAttribute).call(element, name);
}

function nodeTypeOf(node) {
  return primitiveOf(node, 'nodeType', ownNodeType);
}

function boxOf(element) {
  return methodOf(element, 'getBoundingClientRect', ownBox).call(element);
}

// All elements of a document.
function elementsOf(root) {
  return methodOf(root, 'getElementsByTagName', ownElementsOfDocument).call(root, '*');
}
