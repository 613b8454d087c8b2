// Common helpers of the script: the runtime's utilities and the channel to the page's native instance, calls that throw
// on failure, the script's error type, and texts for log lines.

// The runtime wraps the joined source in a function that provides `extension` and `exports`.
var utils_ = xwalk.utils;
var type_ = utils_.type;
var converter_ = utils_.converter;
var validator_ = utils_.validator;
var types_ = validator_.Types;

var native_ = new xwalk.utils.NativeManager(extension);

// The class of the object corvis.voiceinteraction; its methods are on the prototype.
function VoiceInteractionHandler() {}

// The engine's own Map, even if the page redefines the name later.
var NativeMap = Map;

// Calls a native handler and returns its result. Throws the runtime's error object if the call fails.
function callNative(name, args) {
  var result = native_.callSync(name, withoutToJson(args));
  if (native_.isFailure(result)) {
    throw native_.getErrorObject(result);
  }
  return result;
}

// The first step of every method that needs the privileges, so that it throws before any argument is checked.
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

// Old libraries define toJSON for all objects or all arrays. Neither must change what the native side gets, while a
// value's own toJSON, or that of its class, applies.
function isForAll(toJson) {
  return toJson !== undefined && (toJson === Object.prototype.toJSON || toJson === Array.prototype.toJSON);
}

function jsonText(value) {
  if (Object.prototype.toJSON === undefined && Array.prototype.toJSON === undefined) {
    return JSON.stringify(value);
  }
  return JSON.stringify(value, function (name, converted) {
    var member = this[name];
    return member != null && isForAll(member.toJSON) ? member : converted;
  });
}

// The same for an object that the runtime converts.
function withoutToJson(object) {
  if (isForAll(object.toJSON)) {
    Object.defineProperty(object, 'toJSON', { value: undefined });
  }
  return object;
}

// Log lines are for diagnosis only. Neither the page's console, which may be missing or throw, nor a value that can't be
// converted to text (a symbol, a cyclic object) may change the script's behavior, so these three functions write all
// log lines and format all values in them. The console is read for each line, because tools replace it at run time.
function log(line) {
  try {
    // eslint-disable-next-line no-console -- The only place; see above.
    console.log(line);
  } catch (error) {
    // There is no other place for the line.
  }
}

function logText(value) {
  try {
    return String(value);
  } catch (error) {
    return '(no text)';
  }
}

function logJson(value) {
  try {
    return jsonText(value);
  } catch (error) {
    return '(no JSON text)';
  }
}
