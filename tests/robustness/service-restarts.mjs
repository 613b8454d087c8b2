// The voice service is killed at random moments and started again, very often, while a page listens: the page
// registers anew each time, every command is answered once, and the page stays as it is.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import readline from 'node:readline';
import { setTimeout as pause } from 'node:timers/promises';
import { until } from '../../testing/corvis.mjs';
import { isShort, program, randomNumbers, startTv, voiceService } from './stage.mjs';

const restarts = isShort ? 10 : 1000;
const commandsPerLife = 10;
const random = randomNumbers(20261123);

const answerLine =
  /^ACTION_CUSTOM once=(\S+) work=\d+ {2}-> {2}\{"once":"(\S+)","work":"\d+"\} {3}\([\d.]+ ms\)$/;
const strayLine = /^Ignored an unexpected answer from \S+: \{"once":"(\S+)","work":"\d+"\}$/;
const goneLine = 'ACTION_CUSTOM: The page went away before it answered.';

// What came of all commands.
const answered = new Set();
const stray = new Set();
const gone = new Set();

// One life of the service. `end` kills it and reads what it had still said.
class Life {
  constructor(number) {
    this.number = number;
    this.answers = 0;
    this.problem = '';
    this.child = spawn(voiceService, ['com.example.app'], { stdio: ['pipe', 'pipe', 'inherit'] });
    this.child.stdin.on('error', () => {});
    for (let k = 1; k <= commandsPerLife; k++)
      this.child.stdin.write(`ACTION_CUSTOM once=${number}.${k} work=${random(30)}\n`);
    this.lines = readline.createInterface({ input: this.child.stdout });
    this.lines.on('line', (line) => this.take(line));
  }

  take(line) {
    const due = `${this.number}.${this.answers + 1}`;
    const answer = answerLine.exec(line);
    const id = strayLine.exec(line)?.[1];
    if (line === goneLine || (answer?.[1] === due && answer[2] === due)) {
      // Gone: the starts of two services, of which one died at once, made the page register twice.
      (line === goneLine ? gone : answered).add(due);
      this.answers++;
      return;
    }
    // Asked by a life that ended before the answer came, or reported as gone (just now, or at once).
    const isUnclaimed = id && (!id.startsWith(`${this.number}.`) || id === due || gone.has(id));
    if (isUnclaimed && !answered.has(id) && !stray.has(id)) stray.add(id);
    else this.problem ||= line;
  }

  // Lets it live until it has so many answers, and up to so long after that.
  async end(count, milliseconds) {
    await until(() => this.answers >= count || this.problem, { output: () => `life ${this.number}` });
    await pause(random(milliseconds));
    const closed = once(this.lines, 'close');
    this.child.kill('SIGKILL');
    await closed;
    assert.equal(this.problem, '', `life ${this.number}`);
  }
}

program('service-restarts', async (t) => {
  const tv = await startTv(t);
  await new Life(0).end(commandsPerLife, 1);
  const token = await tv.evaluate('state.token');
  // A page that is often busy, so that services come and go while commands wait.
  await tv.evaluate('setInterval(workFor, 50, 20)');
  let early = 0;
  for (let number = 1; number <= restarts; number++) {
    const isEarly = random(4) === 0 && number < restarts;
    early += isEarly;
    await (isEarly ? new Life(number).end(0, 30) : new Life(number).end(1 + random(commandsPerLife), 3));
  }
  await new Life(restarts + 1).end(commandsPerLife, 1);
  const calls = await tv.evaluate('state.calls');
  const twice = Object.keys(calls).filter((name) => calls[name] !== 1);
  assert.deepEqual(twice, [], 'the page heard commands twice');
  const unheard = [...answered, ...stray].filter((name) => !calls[name]);
  assert.deepEqual(unheard, [], 'nobody heard what was answered');
  assert.equal(await tv.evaluate('state.token'), token, 'the page was loaded again');
  return (
    `${restarts} restarts after SIGKILL (${early} of them killed again while starting), the page registered again ` +
    `in each of the other ${restarts - early}; ${answered.size} commands answered in order, none lost, none twice; ` +
    `${stray.size} answers that a dead service had asked for, ${gone.size} commands while the page registered twice, ` +
    'reported as such; the page untouched'
  );
});
