// Public methods: building the answers that carry data. Where several arguments are wrong, the first check
// that fails decides the message.

function requireCollectionEntry(appId, title, payload) {
  requireType(appId, 'string', 'appId is not string');
  requireType(title, 'string', 'title is not string');
  requireType(payload, 'string', 'payload is not string');
}

VoiceInteractionHandler.prototype.buildCollectionDeeplinkData = function (appId, title, payload) {
  checkPrivileges();
  requireCollectionEntry(appId, title, payload);
  return JSON.stringify({ type: 'Deeplink', app_id: appId, title: title, content_id: payload });
};

VoiceInteractionHandler.prototype.buildCollectionShowData = function (appId, title, payload, thumbnail) {
  checkPrivileges();
  requireCollectionEntry(appId, title, payload);
  requireType(thumbnail, 'string', 'thumbnail is not string');
  var entry = { type: 'Show', app_id: appId, title: title, content_id: payload, thumbnail: thumbnail };
  return JSON.stringify(entry);
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
      console.log('param has empty object!');
      throw typeMismatch('param contains invalid object');
    }
    requireContentContextItem(item);
  });
  return JSON.stringify(contentContextArr);
};
