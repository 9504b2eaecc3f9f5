// The page's drawing thread: text to outline block with HarfBuzz, block to pixels with the Lettrix
// library, so that typing and dragging on the page never wait for a render.
//
// Messages in: {type: 'font', id, bytes} adds a font; {type: 'texture', name, width, height, pixels}
// adds a texture (BGRA); {type: 'render', seq, fontId, text, settings, block?} renders `text` (or the
// given outline block) and answers {type: 'rendered', seq, width, height, pixels, block, glyphs,
// layoutMs, renderMs} or {type: 'failed', seq, message}.
import * as hb from './vendor/harfbuzzjs/index.mjs';
import createLettrixModule from './lettrix.mjs';
import { layOutText, LayoutError } from './layout.js';
import { Renderer, RenderError, measureBlock } from './renderer.js';

const fonts = new Map();
const textures = new Map();
let renderer = null;

// A second thread draws pictures on coloured backgrounds while this one measures them; until it says it
// listens (or where it cannot start) this one does both.
const painter = new Worker('painter.js', { type: 'module' });
const painted = new Map();
let painterListens = false, nextPaint = 1;
painter.onmessage = ({ data }) => {
  if (data.type === 'listening') painterListens = true;
  else painted.get(data.id)?.(data.pixels);
};
painter.onerror = (event) => event.preventDefault();
function paint(settings, block, box, fill, textures) {
  if (!painterListens) return null;
  const id = nextPaint++;
  return new Promise((resolve) => {
    painted.set(id, (pixels) => {
      painted.delete(id);
      resolve(pixels);
    });
    painter.postMessage({ id, settings, block, box, fill, textures });
  });
}

const ready = (async () => {
  renderer = new Renderer(await createLettrixModule(), paint);
})();

async function texture(name) {
  if (!textures.has(name)) {
    if (!name.startsWith('gen:')) throw new RenderError(`no texture named '${name}' on this page`);
    const response = await fetch(`textures/${name.slice(4)}.bgra`);
    if (!response.ok) throw new RenderError(`generated texture '${name}' is missing`);
    textures.set(name, { width: 256, height: 256, pixels: new Uint8Array(await response.arrayBuffer()) });
  }
  return textures.get(name);
}

function addFont(id, bytes) {
  const face = new hb.Face(new hb.Blob(bytes));
  const font = new hb.Font(face);
  // A file that is not a font gives HarfBuzz an empty face: no glyph for any letter.
  const probe = new hb.Buffer();
  probe.addText('AaOo0');
  probe.guessSegmentProperties();
  hb.shape(font, probe);
  if (probe.getGlyphInfos().every((g) => g.codepoint === 0)) throw new LayoutError('not a font file with letters HarfBuzz can read');
  fonts.set(id, font);
}

async function render(msg) {
  await ready;
  const t0 = performance.now();
  let block = msg.block, glyphs = 0;
  if (!block) {
    if (!msg.text.trim()) throw new LayoutError('the text is empty');
    const font = fonts.get(msg.fontId);
    if (!font) throw new LayoutError('the font is not loaded');
    const laid = layOutText(hb, font, msg.text, msg.settings.pixelSize);
    block = laid.bytes;
    glyphs = laid.glyphCount;
  }
  const ink = measureBlock(block);
  if (!ink) throw new LayoutError('nothing to draw: the text has no visible letters');
  const t1 = performance.now();
  const s = msg.settings;
  const used = {};
  if (s.face.fill === 'texture') used.face = await texture(s.face.texture);
  if (s.outline.fill === 'texture') used.outline = await texture(s.outline.texture);
  const image = await renderer.render(s, block, ink, used);
  const t2 = performance.now();
  return { ...image, block, glyphs, layoutMs: t1 - t0, renderMs: t2 - t1 };
}

self.onmessage = async (event) => {
  const msg = event.data;
  try {
    if (msg.type === 'font') {
      addFont(msg.id, msg.bytes);
      self.postMessage({ type: 'font-added', id: msg.id });
    } else if (msg.type === 'texture') {
      textures.set(msg.name, { width: msg.width, height: msg.height, pixels: msg.pixels });
    } else if (msg.type === 'render') {
      const r = await render(msg);
      self.postMessage({ type: 'rendered', seq: msg.seq, ...r }, [r.pixels.buffer]);
    }
  } catch (e) {
    const known = e instanceof LayoutError || e instanceof RenderError;
    self.postMessage({
      type: msg.type === 'font' ? 'font-failed' : 'failed', seq: msg.seq, id: msg.id,
      message: known ? e.message : `unexpected failure: ${e && e.message ? e.message : e}`,
    });
  }
};
self.postMessage({ type: 'listening' });
