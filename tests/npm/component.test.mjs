// <corvis-voice> as somebody with a keyboard or a screen reader uses it, and what the page notices of it: nothing.
import assert from 'node:assert/strict';
import path from 'node:path';
import { beforeEach, test } from 'node:test';
import { until } from '../../testing/corvis.mjs';
import { packageFolder, useBrowser } from './application.mjs';

const html = `<!doctype html><title>A player</title>
<style>button { position: absolute; left: 20px; width: 100px; height: 30px; }</style>
<button style="top: 10px">Play</button><button style="top: 50px">&lt;b&gt;Stop&lt;/b&gt;</button>
<script>
  var keys = 0;
  addEventListener('keydown', function () { keys++; });
  corvis.voiceinteraction.setCallback({
    onplay: function () { return '<i>playing</i>'; },
    onstop: function () { throw new Error('no film'); },
  });
  corvis.voiceinteraction.listen();
</script>`;

const browser = useBrowser();
let page;
beforeEach(async () => {
  await page?.close();
  page = await browser.newPage();
  await page.addInitScript({ path: path.join(packageFolder, 'simulator/script.js') });
  await page.addInitScript('globalThis.tv = corvisSimulator.install(window)');
  await page.route('http://tv.test/', (route) => route.fulfill({ contentType: 'text/html', body: html }));
  await page.goto('http://tv.test/');
  await page.addScriptTag({ path: path.join(packageFolder, 'component/script.js') });
});

const append = () => page.evaluate('void document.body.append(document.createElement("corvis-voice"))');

/** Waits until the answers are so many. */
async function lines(count) {
  const paragraphs = page.getByRole('log', { name: 'Answers' }).locator('p');
  await paragraphs.nth(count - 1).waitFor();
  return (await paragraphs.allTextContents()).map((text) => text.replace(/ \(\d+\.\d ms\)$/, ''));
}

test('one says something by keyboard, and hears the answer', async () => {
  await append();
  for (let i = 0; i < 3; i++) await page.keyboard.press('Tab');
  const field = page.getByRole('combobox', { name: 'Say' });
  assert.equal(await field.evaluate((input) => input.getRootNode().activeElement === input), true);
  const options = page.locator('corvis-voice option');
  assert.deepEqual(await options.evaluateAll((all) => all.map(({ value }) => value)), ['play', 'stop']);
  const keysBefore = await page.evaluate('keys');
  for (const phrase of ['play', 'stop', 'puase']) {
    await page.keyboard.type(phrase);
    await page.keyboard.press('Enter');
  }
  const [played, stopped, unknown] = await lines(3);
  assert.equal(played, 'play → ACTION_PLAY → <i>playing</i>');
  assert.equal(stopped, 'stop → ACTION_STOP → not_support, the callback threw Error: no film');
  assert.match(unknown, /^puase: .*"pause"/);
  assert.equal(await field.inputValue(), '');
  assert.equal(await page.evaluate('keys'), keysBefore, 'what is typed is not for the page');
});

test('it shows what is said elsewhere, the last five answers, and stops when it is gone', async () => {
  await append();
  await page.evaluate('tv.restartService()');
  for (let i = 1; i <= 5; i++) await page.evaluate((n) => globalThis.tv.send('ACTION_PLAY', n), i);
  const shown = await lines(5);
  assert.equal(shown.length, 5);
  assert.equal(shown[0], 'ACTION_PLAY 1 → ACTION_PLAY 1 → <i>playing</i>');
  const after = await page.evaluate(async () => {
    const element = document.querySelector('corvis-voice');
    element.remove();
    await globalThis.tv.say('play');
    return element.shadowRoot.querySelectorAll('p').length;
  });
  assert.equal(after, 5);
});

test('numbers stand on the items; the element is none of them', async () => {
  const titles = () => page.evaluate('tv.items().then((items) => items.map((item) => item.title))');
  const before = await titles();
  await append();
  await page.getByRole('button', { name: 'Numbers', pressed: false }).press('Space');
  await page.getByRole('button', { name: 'Numbers', pressed: true }).waitFor();
  const boxes = page.locator('corvis-voice #numbers div');
  await boxes.nth(1).waitFor();
  assert.deepEqual(await boxes.allTextContents(), ['0', '1']);
  const tops = () => boxes.evaluateAll((all) => all.map((box) => box.getBoundingClientRect().top));
  assert.deepEqual(await tops(), [10, 50]);
  assert.deepEqual(await titles(), before);
  await page.evaluate(
    'document.querySelector("button").style.top = "90px"; dispatchEvent(new Event("resize"))'
  );
  await until(async () => (await tops()).includes(90), { output: () => 'the box stays' });
  await page.evaluate('document.querySelector("corvis-voice").numbers = false');
  await boxes.first().waitFor({ state: 'detached' });
});

test('without a TV it says what to do', async () => {
  await page.evaluate('tv.uninstall()');
  await append();
  await page.getByRole('combobox', { name: 'Say' }).fill('play');
  await page.getByRole('button', { name: 'Say' }).click();
  assert.match((await lines(1))[0], /call install\(window\) first/);
});
