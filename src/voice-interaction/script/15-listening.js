// Public methods: taking part in voice control.

// Starts to receive commands. Independent of setCallback: either may be called at any time and again.
VoiceInteractionHandler.prototype.listen = function () {
  checkPrivileges();
  callNative('VoiceInteractionHandler_listen', {});
};

// Whether there is no property, own or inherited, to walk over; also true for whatever isn't an object.
function isEmptyObject(obj) {
  if (typeof obj === 'object') {
    for (var name in obj) {
      return false;
    }
  }
  return true;
}

// Replaces the whole registration by the callbacks given.
VoiceInteractionHandler.prototype.setCallback = function (callback) {
  checkPrivileges();
  if (callback == null) {
    throw typeMismatch('callback is not passed');
  }
  requireType(callback, 'object', 'callback is not object');
  if (isEmptyObject(callback)) {
    throw typeMismatch('callback is empty object');
  }
  console.log('setCallback : ' + logJson(callback));
  callbacks = callback;
  clearCallbacks();
  registerCallbacks();
};

VoiceInteractionHandler.prototype.getVersion = function () {
  checkPrivileges();
  var result = callNative('VoiceInteractionHandler_getVersion', {});
  console.log('getVersion : ' + logJson(result));
  return result.result;
};
