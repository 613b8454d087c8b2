// TypeScript declarations of corvis.voiceinteraction, the API through which web applications on a TV support voice
// control. The comments are the API's reference.
//
// A script references the global object with `/// <reference types="corvis-voiceinteraction" />`, and imports types
// with `import type { VoiceCallbacks } from 'corvis-voiceinteraction'`.

/**
 * Where an application is, as an answer to {@link VoiceCallbacks.onupdatestate}: `"None"`, `"Home"`, `"List"`,
 * `"Player"`, `"Setting"`, `"Search"` or `"Unknown"`.
 */
export type VoiceApplicationState = 'None' | 'Home' | 'List' | 'Player' | 'Setting' | 'Search' | 'Unknown';

/** The names of the voice actions. Each callback of {@link VoiceCallbacks} handles one of them. */
export type VoiceInteractionAppAction =
  | 'ACTION_REQUEST_APP_CONTEXT'
  | 'ACTION_NAVIGATION'
  | 'ACTION_SEARCH'
  | 'ACTION_PLAY'
  | 'ACTION_STOP'
  | 'ACTION_PAUSE'
  | 'ACTION_EXIT'
  | 'ACTION_SELECTION'
  | 'ACTION_TITLE_SELECTION'
  | 'ACTION_CUSTOM'
  | 'ACTION_FAST_FORWARD'
  | 'ACTION_REWIND'
  | 'ACTION_DEFAULT_SEARCH'
  | 'ACTION_SEARCH_COLLECTION'
  | 'ACTION_CHANGE_APP_STATE'
  | 'ACTION_MEDIA_TRACK_PREVIOUS'
  | 'ACTION_MEDIA_TRACK_NEXT'
  | 'ACTION_MEDIA_RESTART'
  | 'ACTION_MEDIA_SKIP_BACKWARD'
  | 'ACTION_MEDIA_SKIP_FORWARD'
  | 'ACTION_MEDIA_SET_PLAY_POSITION'
  | 'ACTION_MEDIA_SET_SUBTITLE'
  | 'ACTION_MEDIA_SET_SHUFFLE'
  | 'ACTION_MEDIA_SET_SCREEN_FIT'
  | 'ACTION_MEDIA_SET_ZOOM'
  | 'ACTION_MEDIA_SET_ROTATE'
  | 'ACTION_MEDIA_SET_360_MODE'
  | 'ACTION_MEDIA_SET_REPEAT'
  | 'ACTION_MEDIA_CONTINUE_WATCHING'
  | 'ACTION_REQUEST_CONTENT_CONTEXT'
  | 'ACTION_ITEM_SELECTION'
  | 'ACTION_ADDITION_TO_LIST'
  | 'ACTION_REMOVAL_FROM_LIST'
  | 'ACTION_UNKNOWN';

/** Directions of navigation. `"NAV_UNKNOWN"` is never delivered. */
export type VoiceNavigation =
  | 'NAV_PREVIOUS'
  | 'NAV_NEXT'
  | 'NAV_LEFT'
  | 'NAV_RIGHT'
  | 'NAV_UP'
  | 'NAV_DOWN'
  | 'NAV_SHOW_MORE'
  | 'NAV_UNKNOWN';

/**
 * The fields of a search term. `"SEARCH_TERM_RAW"` cannot be read with
 * {@link VoiceInteraction.getDataFromSearchTerm}.
 */
export type VoiceSearchTermField =
  | 'SEARCH_TERM_UTTERANCE'
  | 'SEARCH_TERM_TITLE'
  | 'SEARCH_TERM_GENRE'
  | 'SEARCH_TERM_CAST'
  | 'SEARCH_TERM_CONTENT_TYPE'
  | 'SEARCH_TERM_RELEASE_DATE_FROM'
  | 'SEARCH_TERM_RELEASE_DATE_TO'
  | 'SEARCH_TERM_RAW';

/** Turns a function off or on. */
export type MediaFunctionMode = 'MEDIA_FUNCTION_OFF' | 'MEDIA_FUNCTION_ON';

