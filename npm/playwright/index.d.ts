// Types of the helpers for Playwright.
import type { ContentContextItem, ElementMapItem, VoiceInteractionAppAction } from '../index.js';
import type { Privilege, SimulatorEvent, SimulatorOptions, StepEvent } from '../simulator/index.js';

export interface VoiceOptions extends SimulatorOptions {
  /** How long to wait until the page listens, in milliseconds; 20000 by default. */
  timeout?: number;
}

/** Says phrases to a page and returns its answers. All methods wait until the page listens. */
export interface Voice {
  /** Says a phrase. Rejects with an error message if the phrase is unknown or the page does not answer. */
  say(text: string): Promise<StepEvent>;
  /** Sends an action with its data. Rejects like `say`. */
  send(
    action: VoiceInteractionAppAction,
    data?: string | number | Record<string, string | number>
  ): Promise<StepEvent>;
  /** The items on the screen; with a title only those that `select` with this title matches. */
  items(title?: string): Promise<Array<ElementMapItem | ContentContextItem>>;
  /** The only item with this title. Rejects if there is none or more than one. */
  item(title: string): Promise<ElementMapItem | ContentContextItem>;
  /** Restarts the voice service. */
  restartService(): Promise<StepEvent>;
  /** Replaces the privileges of the application. */
  setPrivileges(privileges: Privilege[]): Promise<void>;
  /** All events of the current page. */
  events(): Promise<SimulatorEvent[]>;
  /** Resolves when the page listens. */
  listening(): Promise<void>;
  /** The last step that said or sent something; throws if there is none. */
  readonly last: StepEvent;
  /** The answer to that step. */
  readonly answer: string | undefined;
}

/** The methods required of a page; pages of `playwright`, `playwright-core` and `@playwright/test` have them. */
export interface PageLike {
  addInitScript(script: { content: string }): Promise<unknown>;
  evaluate<Argument, Result>(
    run: (argument: Argument) => Result | Promise<Result>,
    argument: Argument
  ): Promise<Result>;
}

/** Adds a TV's voice control to a page, from its next document on. */
export function installVoice(page: PageLike, options?: VoiceOptions): Promise<Voice>;

/** For `test.extend<VoiceFixtures>(voiceFixtures)`: the fixture `voice`, and the option `voiceOptions`. */
export interface VoiceFixtures {
  voice: Voice;
  voiceOptions: VoiceOptions;
}
export const voiceFixtures: {
  voiceOptions: [VoiceOptions, { option: true }];
  voice: [
    (
      fixtures: { page: any; voiceOptions: VoiceOptions },
      use: (voice: Voice) => Promise<void>
    ) => Promise<void>,
    { auto: true },
  ];
};

interface Verdict {
  pass: boolean;
  message: () => string;
}

/** For `expect.extend(voiceMatchers)`. */
export const voiceMatchers: {
  /** The last answer equals this text, matches this regular expression, or is the JSON of this value. */
  toAnswer(this: { isNot: boolean }, voice: Voice, expected: unknown): Verdict;
  /** The last phrase became this action; with `data`, its data matches as in `toAnswer`. */
  toSend(this: { isNot: boolean }, voice: Voice, action: VoiceInteractionAppAction, data?: unknown): Verdict;
};
