// What most of the script leans on: the runtime's utilities and the channel to the page's native instance, calls
// that fail loudly, the script's one kind of error, and texts for log lines.

// The runtime wraps the joined source in a scope of its own that supplies `extension` and `exports`.
var utils_ = xwalk.utils;
var type_ = utils_.type;
var converter_ = utils_.converter;
var validator_ = utils_.validator;
var types_ = validator_.Types;

var native_ = new xwalk.utils.NativeManager(extension);

// The object that applications reach as corvis.voiceinteraction is one of these; its methods are on the
// prototype.
function VoiceInteractionHandler() {}

// The engine's own, whatever the page declares under that name later.
var NativeMap = Map;

// Calls a native handler and gives its result; throws the runtime's error object when the call failed.
function callNative(name, args) {
  var result = native_.callSync(name, args);
  if (native_.isFailure(result)) {
    throw native_.getErrorObject(result);
  }
  return result;
}

// The first step of every method that needs the privileges: throws before any argument is looked at.
function checkPrivileges() {
  callNative('VoiceInteractionHandler_checkPrivileges', {});
}

function typeMismatch(message) {
  return new CorviException(CorviException.TYPE_MISMATCH_ERR, message);
}

// Throws a type mismatch with `message` unless `value` is of `type`: a typeof name, or "array".
function requireType(value, type, message) {
  var fits = type === 'array' ? Array.isArray(value) : typeof value === type;
  if (!fits) {
    throw typeMismatch(message);
  }
}

// Log lines are for diagnosis only. A value that has no text (a symbol, an object that contains itself) must
// not change what the script does, so values get into them by one of these two.
function logText(value) {
  try {
    return String(value);
  } catch (error) {
    return '(no text)';
  }
}

function logJson(value) {
  try {
    return JSON.stringify(value);
  } catch (error) {
    return '(no JSON text)';
  }
}
