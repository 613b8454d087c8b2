// The page's registration. Only the functions of the registration files change these variables.

// The object of callbacks that the application passed last. Its functions are read when it is passed; later changes
// have no effect until the next setCallback.
var callbacks;

// The names of the actions that the page handles, in the order of registration.
var appActionArray = [];

// The handler of each action by name; null after clearing.
var voiceInteractionActionHandler = {};

// The handler of an action; undefined for a name that the page never registered, even if it is the name of an inherited
// property.
function handlerOf(action) {
  var isOwn = Object.prototype.hasOwnProperty.call(voiceInteractionActionHandler, action);
  var handler = isOwn ? voiceInteractionActionHandler[action] : undefined;
  return typeof handler === 'function' ? handler : undefined;
}
