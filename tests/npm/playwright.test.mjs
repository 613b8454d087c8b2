// The helpers for Playwright: in a plain page, and in its test runner with TypeScript.
import assert from 'node:assert/strict';
import path from 'node:path';
import { after, before, test } from 'node:test';
import { pathToFileURL } from 'node:url';
import { chromium as engine } from 'playwright-core';
import { chromium, makeApplication, packageFolder, runTool } from './application.mjs';

const { installVoice } = await import(pathToFileURL(path.join(packageFolder, 'playwright/index.js')));

let browser;
before(async () => {
  browser = await engine.launch({ executablePath: chromium, args: ['--no-sandbox', '--disable-gpu'] });
});
after(() => browser.close());

const html = `<!doctype html><title>A player</title><iframe srcdoc="<script>parent.framed = 'corvis' in window</script>"></iframe>
<button onclick="document.title = 'played'">Play</button><button>Play trailer</button><script>
  corvis.voiceinteraction.setCallback({
    onpause: function () { return location.pathname; },
    onstop: function () { throw new Error('never played'); },
    onsetplayposition: function (seconds) { return { at: seconds }; },
  });
  setTimeout(function () { corvis.voiceinteraction.listen(); }, 50);
</script>`;

async function open(options) {
  const page = await browser.newPage();
  const voice = await installVoice(page, options);
  await page.route('http://tv.test/**', (route) => route.fulfill({ contentType: 'text/html', body: html }));
  return { page, voice };
}

test('a plain page: what is said waits until the page listens, also after it went to another', async () => {
  const { page, voice } = await open();
  for (const place of ['/one', '/two']) {
    void page.goto(`http://tv.test${place}`);
    await page.waitForURL(`**${place}`, { waitUntil: 'commit' });
    assert.equal((await voice.say('pause')).answer, place);
    assert.equal(voice.answer, place);
  }
  assert.deepEqual(await page.evaluate(() => [window.framed, 'corvisSimulator' in window]), [false, false]);
  await page.close();
});

test('items by title, and what is said to them', async () => {
  const { page, voice } = await open();
  await page.goto('http://tv.test/');
  assert.equal((await voice.item('play')).id, 0);
  assert.deepEqual(
    (await voice.items('trailer')).map(({ title }) => title),
    ['Play trailer']
  );
  await assert.rejects(
    voice.item('stop'),
    /one item with the title "stop", found 0; there are "Play", "Play trailer"/
  );
  await voice.say('select play');
  assert.equal(await page.title(), 'played');
  await voice.restartService();
  assert.equal((await voice.send('ACTION_MEDIA_SET_PLAY_POSITION', 90)).answer, '{"at":90}');
  await page.close();
});

test('what fails is an error with a sentence', async () => {
  const { page, voice } = await open({ timeout: 200, privileges: ['microphone'] });
  assert.throws(() => voice.last, /Nothing has been said yet/);
  await page.goto('http://tv.test/');
  await assert.rejects(voice.say('pause'), /has not called listen\(\) within 200 ms/);
  await voice.setPrivileges(['microphone', 'voicecontrol']);
  await page.evaluate(() => window.corvis.voiceinteraction.listen());
  await assert.rejects(voice.say('puase'), /"puase".*"pause"/);
  assert.equal((await voice.events()).at(-1).said, 'puase');
  await page.close();
  const late = await browser.newPage();
  await late.goto('about:blank');
  const unheard = await installVoice(late);
  await assert.rejects(unheard.say('play'), /loaded before voice control was installed/);
  await late.close();
});

const spec = `import { test as base, expect as plain } from '@playwright/test';
import { voiceFixtures, voiceMatchers, type VoiceFixtures } from 'corvis-voiceinteraction/playwright';

const test = base.extend<VoiceFixtures>(voiceFixtures);
const expect = plain.extend(voiceMatchers);

test.beforeEach(async ({ page }) => {
  await page.route('http://tv.test/**', (route) => route.fulfill({ contentType: 'text/html', body: ${JSON.stringify(html)} }));
  await page.goto('http://tv.test/film');
});

test('passes', async ({ voice }) => {
  await voice.say('pause');
  await expect(voice).toAnswer('/film');
  await expect(voice).toAnswer(/film$/);
  await expect(voice).not.toAnswer('success');
  await voice.say('go to 1:30');
  await expect(voice).toSend('ACTION_MEDIA_SET_PLAY_POSITION', '90');
  await expect(voice).toAnswer({ at: 90 });
});

test.describe('with options', () => {
  test.use({ voiceOptions: { privileges: [], timeout: 100 } });
  test('fails to listen', async ({ voice }) => {
    await voice.say('pause');
  });
});

test('fails an expectation', async ({ voice }) => {
  await voice.say('stop');
  await expect(voice).toAnswer('success');
});
`;

const config = `import { defineConfig } from '@playwright/test';
export default defineConfig({
  reporter: 'line',
  use: { launchOptions: { executablePath: ${JSON.stringify(chromium)}, args: ['--no-sandbox'] } },
});
`;

test("Playwright's test runner, in TypeScript", (t) => {
  const folder = makeApplication(t, { 'voice.spec.ts': spec, 'playwright.config.ts': config }, [
    '@playwright/test',
  ]);
  const options =
    '--noEmit --strict --target es2022 --module esnext --moduleResolution bundler --skipLibCheck';
  assert.equal(runTool(folder, 'tsc', ...options.split(' '), 'voice.spec.ts').text, '');
  const { status, text } = runTool(folder, 'playwright', 'test');
  assert.equal(status, 1, text);
  assert.match(text, /2 failed[^]*1 passed/);
  assert.match(text, /The page has not called listen\(\) within 100 ms/);
  assert.match(
    text,
    /answer to "stop" to be "success", received "not_support"; the callback threw Error: never played/
  );
});