/** Directions of rotation. */
export type MediaRotateMode = 'MEDIA_ROTATE_LEFT' | 'MEDIA_ROTATE_RIGHT';

/** Directions of zooming. */
export type MediaZoomMode = 'MEDIA_ZOOM_IN' | 'MEDIA_ZOOM_OUT';

/** What to repeat: nothing, one title or all titles. */
export type MediaRepeatMode = 'MEDIA_REPEAT_OFF' | 'MEDIA_REPEAT_ONE' | 'MEDIA_REPEAT_ALL';

/** The lists to add to or remove from; `"LIST_UNKNOWN"` for a list that the script doesn't know. */
export type ListItem = 'LIST_BOOKMARKS' | 'LIST_WATCH_LATER' | 'LIST_UNKNOWN';

/**
 * The terms of a search. Every member is optional. The object that a callback receives is frozen; read it directly or
 * with {@link VoiceInteraction.getDataFromSearchTerm}, which refuses an empty one. It is empty if the voice service's data
 * could not be parsed.
 */
export type SearchTerm = {
  /** The user's words. */
  readonly utterance?: string;
  /** The title searched for. */
  readonly title?: string;
  /** The genre. */
  readonly genre?: string;
  /** A member of the cast. */
  readonly cast?: string;
  /** The type of content. */
  readonly contentType?: string;
  /** Start of the range of release dates, in the voice service's own format. */
  readonly from?: string;
  /** End of the range of release dates, in the voice service's own format. */
  readonly to?: string;
};

/** An object or array whose JSON text is the answer. The type excludes functions and promises. */
export type AnswerObject = object & {
  readonly [name in 'then' | 'call']?:
    null | boolean | number | string | (object & { readonly call?: never });
};

/**
 * The return value of a callback, which is the only answer to the command:
 *
 * | returned | answer to the voice service |
 * |---|---|
 * | nothing, `undefined`, `null`, `true` | `success` |
 * | `false` | `not_support` |
 * | a string | that string |
 * | a number, an object, an array | its JSON text |
 * | a function, a symbol, a value that JSON can't represent | `not_support` |
 *
 * If a callback throws, the answer is `not_support`, and the page does not see the error. Asynchronous answers are not
 * supported: a promise would be answered with the text `{}`.
 */
export type Answer = void | undefined | null | boolean | string | number | AnswerObject;

/**
 * A callback with a converted parameter, which is always present and has a fixed value for unknown texts. A number is what
 * JavaScript's `Number(text)` returns for texts such as `"90"`, `" -1.5e2 "`, `"0x1F"` or `"Infinity"`; 0 for all others.
 */
export type ParameterCallback<P> = (this: unknown, parameter: P) => Answer;

/**
 * A callback that receives the text of the command unchanged. The text is often empty, and missing if the command has
 * none.
 */
export type TextCallback = (this: unknown, text?: string) => Answer;

/**
 * The callbacks of an application, passed to {@link VoiceInteraction.setCallback}. Every property is optional; an
 * action without a callback is answered `not_support`, except `ACTION_REQUEST_CONTENT_CONTEXT`, which the script can
 * answer itself, and `ACTION_ITEM_SELECTION`, which it always handles. Only the object's own properties count, and each
 * must be a function.
 */
