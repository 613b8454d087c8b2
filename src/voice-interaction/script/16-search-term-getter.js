// Public method: reading one field of a search term.

// Throws unless every enumerable property of the search term is a member of one and holds a string.
function requireSearchTerm(st) {
  var message = 'param is not valid object';
  if (typeof st !== 'object') {
    console.log('param is not object!');
    throw typeMismatch(message);
  }
  if (isEmptyObject(st)) {
    console.log('param is empty object!');
    throw typeMismatch(message);
  }
  for (var name in st) {
    console.log('Investigate ' + name);
    if (!isSearchTermMember(name)) {
      throw typeMismatch(message);
    }
    console.log('Data for ' + name + ': ' + logText(st[name]) + ' type : ' + typeof st[name]);
    requireType(st[name], 'string', message);
  }
}

// The field's text, or undefined when the search term doesn't have it. The search term is checked before
// `field`.
VoiceInteractionHandler.prototype.getDataFromSearchTerm = function (st, field) {
  checkPrivileges();
  requireSearchTerm(st);
  if (!searchTermMemberByField.has(field)) {
    throw typeMismatch('field value is invalid');
  }
  var value = st[searchTermMemberByField.get(field)];
  console.log('Value for [' + field + '] is [' + logText(value) + ']');
  return value;
};
