// The HTML report in a browser, opened from the disk: what it shows of a run, its filters and keys, and that nothing of
// a hostile page has an effect in it.
import assert from 'node:assert/strict';
import path from 'node:path';
import { after, before, test } from 'node:test';
import { pathToFileURL } from 'node:url';
import { launchBrowser } from '../../testing/browser.mjs';
import { jsonLines, testApp } from '../../testing/corvis.mjs';

const attack = '</script><img src=x onerror="window.hacked = 1"><!--<script>';
const application = `<title>x</title><button>Play</button><button>Old</button><p id="state">idle</p><script>
  var state = document.getElementById('state');
  var attack = ${JSON.stringify(attack).replaceAll('<', '\\x3c')};
  corvis.voiceinteraction.setCallback({
    onplay: function () {
      document.querySelectorAll('button')[1].remove();
      document.body.appendChild(document.createElement('button')).textContent = attack;
      console.log(attack);
      fetch('data.json?' + attack);
      var watch = setInterval(function () {
        if (performance.getEntriesByType('resource').length === 0) return;
        clearInterval(watch);
        state.textContent = 'loaded';
      }, 10);
    },
    onpause: function () { console.log('can not pause'); return false; },
    onstop: function () { return false; },
    onsearch: function () {}
  });
  corvis.voiceinteraction.listen();
</script>`;
const script = `test "Loading ${attack.replaceAll('"', '\\"')}"
say play
expect success
show "#state" is "loaded"
test "Pausing"
note The page can't.
say pause
expect "success"
say play
`;

let browser;
before(async () => (browser = await launchBrowser()));
after(() => browser.close());

// Opens a report; `problems` collects requests, errors and lines of its console.
async function openReport(file, options = {}) {
  const page = await browser.newPage({ viewport: { width: 1280, height: 800 }, ...options });
  const url = pathToFileURL(file).href;
  const problems = [];
  page.on('request', (request) => {
    if (!/^data:/.test(request.url()) && request.url() !== url) problems.push(request.url());
  });
  page.on('pageerror', (error) => problems.push(String(error)));
  page.on('console', (line) => problems.push(line.text()));
  await page.goto(url);
  return { page, problems };
}

const textOf = (page, selector) => page.locator(selector).allInnerTexts();

// Runs the script and opens its report.
async function report(t, options = []) {
  const { folder, code, text } = await testApp(t, application, script, ['--html', 'out/r.html', ...options]);
  assert.equal(code, 1, text);
  return { text, ...(await openReport(path.join(folder, 'out/r.html'))) };
}

test('the report shows the run; nothing of the page has an effect in it', async (t) => {
  const { page, problems } = await report(t);
  assert.deepEqual(await textOf(page, '.tests .name'), ['Pausing', `Loading ${attack}`]);
  assert.deepEqual(await textOf(page, '.step .source-text'), ['say pause', 'expect "success"', 'say play']);
  assert.match(await page.title(), /^1 failed, 1 passed/);
  assert.deepEqual(await textOf(page, '.details mark'), ['"success"']);
  assert.deepEqual(await textOf(page, '.failure code'), ['"success"', '"not_support"']);

  await page.locator('.step').first().click();
  assert.deepEqual(await textOf(page, '.details .console'), ['log\ncan not pause']);
  assert.match(
    await page.locator('.details .facts').innerText(),
    /Action\s+ACTION_PAUSE\s+Answer\s+not_support/
  );

  await page.locator('.tests button', { hasText: 'Loading' }).click();
  await page.locator('.step').first().click();
  assert.deepEqual(await textOf(page, '.details .console .log'), [`log\n${attack}`]);
  const changes = await textOf(page, '.items tbody tr');
  assert.match(changes[0], /^1\s+<\/script><img src=x.*\s+appeared$/s);
  assert.match(changes[1], /^\s*Old.*\s+vanished$/s);
  const widths = await page
    .locator('.screen img')
    .evaluateAll((images) =>
      Promise.all(images.map((image) => image.decode().then(() => image.naturalWidth)))
    );
  assert.deepEqual(widths, [960, 960]);
  // The request ends during any of the steps.
  const requests = [];
  for (const step of await page.locator('.step').all()) {
    await step.click();
    requests.push(...(await textOf(page, '.details .url')));
  }
  assert.equal(
    requests.filter((url) => url.includes('/data.json?%3C/script%3E')).length,
    1,
    String(requests)
  );
  assert.equal(await page.evaluate(() => window.hacked), undefined);
  assert.deepEqual(problems, []);
});

