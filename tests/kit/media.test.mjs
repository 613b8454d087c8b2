// Media in callbacks, and what the machine can play.
import assert from 'node:assert/strict';
import { writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { run, writePage } from '../../testing/corvis.mjs';

// A second of a tone as a WAV file.
function tone() {
  const rate = 8000;
  const file = Buffer.alloc(44 + rate);
  file.write('RIFF', 0);
  file.writeUInt32LE(36 + rate, 4);
  file.write('WAVEfmt ', 8);
  [16, 0x10001, rate, rate, 0x80001].forEach((value, i) => file.writeUInt32LE(value, 16 + 4 * i));
  file.write('data', 36);
  file.writeUInt32LE(rate, 40);
  for (let i = 0; i < rate; i++) file[44 + i] = 128 + 100 * Math.sin(i / 3);
  return file;
}

test('a callback starts playback with sound, and no library chatters about it', async (t) => {
  const folder = writePage(
    t,
    `<p id="state">idle</p><script>
       const audio = new Audio('tone.wav');
       audio.onended = () => (state.textContent = 'ended');
       audio.onerror = () => (state.textContent = audio.error.message);
       corvis.voiceinteraction.setCallback({
         onplay: () => void audio.play().catch((error) => (state.textContent = error)),
       });
       corvis.voiceinteraction.listen();
     </script>`
  );
  writeFileSync(path.join(folder, 'tone.wav'), tone());
  const script = path.join(folder, 'a.voice');
  writeFileSync(script, 'say play\nexpect success\nshow "#state" is "ended"\n');
  const { code, text } = await run(['test-app', '--console', 'page', folder, script]);
  assert.equal(code, 0, text);
  assert.doesNotMatch(text, /ALSA|AL lib|GStreamer|WebKit|favicon/);
});

test('a callback gets the full screen, by each name of the request', async (t) => {
  const folder = writePage(
    t,
    `<video id="film"></video><p id="box">box</p><pre id="state"></pre><script>
       document.onfullscreenchange = () => (state.textContent = document.fullscreenElement?.id ?? 'left');
       corvis.voiceinteraction.setCallback({
         onplay: () => void film.requestFullscreen(),
         onpause: () => void box.webkitRequestFullscreen(),
         onstop: () => void document.exitFullscreen(),
       });
       corvis.voiceinteraction.listen();
     </script>`
  );
  const script = path.join(folder, 'a.voice');
  const say = (phrase, state) => `say ${phrase}\nexpect success\nshow "#state" is "${state}"\n`;
  writeFileSync(script, say('play', 'film') + say('stop', 'left') + say('pause', 'box'));
  const { code, text } = await run(['test-app', folder, script]);
  assert.equal(code, 0, text);
});

test('doctor reports what there is, and what to install', async () => {
  const { code, text } = await run(['doctor']);
  assert.equal(code, 0, text);
  assert.match(text, /^ok {8}web engine/m);
  for (const name of [
    'MP4 \\(H.264, AAC\\)',
    'HLS',
    'Korean letters',
    'inspector',
    'display',
    'sound device',
  ])
    assert.match(text, new RegExp(`^(ok {8}|missing {3})${name}`, 'm'));
  for (const [line] of text.matchAll(/^missing .*$/gm)) assert.match(line, /: \S/);
});
