// Types of the languages that can be spoken besides English.
import type { Language } from '../simulator/index.js';

declare const language: Language;
export default language;
