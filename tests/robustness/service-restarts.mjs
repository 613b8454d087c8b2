// The voice service is killed at random moments and started again, very often, while a page listens: the page
// registers anew each time, every command is answered once, and the page stays as it is.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import path from 'node:path';
import readline from 'node:readline';
import { setTimeout as pause } from 'node:timers/promises';
import { build } from '../../testing/corvis.mjs';
import { appId, evaluate, isShort, program, randomNumbers, require, startTv, within } from './stage.mjs';

const restarts = isShort ? 10 : 1000;
const commandsPerLife = 10;
const random = randomNumbers(20261123);

const answerLine =
  /^ACTION_CUSTOM once=(\S+) work=\d+ {2}-> {2}\{"once":"(\S+)","work":"\d+"\} {3}\([\d.]+ ms\)$/;
const strayLine = /^An answer of \S+ that nobody waits for is ignored: \{"once":"(\S+)","work":"\d+"\}$/;
const goneLine = 'ACTION_CUSTOM: The page went away before it answered.';

// What came of all commands.
const answered = new Set();
const stray = new Set();
const gone = new Set();

// One life of the service. `answers` calls back with each answer; `end` kills it and reads what it had still said.
function startService(life) {
  const child = spawn(path.join(build, 'bin/robustness_voice_service'), [appId], {
    stdio: ['pipe', 'pipe', 'inherit'],
  });
  child.stdin.on('error', () => {});
  for (let k = 1; k <= commandsPerLife; k++)
    child.stdin.write(`ACTION_CUSTOM once=${life}.${k} work=${random(30)}\n`);
  const lines = readline.createInterface({ input: child.stdout });
  const service = { answers: 0, problem: '', onAnswer: () => {} };
  lines.on('line', (line) => {
    const due = `${life}.${service.answers + 1}`;
    const answer = answerLine.exec(line);
    const late = strayLine.exec(line);
    const isUnclaimed = late && (!late[1].startsWith(`${life}.`) || late[1] === due || gone.has(late[1]));
    if (answer && answer[1] === due && answer[2] === due) {
      service.answers++;
      answered.add(due);
    } else if (line === goneLine) {
      // The starts of two services, of which one died at once, made the page register twice.
      service.answers++;
      gone.add(due);
    } else if (isUnclaimed && !answered.has(late[1]) && !stray.has(late[1])) {
      // Asked by a life that ended before the answer came, or told as gone (just now, or at once).
      stray.add(late[1]);
    } else {
      service.problem ||= line;
    }
    service.onAnswer();
  });
  service.hasAnswered = (count) =>
    new Promise((resolve) => {
      service.onAnswer = () => (service.answers >= count || service.problem) && resolve();
      service.onAnswer();
    });
  service.end = async () => {
    const closed = once(lines, 'close');
    child.kill('SIGKILL');
    await closed;
    require(!service.problem, `life ${life} said: ${service.problem}`);
  };
  return service;
}

// Lets the service live until it has so many answers, and a moment longer.
async function live(life, count) {
  const service = startService(life);
  await within(service.hasAnswered(count), `answer ${count} in life ${life}`);
  await pause(random(3));
  await service.end();
}

async function killWhileStarting(life) {
  const service = startService(life);
  await pause(random(30));
  await service.end();
}

await program('service-restarts', async () => {
  const endTv = startTv();
  try {
    await live(0, commandsPerLife);
    const token = evaluate('state.token');
    // A page that is often busy, so that services come and go while commands wait.
    evaluate('setInterval(workFor, 50, 20)');
    let early = 0;
    for (let life = 1; life <= restarts; life++) {
      if (random(4) === 0 && life < restarts) {
        await killWhileStarting(life);
        early++;
      } else {
        await live(life, 1 + random(commandsPerLife));
      }
    }
    await live(restarts + 1, commandsPerLife);
    const calls = evaluate('state.calls');
    const twice = Object.keys(calls).filter((name) => calls[name] !== 1);
    require(twice.length === 0, `the page was told twice: ${twice}`);
    const unheard = [...answered, ...stray].filter((name) => !calls[name]);
    require(unheard.length === 0, `answered by nobody: ${unheard}`);
    require(evaluate('state.token') === token, 'the page was loaded again');
    return (
      `${restarts} restarts after SIGKILL (${early} of them killed again while starting), the page registered again ` +
      `in each of the other ${restarts - early}; ${answered.size} commands answered in order, none lost, none twice; ` +
      `${stray.size} answers that a dead service had asked for, ${gone.size} commands while the page registered twice, ` +
      'told as such; the page untouched'
    );
  } finally {
    await endTv();
  }
});
