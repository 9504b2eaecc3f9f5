// The playground page: settings on the left, the library's picture on the right. Every change asks the
// drawing worker for a new picture; while one is being drawn, later changes are folded into a single
// next request, so typing never waits. A failed render leaves the last good picture in place.
import { commandArgs, commandLine, pythonCall } from './command.js';
import { encodePng } from './png.js';

const $ = (id) => document.getElementById(id);
const kDefaultFontPath = '/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf';

let data;          // lettrix-data.json: defaults, presets, options, textures
let fontList;      // fonts/fonts.json: the Debian fonts copied into the page
let state;         // the settings, in the program's field names
let presetName = '';
const ranges = new Map();
const worker = new Worker('worker.js', { type: 'module' });
// Messages sent before the worker's modules have loaded would be lost: it says when it listens.
let workerListens;
const workerReady = new Promise((resolve) => (workerListens = resolve));
const send = (msg, transfer = []) => workerReady.then(() => worker.postMessage(msg, transfer));
const uploadedTextures = [];
let fontId = null, fontPath = null;
let nextFontId = 1;

// ---------------------------------------------------------------- messages
function showMessage(text) {
  $('message').textContent = text;
  $('message').className = '';
}
function showNote(text) {
  $('message').textContent = text;
  $('message').className = 'ok';
}

// ---------------------------------------------------------------- rendering
let seq = 0, inFlight = null, pending = false;
let last = null;  // the last good picture: {width, height, pixels (BGRA), block}
const waiters = [];

function request() {
  if (inFlight) {
    pending = true;
    return;
  }
  if (fontId === null) return;
  inFlight = { seq: ++seq, started: performance.now() };
  send({ type: 'render', seq: inFlight.seq, fontId, text: $('text').value, settings: structuredClone(state) });
}

function settle(result) {
  const done = inFlight;
  inFlight = null;
  if (pending) {
    pending = false;
    request();
  }
  const idle = !inFlight;
  if (idle) while (waiters.length) waiters.shift()(result);
  return done;
}

function show(image) {
  const c = $('canvas');
  c.width = image.width;
  c.height = image.height;
  const rgba = new Uint8ClampedArray(image.pixels.length);
  for (let i = 0; i < rgba.length; i += 4) {
    rgba[i] = image.pixels[i + 2];
    rgba[i + 1] = image.pixels[i + 1];
    rgba[i + 2] = image.pixels[i];
    rgba[i + 3] = image.pixels[i + 3];
  }
  c.getContext('2d').putImageData(new ImageData(rgba, image.width, image.height), 0, 0);
}

worker.onmessage = (event) => {
  const msg = event.data;
  if (msg.type === 'listening') {
    workerListens();
    return;
  }
  if (msg.type === 'font-added' || msg.type === 'font-failed') {
    fontMessages.get(msg.id)?.(msg);
    return;
  }
  // Answers to renderBlock carry negative numbers; only the page's own requests reach the canvas.
  if (!inFlight || msg.seq !== inFlight.seq) return;
  if (msg.type === 'rendered') {
    const started = inFlight ? inFlight.started : performance.now();
    last = msg;
    show(msg);
    $('stats').textContent = `${msg.width} x ${msg.height} pixels, ${msg.glyphs} glyphs: layout ${msg.layoutMs.toFixed(1)} ms, ` +
      `library ${msg.renderMs.toFixed(1)} ms, round trip ${(performance.now() - started).toFixed(1)} ms`;
    if (!$('message').classList.contains('ok') && $('message').textContent) showMessage('');
    updateCommand();
    settle({ ok: true, msg });
  } else if (msg.type === 'failed') {
    showMessage(msg.message + (last ? ' (the last good picture is kept)' : ''));
    settle({ ok: false, message: msg.message });
  }
};

worker.onerror = (event) => {
  event.preventDefault();
  showMessage(`the drawing worker failed to start: ${event.message || 'a module did not load'}`);
};

// ---------------------------------------------------------------- fonts and textures
const fontMessages = new Map();
function loadFont(bytes, path) {
  const id = nextFontId++;
  return new Promise((resolve) => {
    fontMessages.set(id, (msg) => {
      fontMessages.delete(id);
      if (msg.type === 'font-added') {
        fontId = id;
        fontPath = path;
        request();
        resolve(true);
      } else {
        showMessage(`${path}: ${msg.message}` + (last ? ' (the last good picture is kept)' : ''));
        resolve(false);
      }
    });
    send({ type: 'font', id, bytes }, [bytes.buffer]);
  });
}

