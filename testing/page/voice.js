// Defines `voice` in a page: the script API on a recording fake of the native side, the records, and helpers to deliver
// commands and to inspect what the script did.
const state = { calls: [], logs: [], listeners: new Map(), failing: {}, throwing: {} };

class NativeManager {
  constructor(channel) {
    state.channel = channel;
  }
  callSync(name, args) {
    state.calls.push([name, JSON.parse(JSON.stringify(args))]);
    if (state.throwing[name]) throw new Error(`no ${name}`);
    if (state.failing[name]) return { status: 'error', error: state.failing[name] };
    return { status: 'success', result: '1.0.8' };
  }
  isFailure(result) {
    return result.status === 'error';
  }
  getErrorObject(result) {
    return Object.assign(new Error(result.error), { name: 'SecurityError' });
  }
  addListener(id, listener) {
    state.listeners.set(id, listener);
  }
  removeListener(id, listener) {
    if (state.listeners.get(id) === listener) state.listeners.delete(id);
  }
}

class CorviException extends Error {
  static TYPE_MISMATCH_ERR = 17;
  constructor(code, message) {
    super(message);
    this.name = code === CorviException.TYPE_MISMATCH_ERR ? 'TypeMismatchError' : `code ${code}`;
  }
}

/** Runs the script API; returns its exports and an eval in its scope, for the few tests that need internals. */
function run(text) {
  const xwalk = { utils: { type: {}, converter: {}, validator: { Types: {} }, NativeManager } };
  const console = { log: (...args) => state.logs.push(args.join(' ')) };
  const body = `var exports;${text}\n;return { api: exports, peek: function (code) { return eval(code); } };`;
  const wrapped = new Function('extension', 'xwalk', 'CorviException', 'console', body);
  return wrapped('the channel', xwalk, CorviException, console);
}

const voiceTools = {
  /** Delivers a command to the script's only listener, even if the page registered nothing, and returns the answer. */
  deliver(action, param, listenerId = 'ACTION_ITEM_SELECTION') {
    state.calls.length = 0;
    const message = { action, listenerId };
    if (param !== undefined) message.param = param;
    state.listeners.get(listenerId)(message);
    const answers = state.calls.filter(([name]) => name === 'Response');
    if (answers.length !== 1 || answers[0][1].action !== action) return { answers };
    return answers[0][1].response;
  },
  /** Returns the result of `action`, or "name: message" of the error that it throws. */
  outcome(action) {
    try {
      return action();
    } catch (error) {
      return `${error.name}: ${error.message}`;
    }
  },
  contentContext: () => JSON.parse(voiceTools.deliver('ACTION_REQUEST_CONTENT_CONTEXT')),
  mismatch: (message) => `TypeMismatchError: ${message}`,
  /** Runs `action` and returns the lines that it logs. */
  logged(action) {
    state.logs.length = 0;
    action();
    return state.logs.slice();
  },
};

return Object.assign(state, run(scriptText), voiceTools);
