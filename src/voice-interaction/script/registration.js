// The whole registration: the built-in handlers, clearing, and the list of actions for the native instance.

// The element map answers content-context requests unless the application has its own callback.
function registerContentContextCallback() {
  log('Register Content Context function');
  if (handlerOf(VoiceInteractionAppAction.ACTION_REQUEST_CONTENT_CONTEXT)) {
    log('This app has own content context handler!');
    return;
  }
  installHandler(VoiceInteractionAppAction.ACTION_REQUEST_CONTENT_CONTEXT, onRequestContentContext);
}

function registerMoveFocusCallback() {
  log('Register Move Focus function');
  installHandler(VoiceInteractionAppAction.ACTION_ITEM_SELECTION, onItemSelection);
}

// Removes all handlers and listeners, including the built-in ones.
function clearCallbacks() {
  log('Clear Callbacks');
  appActionArray = [];
  Object.keys(VoiceInteractionAppAction).forEach(function (name) {
    native_.removeListener(name, _callback);
    voiceInteractionActionHandler[name] = null;
  });
}

// Registers the functions of `callbacks` and the built-in handlers, then passes the actions to the native instance.
function registerCallbacks() {
  if (callbacks) {
    callbackProperties.forEach(function (row) {
      registerCallback(row[1], row[0]);
    });
  }
  registerContentContextCallback();
  registerMoveFocusCallback();
  callNative('VoiceInteractionHandler_setCallback', { actions: withoutToJson(appActionArray) });
}
