// The element map as one would make it of packages, for comparison with the script's: `tabbable` finds the elements,
// `dom-accessibility-api` their names. Bundled into a page by the benchmark.
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
