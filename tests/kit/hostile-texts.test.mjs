// Text of a page that would act on a terminal, end a line or close a tag is shown as escapes, whatever prints it.
import assert from 'node:assert/strict';
import { writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { run, writePage } from '../../testing/corvis.mjs';

const page = `<button>Play</button><button>Play</button><script>
  var text = 'x\\u001b]0;title\\u0007\\u001b[2J\\rok 1 - forged\\nBail out!\\u202e\\u2066\\u009b\\u2028\\u0085]]><a>\\ud800\\uffff';
  document.querySelectorAll('button').forEach(function (button) { button.title = button.ariaLabel = text; });
  console.log(text);
  corvis.voiceinteraction.setCallback({
    oncustom: function () { console.error(text); alert(text); return text; },
    onplay: function () { throw new Error(text); },
    onpause: function () { var end = Date.now() + 300; while (Date.now() < end); console.log(text); return true; }
  });
  corvis.voiceinteraction.listen();
</script>`;

const script = `timeout 500 ms
test "answers"
send ACTION_CUSTOM x
expect "y"
test "exceptions"
say play
expect success
test "values"
value "text" is "y"
test "late"
timeout 100 ms
say pause
wait 500 ms
`;

// What no output has raw. Lines end in a line feed.
const raw = /(?![\n\t])\p{Cc}|[\u200e\u200f\u202a-\u202e\u2066-\u2069\u2028\u2029]/u;

test('nothing that a page says acts on what reads it', async (t) => {
  const app = writePage(t, page);
  const file = path.join(app, 'a.voice');
  writeFileSync(file, script);
  const input = 'ACTION_CUSTOM x\nplay\nselect play\nselect x\nitems\nitems --diff\nhelp\nquit\n';
  const rows = [
    [['run', app, '--console', 'all'], { input }],
    [['test-app', app, file, '--console', 'all']],
    [['test-app', app, file, '--json', '--coverage']],
    [['test-app', app, file, '--narrate']],
    [['items', app]],
    [['items', app, '--json']],
    [['lint', app, '--call']],
    [['lint', app, '--json']],
  ];
  for (const [args, options] of rows) {
    const { text } = await run(args, options);
    const found = raw.exec(text);
    assert.equal(
      found && JSON.stringify(text.slice(found.index - 80, found.index + 20)),
      null,
      args.join(' ')
    );
    assert.doesNotMatch(text, /^(ok 1 - forged|Bail out!)/m, args.join(' '));
  }
});
