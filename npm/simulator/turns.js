// Later turns of the main loop, in which a page gets what the voice service sends: one job each, in order. Taken from
// the engine when this file is loaded, so that a test's false clock doesn't stop them.
const nextTurn = typeof setImmediate === 'function' ? setImmediate : turnsByMessages();

/** Turns in browsers: timers would be delayed by milliseconds. */
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
