// The helpers for Playwright; docs/in-the-browser.md uses them in its test runner.
import assert from 'node:assert/strict';
import path from 'node:path';
import { test } from 'node:test';
import { pathToFileURL } from 'node:url';
import { packageFolder, useBrowser } from './application.mjs';

const { installVoice, voiceFixtures, voiceMatchers } = await import(
  pathToFileURL(path.join(packageFolder, 'playwright/index.js'))
);

const browser = useBrowser();

const html = `<!doctype html><title>A player</title><iframe srcdoc="<script>parent.framed = 'corvis' in window</script>"></iframe>
<button onclick="document.title = 'played'">Play</button><button>Play trailer</button><script>
  corvis.voiceinteraction.setCallback({
    onpause: function () { return location.pathname; },
    onstop: function () { throw new Error('never played'); },
    onsetplayposition: function (seconds) { return { at: seconds }; },
  });
  setTimeout(function () { corvis.voiceinteraction.listen(); }, 50);
</script>`;

/** A page with the voice that a fixture gives to a test of Playwright's runner. */
async function open(voiceOptions = {}) {
  const page = await browser.newPage();
  let voice;
  await voiceFixtures.voice[0]({ page, voiceOptions }, (made) => (voice = made));
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
  assert.equal((await voice.items('trailer'))[0].title, 'Play trailer');
  const missing = /one item with the title "stop", found 0; there are "Play", "Play trailer"/;
  await assert.rejects(voice.item('stop'), missing);
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

test('an expectation that does not hold says what came', async () => {
  const { page, voice } = await open();
  await page.goto('http://tv.test/');
  const verdicts = [
    ['pause', 'toAnswer', ['/'], true],
    ['pause', 'toAnswer', [/^.$/], true],
    ['pause', 'toAnswer', ['success'], 'Expected the answer to "pause" to be "success", received "/"'],
    ['go to 1:30', 'toAnswer', [{ at: 90 }], true],
    ['go to 1:30', 'toSend', ['ACTION_MEDIA_SET_PLAY_POSITION', '90'], true],
    [
      'go to 1:30',
      'toSend',
      ['ACTION_PLAY'],
      /become ACTION_PLAY, received ACTION_MEDIA_SET_PLAY_POSITION "90"$/,
    ],
    ['stop', 'toAnswer', ['success'], /received "not_support"; the callback threw Error: never played$/],
  ];
  for (const [said, matcher, expected, result] of verdicts) {
    await voice.say(said);
    const { pass, message } = voiceMatchers[matcher](voice, ...expected);
    if (result === true) assert.ok(pass, message());
    else assert.match(message(), new RegExp(result));
    assert.equal(pass, result === true);
  }
  await page.close();
});
