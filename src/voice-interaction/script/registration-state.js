// What the page has registered for. Only the functions of the registration files change these.

// The object of callbacks that the application passed last. Its functions are copied when it is passed; what
// the application changes in it later counts from the next setCallback on.
var callbacks;

// The names of the actions that the page handles, in the order of registration.
var appActionArray = [];

// Action name → the function that handles it, or null once cleared.
var voiceInteractionActionHandler = {};

// The function that handles an action; undefined for every name that the page never registered, be it the
// name of something that all objects inherit.
function handlerOf(action) {
  var isOwn = Object.prototype.hasOwnProperty.call(voiceInteractionActionHandler, action);
  var handler = isOwn ? voiceInteractionActionHandler[action] : undefined;
  return typeof handler === 'function' ? handler : undefined;
}
