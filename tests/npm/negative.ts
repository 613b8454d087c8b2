// Mistakes that the declarations must catch: every line below a marker must fail to compile.
import type { VoiceCallbacks } from 'corvis-voiceinteraction';
import { install } from 'corvis-voiceinteraction/simulator';

const voice = corvis.voiceinteraction;
export const refused: VoiceCallbacks[] = [
  // @ts-expect-error a misspelt callback
  { onPlay: () => true },
  // @ts-expect-error not a function
  { onplay: 5 },
  // @ts-expect-error null is refused at run time
  { onplay: null },
  // @ts-expect-error nobody waits for a promise
  { onplay: async () => true },
  // @ts-expect-error a function has no JSON text
  { onplay: () => () => true },
  // @ts-expect-error a symbol has no JSON text
  { onplay: () => Symbol('s') },
  // @ts-expect-error JSON refuses a BigInt
  { onplay: () => 10n },
  // @ts-expect-error the text may be missing
  { onplay: (text) => text.length },
  // @ts-expect-error positions are numbers
  { onsetplayposition: (position: string) => position },
  // @ts-expect-error NAV_UNKNOWN is never delivered
  { onnavigation: (direction) => direction === 'NAV_UNKNOWN' },
  // @ts-expect-error subtitles have no "auto"
  { onchangesubtitlemode: (mode) => mode === 'MEDIA_FUNCTION_AUTO' },
  // @ts-expect-error a member may be missing
  { onsearch: (term) => term.title.length },
  // @ts-expect-error search terms are frozen
  { onsearch: (term) => void (term.title = 'other') },
  // @ts-expect-error this one is delivered as text
  { ondefaultsearch: (term: { title?: string }) => term.title },
];
// @ts-expect-error a callbacks object is needed
voice.setCallback();
// @ts-expect-error cannot be read
voice.getDataFromSearchTerm({ title: 'a' }, 'SEARCH_TERM_RAW');
// @ts-expect-error no such member
voice.getDataFromSearchTerm({ year: '1' }, 'SEARCH_TERM_TITLE');
// @ts-expect-error the thumbnail is missing
voice.buildCollectionShowData('app', 'title', 'payload');
// @ts-expect-error positions are numbers
voice.buildVoiceInteractionContentContextItem('1', 2, 'title', [], true);
// @ts-expect-error the focus is missing
voice.buildVoiceInteractionContentContextResponse([{ positionX: 0, positionY: 0, title: 'a', alias: [] }]);
// @ts-expect-error enumerations stay inside the script
voice.VoiceNavigation;
// @ts-expect-error there is no such option
install(window, { app: 'com.example.app' });
// @ts-expect-error a misspelt action
install(window).send('ACTION_PALY');
