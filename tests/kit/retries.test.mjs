// Tests that fail once: what --retries runs again, and what a run is worth whose tests are flaky.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { jsonLines, testApp } from '../../testing/corvis.mjs';

// Counts how often it was loaded with this profile.
const page = `<script>
  localStorage.loads = 1 + Number(localStorage.loads || 0);
  corvis.voiceinteraction.setCallback({ onplay: function () { return localStorage.loads; } });
  corvis.voiceinteraction.listen();
</script>`;

const flaky = `timeout 200 ms
test "steady"
say play
test "as long as it is loaded once"
value "Number(localStorage.loads)" is "1"
test "the second time"
say play
expect "2"
`;
const never = 'test "never"\nvalue "1" is "2"\n';
const after = 'test "after it"\nsay play\n';

test('a script with a failed test runs again, and each test has the outcome of its attempts', async (t) => {
  const rows = [
    [flaky, ['--retries', '3'], 0, 'passed 1, passed 1, passed 1, flaky 2', 2],
    [flaky, ['--retries', '1', '--fail-on-flaky'], 1, 'passed 1, passed 1, passed 1, flaky 2', 2],
    [flaky, ['--fail-on-flaky'], 1, 'passed 1, passed 1, passed 1, failed 1', 1],
    [
      flaky + never + after,
      ['--retries', '2'],
      1,
      'passed 1, passed 1, passed 1, flaky 2, failed 3, passed 1',
      3,
    ],
  ];
  for (const [script, options, status, outcomes, loads] of rows) {
    const all = ['--json', '--console', 'none', '--profile', 'profile', ...options];
    const { code, text } = await testApp(t, page, script, all);
    const events = jsonLines(text);
    const ends = events.filter(({ event }) => event === 'test-end');
    assert.equal(ends.map((end) => `${end.status} ${end.attempts}`).join(', '), outcomes, text);
    assert.equal(code, status, text);
    const steps = events.filter(({ event, replaced }) => event === 'step' && !replaced);
    assert.equal(steps.length, events[0].steps, `each step counts once:\n${text}`);
    const answers = events.filter(({ statement, answer }) => statement === 'say' && answer);
    assert.ok(
      answers.every(({ answer }) => Number(answer) <= loads),
      text
    );
  }
});