async function chooseFont(file) {
  const entry = fontList.find((f) => f.file === file);
  const bytes = new Uint8Array(await (await fetch(`fonts/${file}`)).arrayBuffer());
  return loadFont(bytes, entry.path);
}

async function addTextureFile(file) {
  const bitmap = await createImageBitmap(file, { premultiplyAlpha: 'none', colorSpaceConversion: 'none' });
  const c = new OffscreenCanvas(bitmap.width, bitmap.height);
  const g = c.getContext('2d');
  g.drawImage(bitmap, 0, 0);
  const rgba = g.getImageData(0, 0, bitmap.width, bitmap.height).data;
  const bgra = new Uint8Array(rgba.length);
  for (let i = 0; i < rgba.length; i += 4) {
    bgra[i] = rgba[i + 2]; bgra[i + 1] = rgba[i + 1]; bgra[i + 2] = rgba[i]; bgra[i + 3] = rgba[i + 3];
  }
  send({ type: 'texture', name: file.name, width: bitmap.width, height: bitmap.height, pixels: bgra }, [bgra.buffer]);
  if (!uploadedTextures.includes(file.name)) uploadedTextures.push(file.name);
  state.face.fill = 'texture';
  state.face.texture = file.name;
  changed(true);
}

async function dropFile(file) {
  const head = new Uint8Array(await file.slice(0, 4).arrayBuffer());
  const isImage = file.type.startsWith('image/') || (head[0] === 0x89 && head[1] === 0x50);
  if (isImage) return addTextureFile(file);
  return loadFont(new Uint8Array(await file.arrayBuffer()), file.name);
}

// ---------------------------------------------------------------- settings and controls
const get = (path) => path.split('.').reduce((o, k) => o[k], state);
function set(path, value) {
  const keys = path.split('.');
  const lastKey = keys.pop();
  keys.reduce((o, k) => o[k], state)[lastKey] = value;
}

function changed(rebuild) {
  if (rebuild) buildControls();
  updateCommand();
  request();
}

function rangeOf(option) {
  const r = ranges.get(option) || '';
  const m = r.match(/(-?[\d.]+)\.\.(-?[\d.]+)/);
  return m ? { min: Number(m[1]), max: Number(m[2]), text: r } : { min: -16384, max: 16384, text: r };
}

function el(tag, props = {}, ...children) {
  const e = Object.assign(document.createElement(tag), props);
  for (const c of children) e.append(c);
  return e;
}

// A slider with a number box, limited to the option's range as `lettrix --help` states it.
function numberRow(parent, label, option, path, { step = 1, integer = true } = {}) {
  const { min, max, text } = rangeOf(option);
  const value = get(path);
  const slider = el('input', { type: 'range', min, max: Math.min(max, integer && max > 1000 ? 1000 : max), step, value });
  const box = el('input', { type: 'number', min, max, step, value });
  box.dataset.option = option;
  slider.dataset.option = option;
  const apply = (raw, from) => {
    const v = Number(raw);
    if (raw === '' || !Number.isFinite(v) || v < min || v > max || (integer && !Number.isInteger(v))) {
      showMessage(`--${option}: '${raw}' is out of range (${text || `${min}..${max}`})` + (last ? ' (the last good picture is kept)' : ''));
      return;
    }
    set(path, v);
    if (from !== slider) slider.value = v;
    if (from !== box) box.value = v;
    changed(false);
  };
  slider.addEventListener('input', () => apply(slider.value, slider));
  box.addEventListener('input', () => apply(box.value, box));
  const row = el('div', { className: 'row', title: `--${option} [${text}]` }, el('span', { textContent: label }), slider, box);
  parent.append(row);
  return row;
}

// A colour with its alpha, kept as "#RRGGBBAA".
function colourRow(parent, label, path, option) {
  const hex = get(path);
  const colour = el('input', { type: 'color', value: hex.slice(0, 7).toLowerCase() });
  const alpha = el('input', { type: 'range', min: 0, max: 255, value: parseInt(hex.slice(7, 9) || 'FF', 16), title: 'alpha' });
  const shown = el('code', { textContent: hex });
  const apply = () => {
    const a = Number(alpha.value).toString(16).padStart(2, '0');
    const v = (colour.value + a).toUpperCase();
    set(path, v);
    shown.textContent = v;
    changed(false);
  };
  colour.addEventListener('input', apply);
  alpha.addEventListener('input', apply);
  colour.dataset.path = path;
  const row = el('div', { className: 'row', title: option ? `--${option}` : '' }, el('span', { textContent: label }),
    el('span', { className: 'colour' }, colour, alpha), shown);
  parent.append(row);
}

