/// <reference lib="esnext.disposable" />
// Types of the desktop kit for tests in Node.
import type { ContentContextItem, ElementMapItem, VoiceInteractionAppAction } from '../index.js';
import type { StepEvent } from '../simulator/index.js';

export interface LaunchOptions {
  /** The kit's program; by default `corvis` in PATH. */
  command?: string;
  /** Options of `corvis run`, such as `['--size', '1280x720']`. */
  args?: string[];
  /** Additional environment variables. */
  env?: Record<string, string>;
  /** The folder to which relative paths refer. */
  cwd?: string;
}

/** An event of the run, as `corvis run --json` writes it. */
export interface KitEvent {
  event: string;
  [member: string]: unknown;
}

/**
 * A running application. On failure methods reject with an Error that has the kit's message, and the event as its
 * member `event`.
 */
export interface Kit {
  /** Says a phrase, or `select` and the title of an item on the screen. */
  say(text: string): Promise<StepEvent>;
  /** Sends an action with its data: a text, or the members of a bundle. */
  send(
    action: VoiceInteractionAppAction,
    data?: string | number | Record<string, string | number>
  ): Promise<StepEvent>;
  /** Presses a key of the remote control, such as `Right`, `OK` or `5`. */
  press(key: string, times?: number): Promise<StepEvent>;
  /** Types into the focused field. */
  type(text: string): Promise<StepEvent>;
  /** The items on the screen; with a title only those that `select` with this title matches. */
  items(title?: string): Promise<Array<ElementMapItem | ContentContextItem>>;
  /** The text of the first element that the selector matches; with a matcher, waits until it holds. */
  show(selector: string, matcher?: string): Promise<string>;
  /** The value of a JavaScript expression; with a matcher, waits until it holds. */
  value(expression: string, matcher?: string): Promise<any>;
  /** Saves a screenshot as a PNG file; `items` draws the numbers of the items on it. */
  screenshot(file: string, options?: { items?: boolean }): Promise<StepEvent>;
  /** Loads another page. */
  open(url: string): Promise<StepEvent>;
  /** Reloads the page. */
  reload(): Promise<StepEvent>;
  /** Restarts the voice service. */
  restartService(): Promise<StepEvent>;
  /** Runs any other statement of voice scripts, such as `privileges none`. */
  do(statement: string): Promise<StepEvent>;
  /** The last step that said or sent something; throws if there is none. */
  readonly last: StepEvent;
  /** The answer to that step. */
  readonly answer: string | undefined;
  /** All events, oldest first. */
  events(): KitEvent[];
  /** Calls `listener` with every further event. Returns a function that removes the listener. */
  onEvent(listener: (event: KitEvent) => void): () => void;
  /** Ends the application and all processes of its run. */
  close(): Promise<void>;
  [Symbol.asyncDispose](): Promise<void>;
}

/** Runs an application (a folder with an index.html, an HTML file or a URL); resolves when its page is loaded. */
export function launch(app: string, options?: LaunchOptions): Promise<Kit>;
