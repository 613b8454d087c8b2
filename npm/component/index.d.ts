// Types of the element <corvis-voice>.
import type { Tv } from '../simulator/index.js';

/**
 * A field for phrases, with the page's last answers and the numbers of its items. Importing this file defines the
 * element.
 */
export class CorvisVoice extends HTMLElement {
  /** The TV that the phrases are said to; by default the one installed in the window. */
  tv: Tv | undefined;
  /** Whether the numbers of the items are drawn on the page. */
  numbers: boolean;
}

declare global {
  interface HTMLElementTagNameMap {
    'corvis-voice': CorvisVoice;
  }
}
