// What an application may write: every line must compile.
/// <reference types="corvis-voiceinteraction" />
import type {
  ContentContextItem,
  CorviException,
  ElementMapItem,
  ListItem,
  SearchTerm,
  SecurityError,
  VoiceApplicationState,
  VoiceCallbacks,
  VoiceInteraction,
  VoiceInteractionAppAction,
} from 'corvis-voiceinteraction';
import { CorvisVoice } from 'corvis-voiceinteraction/component';
import { installVoice, type PageLike, type Voice } from 'corvis-voiceinteraction/playwright';
import { install, tvOf, type Tv } from 'corvis-voiceinteraction/simulator';

interface Found {
  readonly titles: readonly string[];
}
const voice: VoiceInteraction = corvis.voiceinteraction;
const found: Found = { titles: ['a'] };
const state: VoiceApplicationState = 'Player';
const lists: Record<ListItem, string> = { LIST_BOOKMARKS: 'a', LIST_WATCH_LATER: 'b', LIST_UNKNOWN: 'c' };

const callbacks: VoiceCallbacks = {
  onupdatestate: () => state,
  onnavigation: (direction) => direction !== 'NAV_SHOW_MORE',
  onsearch: (term: SearchTerm) => (term.title ? found : false),
  onsearchcollection: (term) => voice.getDataFromSearchTerm(term, 'SEARCH_TERM_TITLE'),
  onplay() {},
  onpause: () => undefined,
  onstop: (text) => text?.length,
  onselection: (number) => number.toFixed(),
  onsetplayposition: (seconds) => seconds > 0,
  onchangesubtitlemode: (mode) => mode === 'MEDIA_FUNCTION_ON',
  onchangerepeatmode: (mode) => ({ MEDIA_REPEAT_OFF: 0, MEDIA_REPEAT_ONE: 1, MEDIA_REPEAT_ALL: 2 })[mode],
  onzoom: (mode) => (mode === 'MEDIA_ZOOM_IN' ? null : ['a']),
  onadditiontolist: (list) => lists[list],
  onrequestcontentcontext: () =>
    voice.buildVoiceInteractionContentContextResponse([
      voice.buildVoiceInteractionContentContextItem(1, 2, 'Play', ['start', 1], true),
      { positionX: 0, positionY: 0, title: 'Stop', alias: [], bFocused: false },
    ]),
};
voice.setCallback(callbacks);
voice.listen();
const entry: string = voice.buildCollectionShowData('app', 'title', voice.getVersion(), 'thumbnail');
JSON.parse(voice.buildCollectionDeeplinkData('app', entry, 'payload')) satisfies ContentContextItem[];

try {
  voice.listen();
} catch (error) {
  const { name, message } = error as SecurityError | CorviException;
  console.log(name === 'SecurityError' ? message : (error as CorviException).code);
}
const records = JSON.parse('[]') as ElementMapItem[];
records.filter(({ visible, iframe }) => visible && !iframe).map(({ x, w }) => x + w / 2);

// The callbacks handle every action but the one that the script keeps and the one that stands for none.
type HandledAction = Exclude<VoiceInteractionAppAction, 'ACTION_ITEM_SELECTION' | 'ACTION_UNKNOWN'>;
export const handlers: Partial<Record<HandledAction, keyof VoiceCallbacks>> = { ACTION_PLAY: 'onplay' };

// The simulator.
const tv: Tv = install(window, { appId: 'com.example.app', privileges: ['microphone'], console: 'page' });
const paused = await tv.say('pause');
paused.answer === 'success' && paused.answer_ms! < 1;
await tv.send('ACTION_CUSTOM', { mood: 'dark', level: 3 });
await tv.send('ACTION_PLAY');
(await tv.items()).map(({ title }) => title);
tv.onEvent((event) => event.event === 'console' && event.source === 'api')();
tv.setPrivileges([]);
tvOf(window)?.uninstall();

// Voice in a page of Playwright's.
declare const page: PageLike;
const viewer: Voice = await installVoice(page, { timeout: 1000, appId: 'com.example.app' });
await viewer.send('ACTION_CUSTOM', { mood: 'dark' });
(await viewer.item('Play')).title.length;
viewer.last.action === 'ACTION_PLAY' && viewer.answer?.length;

// The element.
const element: CorvisVoice = document.createElement('corvis-voice');
element.numbers = tv.phrases().length > 0;
element.tv = tv;
