// Loads and calls the WebAssembly module: the library, the phrase language and the voice service. Its entry points, in
// module/simulator.cc, receive and return texts.
import { order, size, text as packed } from '#module';
import { bytesOf } from './packing.js';

const encoder = new TextEncoder();
const decoder = new TextDecoder();

let compiled;

const wasmBytes = () => bytesOf(packed, order, size);

/** Compiles the module once for all machines. */
function compile() {
  try {
    compiled ??= new WebAssembly.Module(wasmBytes());
  } catch (cause) {
    // A RangeError reports the size limit; others, such as a content security policy's, are passed on.
    if (!(cause instanceof RangeError)) throw cause;
    throw new Error(
      'This engine does not compile the simulator synchronously; await prepare() before install().',
      {
        cause,
      }
    );
  }
  return compiled;
}

/** Compiles the module asynchronously, for engines that refuse to compile one of this size synchronously. */
export async function prepare() {
  compiled ??= await WebAssembly.compile(wasmBytes());
}

/** The system calls of the C++ library. They provide a clock, but no files, users or environment variables. */
function systemOf(memory) {
  const view = () => new DataView(memory().buffer);
  const setNumbers = (...pairs) => {
    for (const [at, number] of pairs) view().setUint32(at, number, true);
    return 0;
  };
  return {
    clock_time_get(id, precision, at) {
      const milliseconds = id === 0 ? Date.now() : performance.now();
      view().setBigUint64(at, BigInt(Math.round(milliseconds * 1e6)), true);
      return 0;
    },
    environ_sizes_get: (count, size) => setNumbers([count, 0], [size, 0]),
    environ_get: () => 0,
    fd_write(descriptor, vectors, count, written) {
      let size = 0;
      for (let i = 0; i < count; i++) size += view().getUint32(vectors + 8 * i + 4, true);
      return setNumbers([written, size]);
    },
    fd_close: () => 0,
    fd_seek: () => 0,
    proc_exit(status) {
      throw new Error(`The simulator stopped with status ${status}.`);
    },
  };
}

/** The size of the buffer for texts passed to the module; longer texts are allocated separately. */
const arenaSize = 65536;

/** Copies texts into and out of the module's memory. */
function textsOf(exports) {
  const arena = exports.malloc(arenaSize);
  let top = 0;
  let view = new Uint8Array();
  // The memory's buffer is replaced when the memory grows.
  const bytes = () =>
    view.buffer === exports.memory.buffer ? view : (view = new Uint8Array(exports.memory.buffer));
  const writeLong = (text) => {
    const encoded = encoder.encode(text);
    const at = exports.malloc(encoded.length + 1);
    bytes().set(encoded, at);
    bytes()[at + encoded.length] = 0;
    return at;
  };
  const writeShort = (text) => {
    const at = arena + top;
    const { written } = encoder.encodeInto(text, bytes().subarray(at, arena + arenaSize));
    bytes()[at + written] = 0;
    top += written + 1;
    return at;
  };
  return {
    read(at) {
      const memory = bytes();
      return decoder.decode(memory.subarray(at, memory.indexOf(0, at)));
    },
    /** Calls `use` with the addresses of the texts, which are valid until it returns. */
    lend(texts, use) {
      const before = top;
      // A UTF-16 code unit needs at most three bytes of UTF-8.
      const places = texts.map((text) =>
        top + 3 * text.length < arenaSize ? writeShort(text) : writeLong(text)
      );
      const result = use(...places);
      places.filter((at) => at < arena || at >= arena + arenaSize).forEach(exports.free);
      top = before;
      return result;
    },
  };
}

/**
 * Starts a machine. `page` implements module/page.h: deliver(text), event(text). Returns a function that calls entry
 * points with texts: call(name, ...texts) returns a number, call.text(name, ...texts) a text.
 */
export function startMachine(page) {
  const { exports } = new WebAssembly.Instance(compile(), {
    page: {
      deliver: (at) => page.deliver(texts.read(at)),
      event: (at) => page.event(texts.read(at)),
      number: (at) => Number(texts.read(at)),
    },
    env: { emscripten_notify_memory_growth() {}, __syscall_getuid32: () => 0 },
    wasi_snapshot_preview1: systemOf(() => exports.memory),
  });
  exports._initialize();
  const texts = textsOf(exports);
  const call = (name, ...given) => texts.lend(given, exports[name]);
  call.text = (name, ...given) => texts.read(call(name, ...given));
  return call;
}