test('the filters, the keys and the address choose what is shown', async (t) => {
  const { page, problems } = await report(t);
  const shown = () => page.locator('.tests .name').count();
  const details = () => page.locator('.details h3').innerText();
  const rows = [
    [() => page.fill('#search', 'can not PAUSE'), 1, 'Pausing'],
    [() => page.fill('#search', 'no such text'), 0],
    [() => page.fill('#search', ''), 2],
    [() => page.locator('.chip.passed').click(), 1, 'Loading'],
    [() => page.locator('.chip').first().click(), 2],
    [() => page.locator('select').selectOption('ACTION_PAUSE'), 1, 'Pausing'],
  ];
  for (const [act, number, title = ''] of rows) {
    await act();
    assert.equal(await shown(), number, String(act));
    assert.ok((await page.locator('.chosen-test h2').innerText()).includes(title), String(act));
  }
  await page.locator('.step').first().click();
  await page.keyboard.press('ArrowDown');
  assert.match(await details(), /expect "success"/);
  assert.match(await page.evaluate(() => document.activeElement.innerText), /expect "success"/);
  await page.keyboard.press('/');
  assert.equal(await page.evaluate(() => document.activeElement.id), 'search');
  const url = page.url();
  assert.match(url, /#test-2-step-2$/);
  await page.goto(url.replace('step-2', 'step-3'));
  assert.match(await details(), /say play/);
  assert.deepEqual(problems, []);
});

test('coverage is a picture of all callbacks; on paper everything is unfolded', async (t) => {
  const { page, problems } = await report(t);
  await page.locator('nav button', { hasText: 'Coverage' }).click();
  const states = ['spoken', 'refused', 'unspoken', 'missing'];
  const numbers = await Promise.all(states.map((state) => page.locator(`.callbacks .${state}`).count()));
  assert.deepEqual(numbers, [1, 1, 2, 28]);
  await page.locator('nav button', { hasText: 'Durations' }).click();
  assert.equal(await page.locator('.durations').count(), 3);

  await page.emulateMedia({ media: 'print' });
  await page.evaluate(() => window.dispatchEvent(new Event('beforeprint')));
  const printed = await page.locator('body').innerText();
  for (const text of [
    'Pausing',
    `Loading ${attack}`,
    'show "#state" is "loaded"',
    'Expected',
    'can not pause',
  ])
    assert.ok(printed.includes(text), text);
  assert.equal(await page.locator('main').isVisible(), false);
  assert.deepEqual(problems, []);
});

test('a test that passed on a retry is flaky, and both attempts are shown', async (t) => {
  const loads = `<script>
    localStorage.loads = 1 + Number(localStorage.loads || 0);
    corvis.voiceinteraction.setCallback({ onplay: function () { return localStorage.loads; } });
    corvis.voiceinteraction.listen();
  </script>`;
  const second = 'test "the second time"\nsay play\nexpect "2"\n';
  const options = ['--retries', '1', '--profile', 'profile', '--html', 'r.html'];
  const { folder, text } = await testApp(t, loads, second, options);
  const { page, problems } = await openReport(path.join(folder, 'r.html'));
  assert.match(await page.locator('h1').innerText(), /1 flaky$/, text);
  assert.deepEqual(await textOf(page, '.attempt'), ['Attempt 2']);
  const marks = page.locator('.step .mark > :first-child');
  assert.deepEqual(await marks.allInnerTexts(), ['✓', '✗', '✓', '✓']);
  assert.deepEqual(problems, []);
});

test('JSON events contain what the page showed if asked, each picture once', async (t) => {
  const { text } = await testApp(t, application, script, ['--json-details']);
  const events = jsonLines(text);
  const views = events.filter(({ event }) => event === 'view');
  assert.deepEqual([views[0].width, views[0].height, views[0].items.length], [1920, 1080, 2]);
  for (const { picture, image } of views) {
    assert.equal(Boolean(image), views.find((view) => view.picture === picture).image === image);
    if (image) assert.match(image, /^data:image\/webp;base64,UklGR/);
  }
  const kinds = ['view', 'console', 'request'];
  const kindsIn = (list) => kinds.filter((kind) => list.some(({ event }) => event === kind));
  assert.deepEqual(kindsIn(events), kinds);
  assert.deepEqual(kindsIn(jsonLines((await testApp(t, application, script, ['--json'])).text)), []);
});
