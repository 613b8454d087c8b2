// Types of the helpers for Playwright.
import type { ContentContextItem, ElementMapItem, VoiceInteractionAppAction } from '../index.js';
import type { Privilege, SimulatorEvent, SimulatorOptions, StepEvent } from '../simulator/index.js';

export interface VoiceOptions extends SimulatorOptions {
  /** How long a page may take until it listens, in milliseconds; 20000 unless given. */
  timeout?: number;
}

/** What a viewer says to a page, and what the page answers. Everything waits until the page listens. */
export interface Voice {
  /** Says a phrase. Rejects with a sentence when it is not understood, or there is no answer. */
  say(text: string): Promise<StepEvent>;
  /** Sends an action with its data. Rejects as `say` does. */
  send(
    action: VoiceInteractionAppAction,
    data?: string | number | Record<string, string | number>
  ): Promise<StepEvent>;
  /** What can be selected on the screen; with a title what `select` and this title means. */
  items(title?: string): Promise<Array<ElementMapItem | ContentContextItem>>;
  /** The one item with this title. Rejects when there is none, or more than one. */
  item(title: string): Promise<ElementMapItem | ContentContextItem>;
  /** The voice service restarts. */
  restartService(): Promise<StepEvent>;
  /** What the application holds from now on. */
  setPrivileges(privileges: Privilege[]): Promise<void>;
  /** Everything that happened in the present page. */
  events(): Promise<SimulatorEvent[]>;
  /** Resolves when the page listens. */
  listening(): Promise<void>;
  /** The last thing said; throws when nothing has been said. */
  readonly last: StepEvent;
  /** Its answer. */
  readonly answer: string | undefined;
}

/** What is used of a Playwright page; those of `playwright`, `playwright-core` and `@playwright/test` have it. */
export interface PageLike {
  addInitScript(script: { content: string }): Promise<unknown>;
  evaluate<Argument, Result>(
    run: (argument: Argument) => Result | Promise<Result>,
    argument: Argument
  ): Promise<Result>;
}

/** Gives a page, from its next document on, a TV's voice control. */
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
  /** The answer to what was said last: this text, a match of this expression, or the JSON of this value. */
  toAnswer(this: { isNot: boolean }, voice: Voice, expected: unknown): Verdict;
  /** The action that what was said last became; with data, as for `toAnswer`. */
  toSend(this: { isNot: boolean }, voice: Voice, action: VoiceInteractionAppAction, data?: unknown): Verdict;
};
