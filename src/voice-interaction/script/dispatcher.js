// Dispatches each voice command to its handler and sends the handler's result back as the answer. Every command gets
// exactly one answer, whatever the handler does.

// The parameter converters. Actions that are not listed pass on the text unchanged, among them ACTION_DEFAULT_SEARCH
// and ACTION_CUSTOM, whose text is JSON.
var paramConverterByAction = new Map([
  [VoiceInteractionAppAction.ACTION_NAVIGATION, GetVoiceNavigationFromParam],
  [VoiceInteractionAppAction.ACTION_SEARCH, GetVoiceSearchTermFromParam],
  [VoiceInteractionAppAction.ACTION_SEARCH_COLLECTION, GetVoiceSearchTermFromParam],
  [VoiceInteractionAppAction.ACTION_MEDIA_SET_SUBTITLE, GetFunctionModeFromParam],
  [VoiceInteractionAppAction.ACTION_MEDIA_SET_SHUFFLE, GetFunctionModeFromParam],
  [VoiceInteractionAppAction.ACTION_MEDIA_SET_SCREEN_FIT, GetFunctionModeFromParam],
  [VoiceInteractionAppAction.ACTION_MEDIA_SET_360_MODE, GetFunctionModeFromParam],
  [VoiceInteractionAppAction.ACTION_MEDIA_SET_REPEAT, GetRepeatModeFromParam],
  [VoiceInteractionAppAction.ACTION_MEDIA_SET_ZOOM, GetZoomModeFromParam],
  [VoiceInteractionAppAction.ACTION_MEDIA_SET_ROTATE, GetRotateModeFromParam],
  [VoiceInteractionAppAction.ACTION_SELECTION, numberFromParam],
  [VoiceInteractionAppAction.ACTION_MEDIA_SKIP_BACKWARD, numberFromParam],
  [VoiceInteractionAppAction.ACTION_MEDIA_SKIP_FORWARD, numberFromParam],
  [VoiceInteractionAppAction.ACTION_MEDIA_SET_PLAY_POSITION, numberFromParam],
  [VoiceInteractionAppAction.ACTION_ITEM_SELECTION, GetItemIdFromParam],
  [VoiceInteractionAppAction.ACTION_ADDITION_TO_LIST, GetListItem],
  [VoiceInteractionAppAction.ACTION_REMOVAL_FROM_LIST, GetListItem],
]);

function convertVoiceInteractionParam(action, param) {
  var convert = paramConverterByAction.get(action);
  return convert ? convert(param) : param;
}

// Calls the action's handler with the converted parameter, or without an argument if there is none. Throws if the
// handler throws or the action has no handler.
function callHandler(result, action, param) {
  var handler = handlerOf(action);
  var line = '_callback ' + logJson(result) + ' ' + logText(action);
  if (param == null) {
    log(line);
  } else {
    log(line + ' ' + logText(param));
  }
  if (!handler) {
    throw new TypeError('No function handles ' + logText(action));
  }
  // The callback may have an own property named "call".
  return param == null ? handler() : Function.prototype.call.call(handler, handler, param);
}

// Converts the return value of a handler to the text of the answer. Throws for a value that JSON can't represent.
function answerFromResponse(response) {
  if (response == null) {
    return 'success';
  }
  log('Type of Response [' + typeof response + ']');
  if (typeof response === 'boolean') {
    return response ? 'success' : 'not_support';
  }
  if (typeof response === 'string') {
    return response;
  }
  var text = jsonText(response);
  if (text === undefined) {
    throw new TypeError('The callback returned a ' + typeof response + ', which has no JSON text');
  }
  log('Object response : ' + text);
  return text;
}

// The listener of all registered actions. `result` is the message that the native instance posted.
function _callback(result) {
  var action = result.action;
  var answer;
  try {
    var param = convertVoiceInteractionParam(action, result.param);
    answer = answerFromResponse(callHandler(result, action, param));
  } catch (error) {
    log('_callback exception : ' + logText(error));
    answer = answerFromResponse(false);
  }
  try {
    native_.callSync('Response', withoutToJson({ action: action, response: answer }));
  } catch (error) {
    // Only logged, because the application can't do anything about an answer that was not sent.
    log('_callback exception : ' + logText(error));
  }
}
