// `corvis run --json`: every line gets its one event, whatever it holds, and the run ends when its input does.
import assert from 'node:assert/strict';
import path from 'node:path';
import { test } from 'node:test';
import { jsonLines, rowsOf, run, scratchFolder, start, until, writePage } from '../../testing/corvis.mjs';

const page = `<button>Play it</button><input autofocus><script>
  corvis.voiceinteraction.setCallback({
    onpause: function () { console.log('pausing \\u202e'); },
    onplay: function () { throw new Error('no film'); },
    onstop: function () { window.close(); },
    oncustom: function (text) { return text; }
  });
  corvis.voiceinteraction.listen();
</script>`;

// Commands, and what their events have.
const conversation = rowsOf(String.raw`
  {"id":1,"command":"say","text":"pause"} → {"event":"step","id":1,"status":"passed","answer":"success"}
  {"id":"two","command":"say","text":"play"} → {"id":"two","answer":"not_support","exception":"Error: no film"}
  {"command":"say","text":"puase"} → {"status":"failed","message":"Unknown phrase \"puase\". Did you mean \"pause\"? help lists the phrases."}
  {"command":"send","action":"ACTION_CUSTOM","data":{"a":"\"é\" \n","b":2}} → {"data":"a=\"\"é\" \n\" b=2"}
  {"command":"items","title":"play it"} → {"numbers":[0]}
  {"command":"value","expression":"({a: [1, null]})"} → {"value":{"a":[1,null]}}
  {"command":"value","expression":"nothing"} → {"status":"failed","console":["log: pausing \u202e","uncaught: Error: no film (index.html:4:42)"]}
  {"command":"show","selector":"button","matcher":"is \"Stop\""} → {"expected":"\"Stop\"","actual":"\"Play it\""}
  {"command":"type","text":"a \"b\""} → {"status":"passed"}
  {"command":"press","key":"Left","times":2} → {"status":"passed","source":"press \"Left\" 2 times"}
  {"command":"value","expression":"document.querySelector(\"input\").value"} → {"value":"a \"b\""}
  {"command":"restart"} → {"status":"passed"}
  {"command":"do","statement":"wait 1 ms"} → {"source":"wait 1 ms"}
  {"command":"do","statement":"note nothing"} → {"event":"error"}
  {"id":7,"command":"reload","hard":true} → {"event":"error","id":7,"message":"Unknown member \"hard\"."}
  {"command":"press","key":"Left","times":-1} → {"message":"Expected a number as the member \"times\"."}
  [] → {"event":"error"}
  {} → {"message":"Expected a text as the member \"command\"."}`).map((row) =>
  row.map((side) => JSON.parse(side))
);

test('each line gets its event, in order, and garbage an error', async (t) => {
  const picture = path.join(scratchFolder(t), 'page.png');
  const rows = [
    ...conversation,
    [{ command: 'screenshot', file: picture, items: true }, { screenshot: picture }],
    [{ command: 'screenshot', file: '/dev/full' }, { status: 'failed' }],
  ];
  const input = `${rows.map(([command]) => JSON.stringify(command)).join('\n')}\n\n\xff[[[\n{"command":"quit"}\nlost`;
  const { code, text } = await run(['run', '--json', '--timeout', '400', writePage(t, page)], { input });
  assert.equal(code, 0, text);
  const events = jsonLines(text);
  const replies = events.filter(({ event }) => event === 'step' || event === 'error');
  assert.equal(replies.length, rows.length + 1, text);
  rows.forEach(([command, expected], index) => {
    const actual = Object.fromEntries(Object.keys(expected).map((name) => [name, replies[index][name]]));
    assert.deepEqual(actual, expected, `${JSON.stringify(command)} got ${JSON.stringify(replies[index])}`);
  });
  assert.equal(replies.at(-1).message, 'This is not JSON.');
  assert.equal(events.at(-1).status, 0);
  assert.ok(events.find(({ event }) => event === 'registered').actions.includes('ACTION_PAUSE'), text);
});

test('a run that ends before its input does says why', async (t) => {
  const rows = [
    [writePage(t, page), '{"id": 1, "command": "say", "text": "stop"}\n', 1, 'closed'],
    [scratchFolder(t), '', 3, 'abort'],
    [writePage(t, page), undefined, 130, 'start'],
  ];
  for (const [application, input, status, event] of rows) {
    const command = start(['run', '--json', application]);
    if (input !== undefined) command.child.stdin.write(input);
    await until(() => command.output().includes(`"event":"${event}"`), command);
    if (input === undefined) command.child.kill('SIGINT');
    const { code, text } = await command.exited;
    assert.equal(code, status, text);
    assert.equal(jsonLines(text).at(-1).status, status, text);
  }
});