export interface VoiceCallbacks {
  /**
   * `ACTION_REQUEST_APP_CONTEXT`: the voice service asks for the state of the application. Return a
   * {@link VoiceApplicationState} such as `"Player"`; the script does not check the value.
   */
  onupdatestate?: TextCallback;
  /** `ACTION_NAVIGATION`: move the focus or the page. An unknown text arrives as `"NAV_NEXT"`. */
  onnavigation?: ParameterCallback<Exclude<VoiceNavigation, 'NAV_UNKNOWN'>>;
  /** `ACTION_SEARCH`: search for something. */
  onsearch?: ParameterCallback<SearchTerm>;
  /** `ACTION_PLAY`: start or resume playing. */
  onplay?: TextCallback;
  /** `ACTION_STOP`: stop playing. */
  onstop?: TextCallback;
  /** `ACTION_PAUSE`: pause playing. */
  onpause?: TextCallback;
  /** `ACTION_EXIT`: leave the application. */
  onexit?: TextCallback;
  /** `ACTION_SELECTION`: select by number; 0 for a text that is not a number. */
  onselection?: ParameterCallback<number>;
  /** `ACTION_TITLE_SELECTION`: select by title, which is the text. */
  ontitleselection?: TextCallback;
  /** `ACTION_CUSTOM`: a custom action of the application. The text is a JSON object whose members are strings. */
  oncustom?: TextCallback;
  /** `ACTION_FAST_FORWARD`: wind forward. */
  onfastforward?: TextCallback;
  /** `ACTION_REWIND`: wind back. */
  onrewind?: TextCallback;
  /**
   * `ACTION_DEFAULT_SEARCH`: a search outside any search page. The text is a {@link SearchTerm} as JSON, which, unlike
   * for `onsearch`, is not parsed.
   */
  ondefaultsearch?: TextCallback;
  /**
   * `ACTION_SEARCH_COLLECTION`: search a collection and answer with what was found, built with
   * {@link VoiceInteraction.buildCollectionDeeplinkData} or {@link VoiceInteraction.buildCollectionShowData}.
   */
  onsearchcollection?: ParameterCallback<SearchTerm>;
  /** `ACTION_CHANGE_APP_STATE`: go to the state that the text names. */
  onchangeappstate?: TextCallback;
  /** `ACTION_MEDIA_TRACK_PREVIOUS`: go to the previous track. */
  onchangeprevioustrack?: TextCallback;
  /** `ACTION_MEDIA_TRACK_NEXT`: go to the next track. */
  onchangenexttrack?: TextCallback;
  /** `ACTION_MEDIA_RESTART`: play from the beginning. */
  onrestart?: TextCallback;
  /** `ACTION_MEDIA_SKIP_BACKWARD`: skip backward by a number; 0 for a text that is not a number. */
  onskipbackward?: ParameterCallback<number>;
  /** `ACTION_MEDIA_SKIP_FORWARD`: skip forward by a number; 0 for a text that is not a number. */
  onskipforward?: ParameterCallback<number>;
  /** `ACTION_MEDIA_SET_PLAY_POSITION`: go to a position; 0 for a text that is not a number. */
  onsetplayposition?: ParameterCallback<number>;
  /** `ACTION_MEDIA_SET_SUBTITLE`: turn subtitles off or on; off for an unknown text. */
  onchangesubtitlemode?: ParameterCallback<MediaFunctionMode>;
  /** `ACTION_MEDIA_SET_SHUFFLE`: turn shuffle off or on; off for an unknown text. */
  onchangeshufflemode?: ParameterCallback<MediaFunctionMode>;
  /** `ACTION_MEDIA_SET_SCREEN_FIT`: turn fitting to the screen off or on; off for an unknown text. */
  onchangescreenfitmode?: ParameterCallback<MediaFunctionMode>;
  /** `ACTION_MEDIA_SET_ZOOM`: zoom in or out; in for an unknown text. */
  onzoom?: ParameterCallback<MediaZoomMode>;
  /** `ACTION_MEDIA_SET_ROTATE`: rotate left or right; left for an unknown text. */
  onrotate?: ParameterCallback<MediaRotateMode>;
  /** `ACTION_MEDIA_SET_360_MODE`: turn the 360 degree view off or on; off for an unknown text. */
  onchange360mode?: ParameterCallback<MediaFunctionMode>;
  /** `ACTION_MEDIA_SET_REPEAT`: what to repeat; nothing for an unknown text. */
  onchangerepeatmode?: ParameterCallback<MediaRepeatMode>;
  /** `ACTION_MEDIA_CONTINUE_WATCHING`: resume what was watched before. */
  oncontinuewatching?: TextCallback;
  /**
   * `ACTION_REQUEST_CONTENT_CONTEXT`: the voice service asks what is on the screen. Answer with
   * {@link VoiceInteraction.buildVoiceInteractionContentContextResponse}. Without this callback the script answers
   * with a map of the page's clickable elements, a JSON array of {@link ElementMapItem}, and item selections click
   * them. With it no map is made: item selections click the elements of the map that an earlier registration has left, or
   * are answered `not_support` if there is none.
   */
  onrequestcontentcontext?: TextCallback;
  /** `ACTION_ADDITION_TO_LIST`: add the current title to a list. */
  onadditiontolist?: ParameterCallback<ListItem>;
  /** `ACTION_REMOVAL_FROM_LIST`: remove the current title from a list. */
  onremovalfromlist?: ParameterCallback<ListItem>;
}