function selectRow(parent, label, path, choices, rebuild = false) {
  const select = el('select');
  for (const [value, text] of choices) select.append(el('option', { value, textContent: text }));
  select.value = get(path);
  select.dataset.path = path;
  // Options carry text: a choice between true and false is turned back into a flag.
  const parse = typeof choices[0][0] === 'boolean' ? (v) => v === 'true' : (v) => v;
  select.addEventListener('change', () => {
    set(path, parse(select.value));
    changed(rebuild);
  });
  parent.append(el('label', {}, `${label} `, select));
}

function checkRow(parent, label, path, option, rebuild = false) {
  const box = el('input', { type: 'checkbox', checked: get(path) });
  box.dataset.path = path;
  box.addEventListener('change', () => {
    set(path, box.checked);
    changed(rebuild);
  });
  parent.append(el('label', { title: `--${option}` }, box, ` ${label}`));
}

function stopsEditor(parent, prefix, layer) {
  const list = el('div');
  layer.stops.forEach((stop, i) => {
    const row = el('div', { className: 'stop' });
    list.append(row);
    colourRow(row, `stop ${i + 1}`, `${prefix}.stops.${i}.colour`);
    const weight = el('input', { type: 'number', min: 0, max: 1000000, value: stop.weight, title: 'weight' });
    weight.addEventListener('input', () => {
      const v = Number(weight.value);
      if (!Number.isInteger(v) || v < 0 || v > 1000000) {
        showMessage(`--${prefix}-stops: weight '${weight.value}' is out of range (0..1000000)`);
        return;
      }
      stop.weight = v;
      changed(false);
    });
    const remove = el('button', { type: 'button', textContent: '−', title: 'remove this stop', disabled: layer.stops.length < 2 });
    remove.addEventListener('click', () => {
      layer.stops.splice(i, 1);
      changed(true);
    });
    row.append(weight, remove);
  });
  const add = el('button', { type: 'button', textContent: 'add stop', disabled: layer.stops.length >= 255 });
  add.addEventListener('click', () => {
    layer.stops.push({ colour: layer.stops.length ? layer.stops[layer.stops.length - 1].colour : '#FFFFFFFF', weight: 1 });
    changed(true);
  });
  parent.append(list, add);
}

function layerControls(parent, prefix) {
  const layer = state[prefix];
  selectRow(parent, 'Fill', `${prefix}.fill`, [['solid', 'colour'], ['two-colour', 'two-colour gradient'], ['stops', 'colour stops'], ['texture', 'texture']], true);
  if (layer.fill === 'stops' && !layer.stops.length) layer.stops = [{ colour: layer.start, weight: 1 }, { colour: layer.end, weight: 1 }];
  if (layer.fill === 'texture' && !layer.texture) layer.texture = data.textures[0].name;
  if (layer.fill === 'solid') colourRow(parent, 'Colour', `${prefix}.colour`, `${prefix}-color`);
  if (layer.fill === 'two-colour') {
    colourRow(parent, 'Start', `${prefix}.start`, `${prefix}-colors`);
    colourRow(parent, 'End', `${prefix}.end`, `${prefix}-colors`);
  }
  if (layer.fill === 'stops') stopsEditor(parent, prefix, layer);
  if (layer.fill === 'two-colour' || layer.fill === 'stops') {
    if (layer.shape === 'default') layer.shape = 'vertical';
    selectRow(parent, 'Gradient', `${prefix}.shape`, [['vertical', 'vertical'], ['radial', 'radial'], ['linear', 'linear at an angle']], true);
    if (layer.shape === 'radial') {
      numberRow(parent, 'Radial from', `${prefix}-gradient`, `${prefix}.radialFrom`, { step: 0.01, integer: false });
      numberRow(parent, 'Radial to', `${prefix}-gradient`, `${prefix}.radialTo`, { step: 0.01, integer: false });
    }
    if (layer.shape === 'linear') numberRow(parent, 'Angle°', `${prefix}-gradient`, `${prefix}.angleDegrees`, { integer: false });
    selectRow(parent, 'Extent', `${prefix}.extentCanvas`, [[false, 'the text'], [true, 'the whole canvas']]);
    checkRow(parent, 'Gradient area (canvas pixels)', `${prefix}.hasArea`, `${prefix}-gradient-area`, true);
    if (layer.hasArea) ['left', 'top', 'right', 'bottom'].forEach((side, i) => numberRow(parent, side, 'translate', `${prefix}.area.${i}`));
  }
  if (layer.fill === 'texture') {
    const names = [...data.textures.map((t) => t.name), ...uploadedTextures];
    selectRow(parent, 'Texture', `${prefix}.texture`, names.map((n) => [n, n]));
    const upload = el('input', { type: 'file', accept: 'image/*' });
    upload.addEventListener('change', () => upload.files[0] && addTextureFile(upload.files[0]).then(() => {
      state[prefix].texture = upload.files[0].name;
      changed(true);
    }));
    parent.append(el('label', { className: 'file' }, 'Upload ', upload));
    selectRow(parent, 'Tiling', `${prefix}.tiling`, [['tile', 'tile'], ['stretch', 'stretch'], ['centre', 'centre']]);
  }
  numberRow(parent, 'Blur', `${prefix}-blur`, `${prefix}.blur`);
}

