// Pages with a given number of activatable elements, in layouts that are typical of real pages.

const repeat = (count, make) => Array.from({ length: count }, (_, i) => make(i)).join('');
const nested = (levels, inner) => '<div>'.repeat(levels) + inner + '</div>'.repeat(levels);
const levels = 30;

const card = (i, k) =>
  `<div class="card"><a href="#${i}-${k}"><span>Card ${i} ${k}</span></a><p>About it</p></div>`;
const row = (i) => `<section><h2>Row ${i}</h2><div>${repeat(10, (k) => card(i, k))}</div></section>`;
const deepRow = (i) =>
  nested(
    levels,
    repeat(10, (k) => `<button>B ${i} ${k}</button>`)
  );

/** Functions by workload name that return the HTML of a page with `size` elements, a multiple of ten. */
export const workloads = new Map([
  ['one list', (size) => `<ul>${repeat(size, (i) => `<li tabindex="0">Item ${i}</li>`)}</ul>`],
  ['cards in rows', (size) => repeat(size / 10, row)],
  [
    'buttons 30 levels deep',
    (size) =>
      nested(
        levels,
        repeat(size, (i) => `<button>Button ${i}</button>`)
      ),
  ],
  ['button each 30 levels deep', (size) => repeat(size / 10, deepRow)],
  ['image tiles', (size) => repeat(size, (i) => `<div><a href="#${i}"><img alt="Tile ${i}"></a></div>`)],
]);