/** One item on the screen, as an application describes it in its own answer to a content-context request. */
export interface ContentContextItem {
  /** Horizontal position of the item. */
  positionX: number;
  /** Vertical position of the item. */
  positionY: number;
  /** The name by which a user would call the item. */
  title: string;
  /** Further names. */
  alias: unknown[];
  /** Whether the item has the focus. */
  bFocused: boolean;
}

/**
 * One element of the map with which the script itself answers content-context requests: elements that a user can
 * activate and that have a readable title, in document order. Its limits:
 *
 * - While the page has a frame that it may not read, such as one of another origin, every request is answered
 *   `not_support`.
 * - A selection looks for the elements of all frames in the last frame.
 * - Elements of SVG images are listed, but only those with an own `id` can be selected.
 * - A selection without a number, such as `{}`, `{"id":"x"}` or an empty text, selects item 0.
 */
export interface ElementMapItem {
  /** The number by which an item selection refers to the element; counts from 0 in every request. */
  id: number;
  /** The element's text, or else its `title` or `aria-label`, or an `aria-label`, `alt` or `title` of its images. */
  title: string;
  /** Left edge in the viewport of the element's document, in whole CSS pixels. */
  x: number;
  /** Top edge in the viewport of the element's document, in whole CSS pixels. */
  y: number;
  /** Width in whole CSS pixels. */
  w: number;
  /** Height in whole CSS pixels. */
  h: number;
  /** Whether the element is the page's active element; never true inside an inline frame. */
  focused: boolean;
  /** Whether the element's own computed style shows it: `display` isn't `none` and `visibility` isn't `hidden`. */
  visible: boolean;
  /** Whether the element was found inside an inline frame; false after a nested frame, although still inside. */
  iframe: boolean;
}

/**
 * The error for an invalid argument: `name` is `"TypeMismatchError"`, and `message` says which argument is invalid. The
 * global `CorviException` is its class, to which a runtime may add other errors; `name` identifies them.
 */
export interface CorviException extends Error {
  readonly name: string;
  readonly code: string;
  readonly message: string;
}

/**
 * The error of methods that need privileges, if the application lacks one: `name` is `"SecurityError"`, and `message`
 * is `"Microphone PrivilegeException"` or `"Voice Control PrivilegeException"`.
 */
export interface SecurityError extends Error {
  readonly name: 'SecurityError';
}

/**
 * The object `corvis.voiceinteraction`. All methods are synchronous. Those that say so need the microphone and
 * voice-control privileges and check them before any argument.
 */
export interface VoiceInteraction {
  /**
   * Starts to receive voice commands. Usually called after {@link setCallback}, but the order does not matter, and
   * repeated calls are allowed.
   *
   * @throws {SecurityError} when the application lacks a privilege.
   */
  listen(): void;

  /**
   * Sets the voice actions that the application handles, replacing those of earlier calls. The functions are read from
   * the object now; later changes of it have no effect until the next call.
   *
   * A call with an invalid argument changes nothing. A call with an invalid property removes all callbacks; the voice
   * service may still send the actions of the call before, and gets no answer until the next valid call.
   *
   * @param callback - the callbacks; at least one enumerable property.
   * @throws {SecurityError} when the application lacks a privilege.
   * @throws {CorviException} `"callback is not passed"`, `"callback is not object"`, `"callback is empty object"`,
   *   `"callback is not defined"` for a property that is undefined or null, `"callback is not function type"` for any
   *   other property that is not a function.
   */
  setCallback(callback: VoiceCallbacks): void;

