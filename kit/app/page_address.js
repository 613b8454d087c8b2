// The address of the page, and going to another place on it.

// Goes to the place on the present page that the URL names, and gives null. Gives the whole URL when that is another
// page or no place on one: then it is to be loaded.
function goToPlace(text) {
  var url = new URL(text, document.baseURI);
  if (!url.hash || url.href.split('#')[0] !== location.href.split('#')[0]) return url.href;
  location.hash = url.hash;
  return null;
}

// Makes this the page's address, without loading anything.
function setAddress(url) {
  history.replaceState(null, '', url);
}

function address() {
  return location.href;
}

function loadingState() {
  return document.readyState;
}
