// Conversations between a voice service and a page, as data: a page, and what is said to it. On a TV and in the
// simulator each gives the same events (conversations.test.mjs).
import { readFileSync } from 'node:fs';

/** A page whose callbacks answer with what they received. */
const echo = `<title>Echo</title><script>
  var names = 'updatestate navigation search play stop pause exit selection titleselection custom fastforward rewind ' +
    'defaultsearch searchcollection changeappstate changeprevioustrack changenexttrack restart skipbackward ' +
    'skipforward setplayposition changesubtitlemode changeshufflemode changescreenfitmode zoom rotate change360mode ' +
    'changerepeatmode continuewatching additiontolist removalfromlist';
  var callbacks = {};
  names.split(' ').forEach(function (name) {
    callbacks['on' + name] = function () {
      return name + ' ' + JSON.stringify([].slice.call(arguments)) + ' ' + typeof arguments[0];
    };
  });
  corvis.voiceinteraction.setCallback(callbacks);
  corvis.voiceinteraction.listen();
</script>`;

/** A page that answers a title selection with what the title, an expression, gives. */
const answers = `<title>Answers</title><script>
  var cycle = {};
  cycle.self = cycle;
  corvis.voiceinteraction.setCallback({ ontitleselection: function (text) { return eval('(' + text + ')'); } });
  corvis.voiceinteraction.listen();
</script>`;

/** A page with items whose boxes are the same in every engine. */
const items = `<title>Items</title>
<style>button, a, li { position: absolute; box-sizing: border-box; margin: 0; }</style>
<div id="items"></div><p id="chosen">nothing</p>
<script>
  var rows = [['button', 'Play'], ['button', 'Play trailer'], ['a', 'Help'], ['button', 'Help'], ['li', 'Töne & "Bilder"']];
  rows.forEach(function (row, i) {
    var element = document.createElement(row[0]);
    element.textContent = row[1];
    element.style.cssText = 'left: 10px; width: 200px; height: 30px; top: ' + (10 + 40 * i) + 'px';
    if (row[0] === 'a') element.href = '#help';
    if (row[0] === 'li') element.tabIndex = 0;
    element.onclick = function () { document.getElementById('chosen').textContent = row[1]; };
    document.getElementById('items').appendChild(element);
  });
  corvis.voiceinteraction.setCallback({ onupdatestate: function () { return document.getElementById('chosen').textContent; } });
  corvis.voiceinteraction.listen();
</script>`;

/** A page that changes what it handles while it is spoken to. */
const changing = `<title>Changing</title><script>
  var voice = corvis.voiceinteraction;
  var own = { onplay: function () { voice.setCallback({ onpause: function () { return 'paused'; } }); return 'playing'; },
    onrequestcontentcontext: function () {
      return voice.buildVoiceInteractionContentContextResponse(
        [voice.buildVoiceInteractionContentContextItem(1, 2, 'Mine', ['own'], true)]);
    },
    onstop: function () { voice.listen(); return voice.getVersion(); } };
  voice.setCallback(own);
  voice.listen();
</script>`;

// Both take what a bar separates.
const sends = (action, texts) => texts.split(' | ').map((text) => ['send', `ACTION_${action} ${text}`]);
const says = (texts) => texts.split(' | ').map((text) => ['say', text]);

/** What is said in a voice script, in order; its expectations are the demo's own test. */
function spokenIn(file) {
  const script = readFileSync(new URL(`../../${file}`, import.meta.url), 'utf8');
  return [...script.matchAll(/^(say|restart)\b *(.*)$/gm)].map(([, word, text]) =>
    word === 'say' ? ['say', text.replace(/^"(.*)"$/, '$1')] : ['restart']
  );
}