  /**
   * The version of the extension, such as `"1.0.8"`.
   *
   * @throws {SecurityError} when the application lacks a privilege.
   */
  getVersion(): string;

  /**
   * Reads one field of a search term. An empty search term, which a callback may receive, is refused.
   *
   * @param st - a search term: only members of {@link SearchTerm}, at least one, all strings.
   * @param field - which field.
   * @returns the field's text; undefined if the search term doesn't have the field.
   * @throws {SecurityError} when the application lacks a privilege.
   * @throws {CorviException} `"param is not valid object"`, or else `"field value is invalid"`.
   */
  getDataFromSearchTerm(
    st: SearchTerm,
    field: Exclude<VoiceSearchTermField, 'SEARCH_TERM_RAW'>
  ): string | undefined;

  /**
   * Builds one entry of a collection search's answer: a deep link into an application's content.
   *
   * @param appId - id of the application that shows the content.
   * @param title - the content's title.
   * @param payload - what the application needs to find the content.
   * @returns JSON text with the members `type`, `app_id`, `title`, `content_id`.
   * @throws {SecurityError} when the application lacks a privilege.
   * @throws {CorviException} `"appId is not string"`, `"title is not string"`, `"payload is not string"`.
   */
  buildCollectionDeeplinkData(appId: string, title: string, payload: string): string;

  /**
   * Builds one entry of a collection search's answer: a show with a picture.
   *
   * @param appId - id of the application that shows the content.
   * @param title - the show's title.
   * @param payload - what the application needs to find the content.
   * @param thumbnail - the picture.
   * @returns JSON text with the members `type`, `app_id`, `title`, `content_id`, `thumbnail`.
   * @throws {SecurityError} when the application lacks a privilege.
   * @throws {CorviException} as for {@link buildCollectionDeeplinkData}, and `"thumbnail is not string"`.
   */
  buildCollectionShowData(appId: string, title: string, payload: string, thumbnail: string): string;

  /**
   * Builds one item on the screen for {@link buildVoiceInteractionContentContextResponse}. Needs no privilege.
   *
   * @param positionX - horizontal position.
   * @param positionY - vertical position.
   * @param title - the name by which a user would call the item.
   * @param aliasArr - further names; the item refers to this array and does not copy it.
   * @param bFocused - whether the item has the focus.
   * @throws {CorviException} `"title is not string"`, `"alias is not array"`, `"positionX is not number"`,
   *   `"positionY is not number"`, `"bFocused is not boolean"`, in this order.
   */
  buildVoiceInteractionContentContextItem(
    positionX: number,
    positionY: number,
    title: string,
    aliasArr: unknown[],
    bFocused: boolean
  ): ContentContextItem;

  /**
   * Builds the answer of {@link VoiceCallbacks.onrequestcontentcontext}. Needs no privilege. Throws a `TypeError` for items
   * that JSON can't represent, such as one whose `alias` contains itself.
   *
   * @param contentContextArr - the items on the screen; they may have further members.
   * @returns the JSON text of the array.
   * @throws {CorviException} `"contentContextArr is not array"`, `"param is not object"`,
   *   `"param contains invalid object"`, or an error of {@link buildVoiceInteractionContentContextItem} for an item.
   */
  buildVoiceInteractionContentContextResponse(contentContextArr: readonly ContentContextItem[]): string;
}

declare global {
  /** The class of the errors for invalid arguments. */
  const CorviException: abstract new (code: string, message: string) => CorviException;

  /** The APIs of the TV's web runtime. */
  namespace corvis {
    /** Voice control; present only in pages of applications. */
    const voiceinteraction: VoiceInteraction;
  }
}
