// An element map built from packages, to compare the script's with: `tabbable` finds the elements and
// `dom-accessibility-api` their names. The benchmark bundles it into a page.
import { computeAccessibleName } from 'dom-accessibility-api';
import { tabbable } from 'tabbable';

function itemOf(element, id) {
  const box = element.getBoundingClientRect();
  const { display, visibility } = window.getComputedStyle(element);
  return {
    id,
    title: computeAccessibleName(element),
    x: Math.round(box.left),
    y: Math.round(box.top),
    w: Math.round(box.width),
    h: Math.round(box.height),
    focused: element === document.activeElement,
    visible: display !== 'none' && visibility !== 'hidden',
  };
}

window.packagedElementMap = () => tabbable(document.body).map(itemOf);
