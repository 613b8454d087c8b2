// Runs jobs in later turns of the event loop, one per turn and in order. The voice service's messages are delivered in
// such turns. The functions are read when this file is loaded, so that a test's fake timers don't affect them.
const nextTurn = typeof setImmediate === 'function' ? setImmediate : turnsByMessages();

/** Turns in browsers. Uses messages, because timers would delay turns by milliseconds. */
function turnsByMessages() {
  const { port1, port2 } = new MessageChannel();
  const jobs = [];
  port1.onmessage = () => jobs.shift()();
  return (job) => {
    jobs.push(job);
    port2.postMessage(null);
  };
}

/** Runs `job` in a later turn; resolves with what it returns. */
export function inLaterTurn(job) {
  return new Promise((resolve, reject) => {
    nextTurn(() => {
      try {
        resolve(job());
      } catch (error) {
        reject(error);
      }
    });
  });
}
