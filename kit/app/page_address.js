// Reads and changes the address of the page.

// Navigates to the fragment if the URL has one and names the current page, and returns null. Otherwise returns the
// absolute URL, which the caller loads.
function goToPlace(text) {
  var url = new URL(text, document.baseURI);
  if (!url.hash || url.href.split('#')[0] !== location.href.split('#')[0]) return url.href;
  location.hash = url.hash;
  return null;
}

// Replaces the page's address without loading anything.
function setAddress(url) {
  history.replaceState(null, '', url);
}

function address() {
  return location.href;
}

function loadingState() {
  return document.readyState;
}
