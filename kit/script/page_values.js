// What `show` and `value` read in a page: {value: …}, or {error: a sentence}. So an expression that throws is not an
// uncaught error of the page each time it is looked at.

// The value of an expression, which comes as a function.
function valueOf(expression) {
  try {
    return { value: expression() };
  } catch (error) {
    return { error: 'The expression threw ' + error + '.' };
  }
}

// The text that the first element shows which the selector finds.
function shownText(selector) {
  var element;
  try {
    element = document.querySelector(selector);
  } catch (error) {
    return { error: 'The selector ' + selector + ' is invalid: ' + error.message };
  }
  if (element === null) return { error: 'The page has no element ' + selector + '.' };
  var hasValue = /^(input|select|textarea)$/.test(element.localName);
  return { value: String(hasValue ? element.value : element.textContent).trim() };
}