function clearGroup(id) {
  const g = $(id);
  const legend = g.querySelector('legend');
  g.replaceChildren(legend);
  return g;
}

function buildControls() {
  const canvas = clearGroup('canvas-group');
  selectRow(canvas, 'Size', 'fixedCanvas', [[false, 'fit the drawing'], [true, 'fixed']], true);
  if (state.fixedCanvas) {
    if (!state.canvasWidth) [state.canvasWidth, state.canvasHeight] = [800, 300];
    numberRow(canvas, 'Width', 'canvas', 'canvasWidth');
    numberRow(canvas, 'Height', 'canvas', 'canvasHeight');
  } else {
    numberRow(canvas, 'Padding', 'padding', 'padding');
  }
  colourRow(canvas, 'Background', 'background', 'background');
  numberRow(canvas, 'Move x', 'translate', 'translateX');
  numberRow(canvas, 'Move y', 'translate', 'translateY');

  const face = clearGroup('face-group');
  layerControls(face, 'face');
  checkRow(face, 'Emboss', 'emboss', 'emboss', true);
  if (state.emboss) {
    numberRow(face, 'Emboss light°', 'emboss-angle', 'embossAngleDegrees', { integer: false });
    colourRow(face, 'Emboss tint', 'embossTint', 'emboss-tint');
  }

  const outline = clearGroup('outline-group');
  numberRow(outline, 'Width', 'outline-width', 'outlineWidth');
  layerControls(outline, 'outline');
  checkRow(outline, 'Bevelled 3D border', 'bevel', 'bevel', true);
  if (state.bevel) {
    numberRow(outline, 'Elevation°', 'bevel-elevation', 'bevelElevation');
    numberRow(outline, 'Passes', 'bevel-passes', 'bevelPasses');
    numberRow(outline, 'Light°', 'bevel-angle', 'bevelAngleDegrees', { integer: false });
  }

  const shadow = clearGroup('shadow-group');
  checkRow(shadow, 'Visible', 'shadowVisible', 'shadow');
  colourRow(shadow, 'Colour', 'shadowColour', 'shadow-color');
  numberRow(shadow, 'Offset x', 'shadow-offset', 'shadowX');
  numberRow(shadow, 'Offset y', 'shadow-offset', 'shadowY');
  numberRow(shadow, 'Zoom x', 'shadow-zoom', 'shadowZoomX', { step: 0.01, integer: false });
  numberRow(shadow, 'Zoom y', 'shadow-zoom', 'shadowZoomY', { step: 0.01, integer: false });
  numberRow(shadow, 'Blur', 'shadow-blur', 'shadowBlur');
  checkRow(shadow, 'Extruded', 'extrude', 'extrude', true);
  if (state.extrude) selectRow(shadow, 'Shading', 'extrudeSmooth', [[true, 'smooth'], [false, 'flat']]);
  checkRow(shadow, 'Shadow only', 'shadowOnly', 'shadow-only');
}

// ---------------------------------------------------------------- presets, command, downloads
function base() {
  return presetName ? data.presets.find((p) => p.name === presetName).settings : data.defaults;
}

function applyPreset(name) {
  presetName = name;
  state = structuredClone(base());
  const preset = data.presets.find((p) => p.name === name);
  $('preset').value = name;
  $('preset-description').textContent = preset ? preset.description : '';
  changed(true);
}

