// The callbacks that an application may pass, and the registration of a single one.

// Properties of the application's object and their actions, in the order in which setCallback checks them.
var callbackProperties = [
  ['onupdatestate', VoiceInteractionAppAction.ACTION_REQUEST_APP_CONTEXT],
  ['onnavigation', VoiceInteractionAppAction.ACTION_NAVIGATION],
  ['onsearch', VoiceInteractionAppAction.ACTION_SEARCH],
  ['onplay', VoiceInteractionAppAction.ACTION_PLAY],
  ['onstop', VoiceInteractionAppAction.ACTION_STOP],
  ['onpause', VoiceInteractionAppAction.ACTION_PAUSE],
  ['onexit', VoiceInteractionAppAction.ACTION_EXIT],
  ['onselection', VoiceInteractionAppAction.ACTION_SELECTION],
  ['ontitleselection', VoiceInteractionAppAction.ACTION_TITLE_SELECTION],
  ['oncustom', VoiceInteractionAppAction.ACTION_CUSTOM],
  ['onfastforward', VoiceInteractionAppAction.ACTION_FAST_FORWARD],
  ['onrewind', VoiceInteractionAppAction.ACTION_REWIND],
  ['ondefaultsearch', VoiceInteractionAppAction.ACTION_DEFAULT_SEARCH],
  ['onsearchcollection', VoiceInteractionAppAction.ACTION_SEARCH_COLLECTION],
  ['onchangeappstate', VoiceInteractionAppAction.ACTION_CHANGE_APP_STATE],
  ['onchangeprevioustrack', VoiceInteractionAppAction.ACTION_MEDIA_TRACK_PREVIOUS],
  ['onchangenexttrack', VoiceInteractionAppAction.ACTION_MEDIA_TRACK_NEXT],
  ['onrestart', VoiceInteractionAppAction.ACTION_MEDIA_RESTART],
  ['onskipbackward', VoiceInteractionAppAction.ACTION_MEDIA_SKIP_BACKWARD],
  ['onskipforward', VoiceInteractionAppAction.ACTION_MEDIA_SKIP_FORWARD],
  ['onsetplayposition', VoiceInteractionAppAction.ACTION_MEDIA_SET_PLAY_POSITION],
  ['onchangesubtitlemode', VoiceInteractionAppAction.ACTION_MEDIA_SET_SUBTITLE],
  ['onchangeshufflemode', VoiceInteractionAppAction.ACTION_MEDIA_SET_SHUFFLE],
  ['onchangescreenfitmode', VoiceInteractionAppAction.ACTION_MEDIA_SET_SCREEN_FIT],
  ['onzoom', VoiceInteractionAppAction.ACTION_MEDIA_SET_ZOOM],
  ['onrotate', VoiceInteractionAppAction.ACTION_MEDIA_SET_ROTATE],
  ['onchange360mode', VoiceInteractionAppAction.ACTION_MEDIA_SET_360_MODE],
  ['onchangerepeatmode', VoiceInteractionAppAction.ACTION_MEDIA_SET_REPEAT],
  ['oncontinuewatching', VoiceInteractionAppAction.ACTION_MEDIA_CONTINUE_WATCHING],
  ['onrequestcontentcontext', VoiceInteractionAppAction.ACTION_REQUEST_CONTENT_CONTEXT],
  ['onadditiontolist', VoiceInteractionAppAction.ACTION_ADDITION_TO_LIST],
  ['onremovalfromlist', VoiceInteractionAppAction.ACTION_REMOVAL_FROM_LIST],
];

// Dispatches commands for the action to `handler` from now on.
function installHandler(appAction, handler) {
  voiceInteractionActionHandler[appAction] = handler;
  native_.addListener(appAction, _callback);
  appActionArray.push(appAction);
}

// Registers the application's callback for one action, if its object has an own property for it. A property that is not
// a function aborts the whole registration: nothing remains registered.
function registerCallback(appAction, callback) {
  log('Register Callback for ' + appAction);
  if (!Object.prototype.hasOwnProperty.call(callbacks, callback)) {
    return;
  }
  var handler = callbacks[callback];
  if (handler == null) {
    clearCallbacks();
    throw typeMismatch('callback is not defined');
  }
  if (typeof handler !== 'function') {
    clearCallbacks();
    throw typeMismatch('callback is not function type');
  }
  log('Register User function');
  installHandler(appAction, handler);
}
