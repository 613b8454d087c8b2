// Types of the element <corvis-voice>.
import type { Tv } from '../simulator/index.js';

/**
 * A field in which one says something to the page, its last answers, and the numbers of what can be selected. Importing
 * this file defines the element.
 */
export class CorvisVoice extends HTMLElement {
  /** The TV that is spoken to; the one installed in the window unless another is set. */
  tv: Tv | undefined;
  /** Whether the numbers of what can be selected are drawn on the page. */
  numbers: boolean;
}

declare global {
  interface HTMLElementTagNameMap {
    'corvis-voice': CorvisVoice;
  }
}
