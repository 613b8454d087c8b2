// Converts the text of a search command to the frozen object that "onsearch" and "onsearchcollection" receive.

// The members of a search term by the field value that reads them. SEARCH_TERM_RAW reads none.
var searchTermMemberByField = new Map([
  [VoiceSearchTermField.SEARCH_TERM_UTTERANCE, 'utterance'],
  [VoiceSearchTermField.SEARCH_TERM_TITLE, 'title'],
  [VoiceSearchTermField.SEARCH_TERM_GENRE, 'genre'],
  [VoiceSearchTermField.SEARCH_TERM_CAST, 'cast'],
  [VoiceSearchTermField.SEARCH_TERM_CONTENT_TYPE, 'contentType'],
  [VoiceSearchTermField.SEARCH_TERM_RELEASE_DATE_FROM, 'from'],
  [VoiceSearchTermField.SEARCH_TERM_RELEASE_DATE_TO, 'to'],
]);
var searchTermMembers = ['utterance', 'title', 'genre', 'cast', 'contentType', 'from', 'to'];

function isSearchTermMember(name) {
  return searchTermMembers.indexOf(name) >= 0;
}

// Removes unknown members from a parsed search term. The values are kept, whatever their type.
function removeUnknownMembers(term) {
  if (typeof term !== 'object') {
    return;
  }
  for (var name in term) {
    if (!isSearchTermMember(name)) {
      delete term[name];
    }
  }
}

// Never throws; a text that isn't JSON becomes an empty search term.
function GetVoiceSearchTermFromParam(param) {
  log('GetVoiceSearchTermFromParam : ' + logText(param));
  var term = {};
  try {
    term = JSON.parse(param);
    removeUnknownMembers(term);
  } catch (error) {
    log('GetVoiceSearchTermFromParam : ' + logText(error));
  }
  return Object.freeze(term);
}
