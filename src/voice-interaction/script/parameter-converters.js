// Converts the parameter text of a command to the value that the application's callback expects. Every converter maps
// exact texts and has one result for all others, including a missing parameter; none ever throws.

// Maps instead of objects, so that a text such as "constructor" is not found.
var navigationByParam = new Map([
  ['PreviousPageCommand', VoiceNavigation.NAV_PREVIOUS],
  ['NextPageCommand', VoiceNavigation.NAV_NEXT],
  ['MoveRightCommand', VoiceNavigation.NAV_RIGHT],
  ['MoveLeftCommand', VoiceNavigation.NAV_LEFT],
  ['MoveUpCommand', VoiceNavigation.NAV_UP],
  ['MoveDownCommand', VoiceNavigation.NAV_DOWN],
  ['ShowMore', VoiceNavigation.NAV_SHOW_MORE],
]);
var functionModeByParam = new Map([
  ['off', MediaFunctionMode.MEDIA_FUNCTION_OFF],
  ['on', MediaFunctionMode.MEDIA_FUNCTION_ON],
]);
var repeatModeByParam = new Map([
  ['off', MediaRepeatMode.MEDIA_REPEAT_OFF],
  ['one', MediaRepeatMode.MEDIA_REPEAT_ONE],
  ['all', MediaRepeatMode.MEDIA_REPEAT_ALL],
]);
var zoomModeByParam = new Map([
  ['in', MediaZoomMode.MEDIA_ZOOM_IN],
  ['out', MediaZoomMode.MEDIA_ZOOM_OUT],
]);
var rotateModeByParam = new Map([
  ['Left', MediaRotateMode.MEDIA_ROTATE_LEFT],
  ['Right', MediaRotateMode.MEDIA_ROTATE_RIGHT],
]);
var listItemByParam = new Map([
  ['BookMarks', ListItem.LIST_BOOKMARKS],
  ['WatchLater', ListItem.LIST_WATCH_LATER],
]);

// `name` is the name of the conversion in the log line.
function convertByTable(name, table, param, otherwise) {
  log(name + ' : ' + logText(param));
  return table.has(param) ? table.get(param) : otherwise;
}

function GetVoiceNavigationFromParam(param) {
  return convertByTable('GetVoiceNavigationFromParam', navigationByParam, param, VoiceNavigation.NAV_NEXT);
}

function GetFunctionModeFromParam(param) {
  var otherwise = MediaFunctionMode.MEDIA_FUNCTION_OFF;
  return convertByTable('GetFunctionModeFromParam', functionModeByParam, param, otherwise);
}

function GetRepeatModeFromParam(param) {
  var otherwise = MediaRepeatMode.MEDIA_REPEAT_OFF;
  return convertByTable('GetRepeatModeFromParam', repeatModeByParam, param, otherwise);
}

function GetZoomModeFromParam(param) {
  return convertByTable('GetZoomModeFromParam', zoomModeByParam, param, MediaZoomMode.MEDIA_ZOOM_IN);
}

function GetRotateModeFromParam(param) {
  var otherwise = MediaRotateMode.MEDIA_ROTATE_LEFT;
  return convertByTable('GetRotateModeFromParam', rotateModeByParam, param, otherwise);
}

function GetListItem(param) {
  return convertByTable('GetListItemFromParam', listItemByParam, param, ListItem.LIST_UNKNOWN);
}

// JavaScript's conversion of a text to a number; 0 if it isn't one. Catches exceptions, because the conversion of a
// JSON object such as {"valueOf": 0, "toString": 0} throws.
function numberFromParam(param) {
  try {
    var number = Number(param);
    return isNaN(number) ? 0 : number;
  } catch (error) {
    return 0;
  }
}

// The item number in a text such as {"id":3} or {"id":"3"}.
function GetItemIdFromParam(param) {
  log('GetItemIdFromParam : ' + logText(param));
  var selection = {};
  try {
    selection = JSON.parse(param);
  } catch (error) {
    log('GetItemIdFromParam : ' + logText(error));
  }
  if (typeof selection !== 'object' || selection === null) {
    return 0;
  }
  return numberFromParam(selection.id);
}
