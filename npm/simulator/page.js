// Attaches the unchanged script API and runtime scripts (runtime/page) to a window, as the web runtime does.
import { consoleIn, runtimeIn, scriptApiIn } from '#page';

/**
 * Publishes the script API under `path` in the window. `machine` answers its calls. `print(level, text, source)`
 * receives its console lines and, with `isWatching`, those of the page. Returns the function that receives posted
 * messages.
 */
export function attach(window, path, { machine, print, isWatching }) {
  const reports = consoleIn(window, window.console ?? console)({ print });
  if (isWatching) reports.watch();
  // Exceptions of callbacks are left to the browser's own tools.
  const runtime = runtimeIn(window)({ ...reports, caught: () => {} }, {});
  const build = (xwalk, extension, apiConsole, String) =>
    scriptApiIn(window, window.CorviException, xwalk, extension, apiConsole, String);
  return runtime.attach(path, build, (text) => machine.text('call', text));
}

/** Removes the API from the window. */
export function detach(window, path) {
  const [owner, ...rest] = path.split('.');
  const names = [owner, ...rest.slice(0, -1)];
  const holder = names.reduce((object, name) => object?.[name], window);
  if (holder) delete holder[rest.at(-1)];
  if (window[owner] && Object.keys(window[owner]).length === 0) delete window[owner];
  delete window.CorviException;
}
