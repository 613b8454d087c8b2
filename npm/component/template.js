// The markup and styles of <corvis-voice>.
export const template = `
<style>
  :host { all: initial; position: fixed; right: 16px; bottom: 16px; z-index: 2147483647; color-scheme: light dark; }
  :host([hidden]) { display: none; }
  section { box-sizing: border-box; width: min(360px, calc(100vw - 32px)); padding: 12px; border-radius: 8px;
    font: 14px/1.4 system-ui, sans-serif; color: CanvasText; background: Canvas; border: 1px solid GrayText;
    box-shadow: 0 4px 16px rgb(0 0 0 / 0.3); }
  form { display: flex; gap: 8px; align-items: end; }
  label { flex: 1; }
  input { box-sizing: border-box; width: 100%; }
  input, button { font: inherit; padding: 4px 8px; }
  :focus-visible { outline: 2px solid Highlight; outline-offset: 1px; }
  #answers { margin-top: 8px; max-height: 9em; overflow: auto; }
  p { margin: 0; overflow-wrap: anywhere; }
  .failed { font-weight: bold; }
  #numbers { position: fixed; inset: 0; pointer-events: none; }
  #numbers div { position: absolute; box-sizing: border-box; border: 2px solid #c2185b; }
  #numbers span { position: absolute; left: 0; top: 0; padding: 0 4px; font: bold 13px/1.3 system-ui, sans-serif;
    color: #fff; background: #c2185b; }
</style>
<div id="numbers" aria-hidden="true"></div>
<section aria-label="Voice control">
  <form>
    <label>Say <input id="phrase" list="phrases" autocomplete="off" spellcheck="false"></label>
    <datalist id="phrases"></datalist>
    <button type="submit">Say</button>
    <button type="button" id="toggle" aria-pressed="false">Numbers</button>
  </form>
  <div id="answers" role="log" aria-label="Answers" tabindex="0"></div>
</section>`;
