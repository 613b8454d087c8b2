// The public methods: registering for voice control, reading a search term, and building answers with data. Exports the
// object that has them.

// Starts to receive commands. Independent of setCallback: both may be called at any time and repeatedly.
VoiceInteractionHandler.prototype.listen = function () {
  checkPrivileges();
  callNative('VoiceInteractionHandler_listen', {});
};

// Whether `obj` has no enumerable property, own or inherited. Also true for anything that isn't an object.
function isEmptyObject(obj) {
  if (typeof obj === 'object') {
    for (var name in obj) {
      return false;
    }
  }
  return true;
}

// Replaces the whole registration by the given callbacks.
VoiceInteractionHandler.prototype.setCallback = function (callback) {
  checkPrivileges();
  if (callback == null) {
    throw typeMismatch('callback is not passed');
  }
  requireType(callback, 'object', 'callback is not object');
  if (isEmptyObject(callback)) {
    throw typeMismatch('callback is empty object');
  }
  log('setCallback : ' + logJson(callback));
  callbacks = callback;
  clearCallbacks();
  registerCallbacks();
};

VoiceInteractionHandler.prototype.getVersion = function () {
  checkPrivileges();
  var result = callNative('VoiceInteractionHandler_getVersion', {});
  log('getVersion : ' + logJson(result));
  return result.result;
};

// Throws unless every enumerable property of the search term is a known member and a string.
function requireSearchTerm(st) {
  var message = 'param is not valid object';
  if (typeof st !== 'object') {
    log('param is not object!');
    throw typeMismatch(message);
  }
  if (isEmptyObject(st)) {
    log('param is empty object!');
    throw typeMismatch(message);
  }
  for (var name in st) {
    log('Investigate ' + name);
    if (!isSearchTermMember(name)) {
      throw typeMismatch(message);
    }
    log('Data for ' + name + ': ' + logText(st[name]) + ' type : ' + typeof st[name]);
    requireType(st[name], 'string', message);
  }
}

// Returns the field's text, or undefined if the search term doesn't have the field. Checks the search term before
// `field`.
VoiceInteractionHandler.prototype.getDataFromSearchTerm = function (st, field) {
  checkPrivileges();
  requireSearchTerm(st);
  if (!searchTermMemberByField.has(field)) {
    throw typeMismatch('field value is invalid');
  }
  var value = st[searchTermMemberByField.get(field)];
  log('Value for [' + field + '] is [' + logText(value) + ']');
  return value;
};

// The builders of answers. If several arguments are invalid, the first check
// that fails determines the message.

function requireCollectionEntry(appId, title, payload) {
  requireType(appId, 'string', 'appId is not string');
  requireType(title, 'string', 'title is not string');
  requireType(payload, 'string', 'payload is not string');
}

VoiceInteractionHandler.prototype.buildCollectionDeeplinkData = function (appId, title, payload) {
  checkPrivileges();
  requireCollectionEntry(appId, title, payload);
  return jsonText({ type: 'Deeplink', app_id: appId, title: title, content_id: payload });
};

VoiceInteractionHandler.prototype.buildCollectionShowData = function (appId, title, payload, thumbnail) {
  checkPrivileges();
  requireCollectionEntry(appId, title, payload);
  requireType(thumbnail, 'string', 'thumbnail is not string');
  var entry = { type: 'Show', app_id: appId, title: title, content_id: payload, thumbnail: thumbnail };
  return jsonText(entry);
};

function requireContentContextItem(item) {
  requireType(item.title, 'string', 'title is not string');
  requireType(item.alias, 'array', 'alias is not array');
  requireType(item.positionX, 'number', 'positionX is not number');
  requireType(item.positionY, 'number', 'positionY is not number');
  requireType(item.bFocused, 'boolean', 'bFocused is not boolean');
}

VoiceInteractionHandler.prototype.buildVoiceInteractionContentContextItem = function (
  positionX,
  positionY,
  title,
  aliasArr,
  bFocused
) {
  var item = {
    positionX: positionX,
    positionY: positionY,
    title: title,
    alias: aliasArr,
    bFocused: bFocused,
  };
  requireContentContextItem(item);
  return item;
};

VoiceInteractionHandler.prototype.buildVoiceInteractionContentContextResponse = function (contentContextArr) {
  requireType(contentContextArr, 'array', 'contentContextArr is not array');
  contentContextArr.forEach(function (item) {
    requireType(item, 'object', 'param is not object');
    if (isEmptyObject(item)) {
      log('param has empty object!');
      throw typeMismatch('param contains invalid object');
    }
    requireContentContextItem(item);
  });
  return jsonText(contentContextArr);
};

// The runtime publishes this object as corvis.voiceinteraction.
exports = new VoiceInteractionHandler();