export const conversations = [
  { name: 'the demo', folder: 'examples/cinema', steps: spokenIn('examples/cinema/demo.voice') },
  {
    name: 'parameters',
    page: echo,
    steps: [
      ...sends('NAVIGATION', 'PreviousPageCommand | NextPageCommand | MoveRightCommand | MoveLeftCommand'),
      ...sends(
        'NAVIGATION',
        'MoveUpCommand | MoveDownCommand | ShowMore | showmore | constructor | __proto__'
      ),
      ...sends('MEDIA_SET_SUBTITLE', 'on | off | ON | toString'),
      ...sends('MEDIA_SET_REPEAT', 'one | all | off | All'),
      ...sends('MEDIA_SET_ZOOM', 'in | out | Out'),
      ...sends('MEDIA_SET_ROTATE', 'Left | Right | right'),
      ...sends('ADDITION_TO_LIST', 'BookMarks | bookmarks | valueOf'),
      ...sends('SELECTION', '3 | 0x1F | -1.5e2 | abc | 1,5 | {"valueOf":0,"toString":0}'),
      ...sends('MEDIA_SKIP_BACKWARD', '10 | 10s | true |  90'),
      ...sends('TITLE_SELECTION', 'a"b\\c/d€ü | \\/ | {"json": true}'),
      ...sends('TITLE_SELECTION', `${'x'.repeat(9000)} | ${'€'.repeat(3000)}`),
      ...sends('SEARCH', 'title="The Last Harbour" content_type=movie raw=r year=1990 | no pairs | title=""'),
      ...sends('SEARCH', 'title="say \\"hi\\"" genre=a\\b | utterance="ünï, cödé" cast="Jo Abernathy"'),
      ...sends('DEFAULT_SEARCH', 'content_type=movie title=a | x'),
      ...sends('SEARCH_COLLECTION', 'from=1 to=2 Title=x'),
      ...sends('CUSTOM', 'mood="in the dark" level=3 | "one text" | a="say \\"hi\\"" | a=/ b=\\\\'),
      ['send', 'ACTION_PLAY'],
      ['send', 'ACTION_REQUEST_APP_CONTEXT'],
    ],
  },
  {
    name: 'phrases',
    page: echo,
    steps: says(
      'play | Please play the movie! | go right | next page | go to 1:30 | skip back by two minutes | ' +
        'play from the beginning | choose the third one | select number twelve | open The Last Harbour | ' +
        'search for comedies with Jane Doe from 1990 to 2000 | ' +
        'search the collection for documentaries from the 90s | find "Moth" | tell the app to dance | ' +
        'turn off the subtitles please | subtitles on | repeat one | add this to my bookmarks | where am i | ' +
        'show settings'
    ),
  },
  {
    name: 'answers',
    page: answers,
    steps: [
      ...sends('TITLE_SELECTION', 'undefined | null | true | false | "text" | "" | 0 | -1.5 | NaN | {a: 1}'),
      ...sends('TITLE_SELECTION', '["é", undefined] | function () {} | Symbol("s") | cycle | 10n'),
      ...sends('TITLE_SELECTION', 'new String("x") | nothing.at.all | {toJSON: function () { throw 1; }}'),
      ...sends('TITLE_SELECTION', 'Promise.resolve(1) | "x".repeat(12000) | "x".repeat(12400)'),
      ...sends('TITLE_SELECTION', '"€".repeat(100000) | "\\u{1F600}".repeat(9999)'),
      ...sends('TITLE_SELECTION', '["a/b\\\\c", "\\u2028\\n\\t\\u0001"] | "\\\\u0041" | "line\\nfeed"'),
      ['send', 'ACTION_PLAY'],
      ['restart'],
      ...sends('TITLE_SELECTION', '"still here"'),
      ['restart'],
      ['restart'],
      ['send', 'ACTION_PLAY'],
    ],
  },
  {
    name: 'items',
    page: items,
    steps: says(
      'what can i select | select play | where am i | select trailer | where am i | select help | ' +
        'select nothing of this | select number 4 | where am i | select töne | select 99 | where am i'
    ),
  },
  {
    name: 'a page that changes what it handles',
    page: changing,
    steps: says('what can i select | select mine | stop | play | play | pause | what can i select | stop'),
  },
];
