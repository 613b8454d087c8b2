/// <reference lib="esnext.disposable" />
// Types of the desktop kit for tests in Node.
import type { ContentContextItem, ElementMapItem, VoiceInteractionAppAction } from '../index.js';
import type { StepEvent } from '../simulator/index.js';

export interface LaunchOptions {
  /** The kit's program; `corvis`, as found by PATH, unless given. */
  command?: string;
  /** Options of `corvis run`, such as `['--size', '1280x720']`. */
  args?: string[];
  /** Environment variables besides those of this process. */
  env?: Record<string, string>;
  /** The folder in which relative paths begin. */
  cwd?: string;
}

/** An event of the run, as `corvis run --json` writes it. */
export interface KitEvent {
  event: string;
  [member: string]: unknown;
}

/**
 * A running application. A method rejects with an Error that has the kit's sentence, and the event as its member
 * `event`.
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
  /** What can be selected on the screen; with a title what `select` and this title means. */
  items(title?: string): Promise<Array<ElementMapItem | ContentContextItem>>;
  /** What the first element shows that the selector finds; with a matcher, waits until it holds. */
  show(selector: string, matcher?: string): Promise<string>;
  /** The value of a JavaScript expression; with a matcher, waits until it holds. */
  value(expression: string, matcher?: string): Promise<any>;
  /** Writes what the window shows as a PNG file; `items` draws the numbers of the items on it. */
  screenshot(file: string, options?: { items?: boolean }): Promise<StepEvent>;
  /** Loads another page. */
  open(url: string): Promise<StepEvent>;
  /** Loads the page again. */
  reload(): Promise<StepEvent>;
  /** The voice service restarts. */
  restartService(): Promise<StepEvent>;
  /** Any other statement of voice scripts, such as `privileges none`. */
  do(statement: string): Promise<StepEvent>;
  /** The last thing said; throws when nothing has been said. */
  readonly last: StepEvent;
  /** Its answer. */
  readonly answer: string | undefined;
  /** Everything that happened, oldest first. */
  events(): KitEvent[];
  /** Calls `listener` with every further event; returns a function that ends that. */
  onEvent(listener: (event: KitEvent) => void): () => void;
  /** Ends the application and everything that was started for it. */
  close(): Promise<void>;
  [Symbol.asyncDispose](): Promise<void>;
}

/** Runs an application (a folder with an index.html, an HTML file or a URL); resolves when its page is loaded. */
export function launch(app: string, options?: LaunchOptions): Promise<Kit>;
