// Types of the simulator: a TV's voice control in a page.
import type { ContentContextItem, ElementMapItem, VoiceInteractionAppAction } from '../index.js';

/** A privilege of the application: the name of one that the API requires, or a URI. */
export type Privilege = 'microphone' | 'voicecontrol' | (string & {});

/** A language that can be spoken. The phrases are a whole phrase file; you can add lines of your own. */
export interface Language {
  tag: string;
  phrases: string;
}

export interface SimulatorOptions {
  /** The application id; `com.example.app` by default. */
  appId?: string;
  /** The privileges of the application; by default the two that the API requires. */
  privileges?: Privilege[];
  /**
   * The language of phrases: `en` (the default), or one from the package's folder `languages`:
   *
   *     import german from 'corvis-voiceinteraction/languages/de.js';
   */
  language?: 'en' | Language;
  /**
   * The console lines that become events: `none` (the default), the page's own (`page`), or also those of the script
   * API (`all`).
   */
  console?: 'none' | 'page' | 'all';
}

/** A phrase, command or other step. Times are in milliseconds. */
export interface StepEvent {
  event: 'step';
  /** `say`, `send`, `items` or `restart`. */
  statement: string;
  /** The statement in the syntax of voice scripts. */
  source: string;
  status: 'passed' | 'failed';
  ms: number;
  /** The phrase or the raw command. */
  said?: string;
  /** The action that was sent. */
  action?: VoiceInteractionAppAction;
  /** The action's data as text. */
  data?: string;
  /** The page's answer, the time to its last piece, and the number of its pieces. */
  answer?: string;
  answer_ms?: number;
  pieces?: number;
  /** The exception of the page's callback, which is why the answer is `not_support`. */
  exception?: string;
  /** Why the step failed, a sentence. */
  message?: string;
}

/** A console line. */
export interface ConsoleEvent {
  event: 'console';
  level: 'log' | 'info' | 'warn' | 'error' | 'debug' | 'uncaught';
  text: string;
  /** Who wrote the line: the page or the script API. */
  source: 'page' | 'api';
}

/** A notice of the voice service, such as a late answer. */
export interface NoticeEvent {
  event: 'notice';
  text: string;
}

export type SimulatorEvent = StepEvent | ConsoleEvent | NoticeEvent;

/**
 * The TV around a page: the actions of the viewer and the voice service. Commands arrive in a later turn of the page.
 */
export interface Tv {
  /** Says a phrase, such as `go to 1:30`, or `select` and the title of an item on the screen. */
  say(text: string): Promise<StepEvent>;
  /**
   * Sends an action with its data: a text in the syntax of the script statement `send`, or the members of a bundle if
   * the action's data is one.
   */
  send(
    action: VoiceInteractionAppAction,
    data?: string | number | Record<string, string | number>
  ): Promise<StepEvent>;
  /**
   * Requests the items on the screen; with a title only those that `select` with this title matches. Rejects if the
   * page does not answer with a list of items.
   */
  items(title?: string): Promise<ElementMapItem[] | ContentContextItem[]>;
  /** Restarts the voice service: it forgets the application, which registers again by itself. */
  restartService(): Promise<StepEvent>;
  /** Replaces the privileges of the application. */
  setPrivileges(privileges: Privilege[]): void;
  /** A sample phrase for each action that the page handles. */
  phrases(): string[];
  /** Whether the page is registered with the voice service. */
  isListening(): boolean;
  /** The events so far, oldest first; at most the last 10,000. */
  events(): SimulatorEvent[];
  /** Calls `listener` with every further event. Returns a function that removes the listener. */
  onEvent(listener: (event: SimulatorEvent) => void): () => void;
  /** Removes voice control from the window and unregisters the application. */
  uninstall(): void;
}

/**
 * Publishes `corvis.voiceinteraction` in a window. Call it before the page's own scripts run. Replaces a TV that is
 * already installed.
 */
export function install(window?: object, options?: SimulatorOptions): Tv;

/** The TV that is installed in a window. */
export function tvOf(window: object): Tv | undefined;

/**
 * Compiles the module before `install`. Only needed in engines that refuse to compile it synchronously (Chrome before
 * version 115).
 */
export function prepare(): Promise<void>;
