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

// These are read for every element, therefore by their literal names, which is fastest.

function tagNameOf(element) {
  var tag = element.tagName;
  return isObject(tag) ? objectOf(element, 'tagName', ownTagName) : tag;
}

function hasAttribute(element, name) {
  var has = element.hasAttribute;
  return (isObject(has) ? methodOf(element, 'hasAttribute', ownHasAttribute) : has).call(element, name);
}

function attributeOf(element, name) {
  var get = element.getAttribute;
  return (isObject(get) ? methodOf(element, 'getAttribute', ownGetAttribute) : get).call(element, name);
}

function nodeTypeOf(node) {
  var type = node.nodeType;
  return isObject(type) ? objectOf(node, 'nodeType', ownNodeType) : type;
}

function textOf(element) {
  var text = element.textContent;
  return isObject(text) ? objectOf(element, 'textContent', ownTextContent) : text;
}

function imagesOf(element) {
  var get = element.getElementsByTagName;
  return (isObject(get) ? methodOf(element, 'getElementsByTagName', ownElements) : get).call(element, 'img');
}

function boxOf(element) {
  return methodOf(element, 'getBoundingClientRect', ownBox).call(element);
}

// All elements of a document.
function elementsOf(root) {
  return methodOf(root, 'getElementsByTagName', ownElementsOfDocument).call(root, '*');
}
