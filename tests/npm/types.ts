// What an application may write, beyond the lines of docs/in-the-browser.md: every line must compile, but for those below
// a marker, which must not.
/// <reference types="corvis-voiceinteraction" />
import type {
  ContentContextItem,
  CorviException,
  ElementMapItem,
  ListItem,
  SecurityError,
  VoiceApplicationState,
  VoiceCallbacks,
  VoiceInteractionAppAction,
} from 'corvis-voiceinteraction';
import { CorvisVoice } from 'corvis-voiceinteraction/component';
import german from 'corvis-voiceinteraction/languages/de.js';
import { installVoice, type PageLike } from 'corvis-voiceinteraction/playwright';
import { install, tvOf, type Tv } from 'corvis-voiceinteraction/simulator';

const voice = corvis.voiceinteraction;
const state: VoiceApplicationState = 'Player';
const lists: Record<ListItem, string> = { LIST_BOOKMARKS: 'a', LIST_WATCH_LATER: 'b', LIST_UNKNOWN: 'c' };
const callbacks: VoiceCallbacks = {
  onupdatestate: () => state,
  onnavigation: (direction) => direction !== 'NAV_SHOW_MORE',
  onsearchcollection: (term) => voice.getDataFromSearchTerm(term, 'SEARCH_TERM_TITLE'),
  onplay() {},
  onpause: () => undefined,
  onstop: (text) => text?.length,
  onselection: (number) => number.toFixed(),
  onchangesubtitlemode: (mode) => mode === 'MEDIA_FUNCTION_ON',
  onchangerepeatmode: (mode) => ({ MEDIA_REPEAT_OFF: 0, MEDIA_REPEAT_ONE: 1, MEDIA_REPEAT_ALL: 2 })[mode],
  onzoom: (mode) => (mode === 'MEDIA_ZOOM_IN' ? null : ['a']),
  onadditiontolist: (list) => lists[list],
  onremovalfromlist: () => ({ then: 5, call: 'a taxi', list: [{ call: null }] }),
  onskipforward: () => ({ call: { number: 1 } }),
  onrequestcontentcontext: () =>
    voice.buildVoiceInteractionContentContextResponse([
      voice.buildVoiceInteractionContentContextItem(1, 2, 'Play', ['start', 1], true),
      { positionX: 0, positionY: 0, title: 'Stop', alias: [], bFocused: false },
    ]),
};
const entry: string = voice.buildCollectionShowData('app', 'title', voice.getVersion(), 'thumbnail');
JSON.parse(voice.buildCollectionDeeplinkData('app', entry, 'payload')) satisfies ContentContextItem[];
try {
  voice.setCallback(callbacks);
} catch (error) {
  const { name, message } = error as SecurityError | CorviException;
  console.log(name === 'SecurityError' ? message : (error as CorviException).code.length);
  if (error instanceof CorviException) console.log(error.code.length);
}
(JSON.parse('[]') as ElementMapItem[])
  .filter(({ visible, iframe }) => visible && !iframe)
  .map(({ x, w }) => x + w / 2);

// The callbacks handle every action but the one that the script keeps and the one that stands for none.
type HandledAction = Exclude<VoiceInteractionAppAction, 'ACTION_ITEM_SELECTION' | 'ACTION_UNKNOWN'>;
export const handlers: Partial<Record<HandledAction, keyof VoiceCallbacks>> = { ACTION_PLAY: 'onplay' };

const tv: Tv = install(window, { appId: 'com.example.app', privileges: ['microphone'], console: 'page' });
await tv.send('ACTION_CUSTOM', { mood: 'dark', level: 3 });
(await tv.say('pause')).answer_ms! < (await tv.items()).map(({ title }) => title).length;
tvOf(window)?.uninstall();
install(window, { language: german });
tvOf(window)?.uninstall();
declare const page: PageLike;
const viewer = await installVoice(page, { timeout: 1000, appId: 'com.example.app' });
viewer.last.action === 'ACTION_PLAY' && viewer.answer?.length;
const element: CorvisVoice = document.createElement('corvis-voice');
element.numbers = tv.phrases().length > 0;
element.tv = tv;

export const refused: VoiceCallbacks[] = [
  // @ts-expect-error null is refused at run time
  { onplay: null },
  // @ts-expect-error nobody waits for a promise
  { onplay: async () => true },
  // @ts-expect-error nobody waits for what is like a promise
  { onplay: () => ({ then: (done: () => void) => done() }) },
  // @ts-expect-error a function has no JSON text
  { onplay: () => () => true },
  // @ts-expect-error the text may be missing
  { onplay: (text) => text.length },
  // @ts-expect-error NAV_UNKNOWN is never delivered
  { onnavigation: (direction) => direction === 'NAV_UNKNOWN' },
  // @ts-expect-error a member may be missing
  { onsearch: (term) => term.title.length },
  // @ts-expect-error search terms are frozen
  { onsearch: (term) => void (term.title = 'other') },
  // @ts-expect-error this one is delivered as text
  { ondefaultsearch: (term: { title?: string }) => term.title },
];
// @ts-expect-error cannot be read
voice.getDataFromSearchTerm({ title: 'a' }, 'SEARCH_TERM_RAW');
// @ts-expect-error the thumbnail is missing
voice.buildCollectionShowData('app', 'title', 'payload');
// @ts-expect-error the focus is missing
voice.buildVoiceInteractionContentContextResponse([{ positionX: 0, positionY: 0, title: 'a', alias: [] }]);
// @ts-expect-error enumerations stay inside the script
voice.VoiceNavigation;
// @ts-expect-error there is no such option
install(window, { app: 'com.example.app' });
// @ts-expect-error a language without its phrases
install(window, { language: 'de' });
// @ts-expect-error a misspelt action
install(window).send('ACTION_PALY');
