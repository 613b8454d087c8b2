// Reading search terms and building answers: what the methods make of good arguments, and which check decides where
// several arguments are wrong.
import { checksInPage } from '../../../testing/browser.mjs';

const check = checksInPage(() => {
  const { api, mismatch, outcome } = window.voice;
  window.read = api.getDataFromSearchTerm;
  window.readTitle = (st) => outcome(() => window.read(st, 'SEARCH_TERM_TITLE'));
  window.term = { utterance: 'u', title: 't', genre: 'g', cast: 'c', contentType: 'k', from: 'f', to: 'e' };
  window.badTerm = mismatch('param is not valid object');
  window.badField = mismatch('field value is invalid');
  window.item = api.buildVoiceInteractionContentContextItem;
  window.answer = api.buildVoiceInteractionContentContextResponse;
  window.refusal = (items) => outcome(() => window.answer(items));
});

check('a field of a search term')`
  ['UTTERANCE', 'TITLE', 'GENRE', 'CAST'].map((field) => read(term, 'SEARCH_TERM_' + field)).join('') → 'utgc'
  read(term, 'SEARCH_TERM_CONTENT_TYPE') → 'k'
  read(term, 'SEARCH_TERM_RELEASE_DATE_FROM') + read(term, 'SEARCH_TERM_RELEASE_DATE_TO') → 'fe'
  read({ title: 'a' }, 'SEARCH_TERM_GENRE') → undefined
  read(Object.create({ title: 'inherited' }), 'SEARCH_TERM_TITLE') → 'inherited'
  ['SEARCH_TERM_RAW', 'toString', Symbol(), undefined].map((field) => outcome(() => read(term, field))) → Array(4).fill(badField)
  [undefined, null, 'title', {}, { title: 'a', cast: null }].map(readTitle) → Array(5).fill(badTerm)
  [{ title: Symbol() }, { title: Object.create(null) }, { title: 'a', year: '2' }].map(readTitle) → Array(3).fill(badTerm)
  readTitle(Object.create({ year: '2' }, { title: { value: 'a' } })) → badTerm
  read({ title: 5 }, 'SEARCH_TERM_RAW') → badTerm
  logged(() => read({ to: '1' }, 'SEARCH_TERM_RELEASE_DATE_TO'))[0] → 'Investigate to'
  logs[1] → 'Data for to: 1 type : string'
  logs[2] → 'Value for [SEARCH_TERM_RELEASE_DATE_TO] is [1]'
  logged(() => outcome(() => read(1))) → ['param is not object!']
  logged(() => outcome(() => read({}))) → ['param is empty object!']`;

check('collection entries')`
  api.buildCollectionDeeplinkData('a', 'b', 'c') → '{"type":"Deeplink","app_id":"a","title":"b","content_id":"c"}'
  api.buildCollectionDeeplinkData('"é\\n', '', '').slice(19, 34) → '"app_id":"\\\\"é\\\\n'
  api.buildCollectionDeeplinkData(5, 6, 7) → mismatch('appId is not string')
  api.buildCollectionDeeplinkData('a', 6, 7) → mismatch('title is not string')
  api.buildCollectionDeeplinkData('a', 'b', new String('c')) → mismatch('payload is not string')
  api.buildCollectionShowData('a', 'b', 'c', 'd').slice(0, 27) → '{"type":"Show","app_id":"a"'
  api.buildCollectionShowData('a', 'b', 'c', 'd').slice(28) → '"title":"b","content_id":"c","thumbnail":"d"}'
  api.buildCollectionShowData() → mismatch('appId is not string')
  api.buildCollectionShowData('a', null) → mismatch('title is not string')
  api.buildCollectionShowData('a', 'b') → mismatch('payload is not string')
  api.buildCollectionShowData('a', 'b', 'c') → mismatch('thumbnail is not string')`;

check('content-context items and the answer made of them')`
  Object.entries(item(1.5, -2, 'P', ['p', 1], false)).slice(0, 2) → [['positionX', 1.5], ['positionY', -2]]
  Object.entries(item(1, 2, 'P', ['p', 1], false)).slice(2) → [['title', 'P'], ['alias', ['p', 1]], ['bFocused', false]]
  ((alias) => item(1, 2, '', alias, true).alias === alias)([]) → true
  Object.assign(item(1, 2, 'P', [], true), { title: 'Q' }).title → 'Q'
  (document.body.append(document.createElement('iframe')), window.inFrame = frames[0].Array) → frames[0].Array
  answer(inFrame.of(item(1, 2, 'P', inFrame.of(3), true))).slice(-30) → '"alias":[3],"bFocused":true}]'.padStart(30, ',')
  item('1', '2', 5, 'x', 1) → mismatch('title is not string')
  item('1', '2', 't', 'x', 1) → mismatch('alias is not array')
  item('1', '2', 't', [], 1) → mismatch('positionX is not number')
  item(1, '2', 't', [], 1) → mismatch('positionY is not number')
  item(1, 2, 't', [], 1) → mismatch('bFocused is not boolean')
  answer([]) → '[]'
  JSON.parse(answer([item(NaN, 2, 'P', [1], true)]))[0].positionX → null
  answer([{ more: 1, ...item(1, 2, 'P', [], true) }, , ]).slice(0, 23) → '[{"more":1,"positionX":'
  [{ length: 0 }, undefined].map(refusal) → Array(2).fill(mismatch('contentContextArr is not array'))
  [['x', {}], [undefined]].map(refusal) → Array(2).fill(mismatch('param is not object'))
  [[null], [{}], [[]]].map(refusal) → Array(3).fill(mismatch('param contains invalid object'))
  answer([item(1, 2, '', [], true), { title: 1 }]) → mismatch('title is not string')
  answer([{ title: '' }]) → mismatch('alias is not array')
  answer([{ title: '', alias: [] }]) → mismatch('positionX is not number')
  answer([{ title: '', alias: [], positionX: 1 }]) → mismatch('positionY is not number')
  answer([{ title: '', alias: [], positionX: 1, positionY: 1 }]) → mismatch('bFocused is not boolean')`;