function job() {
  const multiLine = $('text').value.includes('\n');
  return {
    settings: state, base: base(), preset: presetName, text: $('text').value,
    fontPath: fontPath === kDefaultFontPath ? null : fontPath,
    blockFile: multiLine ? 'lettrix-outline.bin' : null, output: 'lettrix.png',
  };
}

function updateCommand() {
  if (!data) return;
  const j = job();
  $('command-text').textContent = commandLine(j) +
    (j.blockFile ? "\n# lettrix draws one line of text: 'Download outline block' saves the page's lines as lettrix-outline.bin" : '');
}

async function copy(text, what) {
  try {
    await navigator.clipboard.writeText(text);
    showNote(`${what} copied`);
  } catch {
    showNote(`${what} is shown below the picture (the clipboard is not available here)`);
  }
}

function download(blob, name) {
  const a = el('a', { href: URL.createObjectURL(blob), download: name });
  a.click();
  setTimeout(() => URL.revokeObjectURL(a.href), 1000);
}

// ---------------------------------------------------------------- start
async function start() {
  [data, fontList] = await Promise.all([
    fetch('lettrix-data.json').then((r) => r.json()),
    fetch('fonts/fonts.json').then((r) => r.json()),
  ]);
  for (const o of data.options) ranges.set(o.name, o.range);
  for (const p of data.presets) $('preset').append(el('option', { value: p.name, textContent: p.name }));
  for (const f of fontList) $('font').append(el('option', { value: f.file, textContent: f.name }));
  const sizeHost = $('size-row');
  state = structuredClone(data.defaults);
  numberRow(sizeHost, 'Size (px)', 'size', 'pixelSize');
  buildControls();
  $('font').value = fontList.find((f) => f.path === kDefaultFontPath)?.file ?? fontList[0].file;
  $('font').addEventListener('change', () => chooseFont($('font').value));
  $('font-file').addEventListener('change', () => $('font-file').files[0] && dropFile($('font-file').files[0]));
  $('preset').addEventListener('change', () => {
    const keepSize = state.pixelSize;
    applyPreset($('preset').value);
    state.pixelSize = keepSize;
  });
  $('text').addEventListener('input', () => changed(false));
  $('backdrop').addEventListener('change', () => ($('stage').className = $('backdrop').value));
  $('download-png').addEventListener('click', () => last && encodePng(last.width, last.height, last.pixels).then((b) => download(b, 'lettrix.png')));
  $('download-block').addEventListener('click', () => last && download(new Blob([last.block]), 'lettrix-outline.bin'));
  $('copy-command').addEventListener('click', () => copy(commandLine(job()), 'The command'));
  $('copy-python').addEventListener('click', () => copy(pythonCall(job()), 'The Python call'));
  document.addEventListener('dragover', (e) => {
    e.preventDefault();
    document.body.classList.add('dragging');
  });
  document.addEventListener('dragleave', () => document.body.classList.remove('dragging'));
  document.addEventListener('drop', (e) => {
    e.preventDefault();
    document.body.classList.remove('dragging');
    if (e.dataTransfer.files[0]) dropFile(e.dataTransfer.files[0]);
  });
  updateCommand();
  await chooseFont($('font').value);
}

// What the browser tests drive: settle() resolves once no render is in flight or waiting.
window.lettrixPage = {
  ready: start(),
  idle: () => new Promise((resolve) => (inFlight ? waiters.push(resolve) : resolve({ ok: true }))),
  applyPreset,
  get state() { return state; },
  set state(s) { state = s; changed(true); },
  get last() { return last; },
  job,
  commandArgs: () => commandArgs(job()),
  pythonCall: () => pythonCall(job()),
  setText(text) { $('text').value = text; changed(false); },
  // The bytes "Download PNG" saves.
  png: () => encodePng(last.width, last.height, last.pixels).then((b) => b.arrayBuffer()).then((a) => Array.from(new Uint8Array(a))),
  loadFontBytes: (bytes, name) => loadFont(new Uint8Array(bytes), name),
  // Renders a given outline block with the given settings, as the page renders its own.
  renderBlock: (block, settings) => new Promise((resolve) => {
    const id = -1 - seq;
    const handler = (event) => {
      if (event.data.seq !== id) return;
      worker.removeEventListener('message', handler);
      resolve(event.data);
    };
    worker.addEventListener('message', handler);
    send({ type: 'render', seq: id, settings, block: new Uint8Array(block) });
  }),
};
