// Types of the simulator: a TV's voice control in a page.
import type { ContentContextItem, ElementMapItem, VoiceInteractionAppAction } from '../index.js';

/** What the application may hold: the two that the API asks for, by name, or a privilege's URI. */
export type Privilege = 'microphone' | 'voicecontrol' | (string & {});

export interface SimulatorOptions {
  /** The application's id; `com.example.app` unless given. */
  appId?: string;
  /** What the application holds; the two that the API asks for unless given. */
  privileges?: Privilege[];
  /**
   * Which console lines become events: none (unless given otherwise), the page's (`page`), or those of the script API
   * as well (`all`).
   */
  console?: 'none' | 'page' | 'all';
}

/** Something said or done. Times are in milliseconds. */
export interface StepEvent {
  event: 'step';
  /** `say`, `send`, `items` or `restart`. */
  statement: string;
  /** The statement as a voice script would have it. */
  source: string;
  status: 'passed' | 'failed';
  ms: number;
  /** The phrase or the raw command. */
  said?: string;
  /** What it became, when it was sent. */
  action?: VoiceInteractionAppAction;
  /** The action's data as text. */
  data?: string;
  /** The page's answer, the time to its last piece, and in how many pieces it came. */
  answer?: string;
  answer_ms?: number;
  pieces?: number;
  /** What the page's callback threw, which is why the answer is `not_support`. */
  exception?: string;
  /** Why it failed: a sentence. */
  message?: string;
}

/** A line of a console. */
export interface ConsoleEvent {
  event: 'console';
  level: 'log' | 'info' | 'warn' | 'error' | 'debug' | 'uncaught';
  text: string;
  /** The page's own, or the script API's. */
  source: 'page' | 'api';
}

/** What the voice service has to say besides answers. */
export interface NoticeEvent {
  event: 'notice';
  text: string;
}

export type SimulatorEvent = StepEvent | ConsoleEvent | NoticeEvent;

/** The TV around a page: what a viewer and the voice service do. What is said arrives in a later turn of the page. */
export interface Tv {
  /** Says a phrase, such as `go to 1:30`, or `select` and the title of an item on the screen. */
  say(text: string): Promise<StepEvent>;
  /**
   * Sends an action with its data: a text, as a voice script's `send` has it, or the members of a bundle for an action
   * whose data is one.
   */
  send(
    action: VoiceInteractionAppAction,
    data?: string | number | Record<string, string | number>
  ): Promise<StepEvent>;
  /**
   * What can be selected on the screen, as the page answers; with a title only what `select` and this title means.
   * Rejects when the page gives no list of items.
   */
  items(title?: string): Promise<ElementMapItem[] | ContentContextItem[]>;
  /** The voice service restarts: it forgets the application, which registers again by itself. */
  restartService(): Promise<StepEvent>;
  /** What the application holds from now on. */
  setPrivileges(privileges: Privilege[]): void;
  /** What could be said to the page: a phrase for each action that it handles. */
  phrases(): string[];
  /** Whether the page listens, as far as the voice service knows. */
  isListening(): boolean;
  /** Everything so far, oldest first; of a long life the last 10,000. */
  events(): SimulatorEvent[];
  /** Calls `listener` with every further event; returns a function that ends that. */
  onEvent(listener: (event: SimulatorEvent) => void): () => void;
  /** Takes voice control out of the window again; the application is unregistered. */
  uninstall(): void;
}

/**
 * Publishes `corvis.voiceinteraction` in a window, before the page's own scripts need it. A TV that is there already is
 * replaced.
 */
export function install(window?: object, options?: SimulatorOptions): Tv;

/** The TV that is installed in a window. */
export function tvOf(window: object): Tv | undefined;

/**
 * Compiles the module ahead of `install`, for engines that refuse to do so at once (Chrome before version 115). Others
 * need no such call.
 */
export function prepare(): Promise<void>;
