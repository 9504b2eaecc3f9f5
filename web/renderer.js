// Draws an outline block with the page's settings through the library's C interface, and places the
// drawing on a canvas exactly as the lettrix program does (its fitted or fixed canvas, padding, background
// and translation), so that the page and the program give the same pixels for the same block.
//
// Settings use the program's own field names (see lettrix-data.json); colours are "#RRGGBBAA".

const kDegreesToRadians = 3.141592653589793 / 180.0;
const kMaxCanvasSide = 16384;
const kMaxCanvasPixels = 2 ** 28;

export class RenderError extends Error {}

export function parseHex(hex) {
  const v = hex.replace('#', '');
  const byte = (i) => parseInt(v.substr(i, 2), 16);
  return { r: byte(0), g: byte(2), b: byte(4), a: v.length >= 8 ? byte(6) : 255 };
}

function packColour(c) {
  return (c.r | (c.g << 8) | (c.b << 16) | (c.a << 24)) >>> 0;
}

// Every argument of the interface goes by address: a scratch area holds them for one call at a time.
class Arguments {
  constructor(module) {
    this.m = module;
    this.base = module._malloc(256);
    this.used = 0;
  }
  reset() {
    this.used = 0;
  }
  take(bytes) {
    this.used = (this.used + 7) & ~7;
    const at = this.base + this.used;
    this.used += bytes;
    return at;
  }
  u8(v) {
    const p = this.take(1);
    this.m.HEAPU8[p] = v;
    return p;
  }
  i32(v) {
    const p = this.take(4);
    this.m.HEAP32[p >> 2] = v;
    return p;
  }
  f64(v) {
    const p = this.take(8);
    this.m.HEAPF64[p >> 3] = v;
    return p;
  }
}

const kFaceCalls = {
  start: '_SetColorFaceStart', end: '_SetColorFaceEnd', gradient: '_SetGradientFace',
  table: '_SetFaceGradientColors', fitMode: '_SetFaceGradientFitMode', area: '_SetFaceUserGradientArea',
  texture: '_SetTextureFace', tiling: '_SetFaceTextureTiling', fillType: '_SetFaceFillType',
  blur: '_SetFaceBlurLevel',
};
const kOutlineCalls = {
  start: '_SetColorOutlineStart', end: '_SetColorOutlineEnd', gradient: '_SetGradientOutline',
  table: '_SetOutlineGradientColors', fitMode: '_SetOutlineGradientFitMode',
  area: '_SetOutlineUserGradientArea', texture: '_SetTextureOutline', tiling: '_SetOutlineTextureTiling',
  fillType: '_SetOutlineFillType', blur: '_SetOutlineBlurLevel',
};
const kTiling = { centre: 0, stretch: 1, tile: 2 };

// One render process, made and destroyed around each render as the program does.
class Process {
  constructor(module, args) {
    this.m = module;
    this.a = args;
    this.slot = module._malloc(8);
    module.HEAPU32[this.slot >> 2] = module._CreateRenderProcess();
    if (module.HEAPU32[this.slot >> 2] === 0) throw new RenderError('the library could not create a render process');
  }
  destroy() {
    this.m._DestroyRenderProcess(this.slot);
    this.m._free(this.slot);
  }
  call(name, ...argMakers) {
    this.a.reset();
    const args = argMakers.map((make) => (typeof make === 'function' ? make(this.a) : make));
    return this.m[name](this.slot, ...args);
  }
  colour(name, hex) {
    const c = parseHex(hex);
    return this.call(name, (a) => a.u8(c.a), (a) => a.u8(c.r), (a) => a.u8(c.g), (a) => a.u8(c.b));
  }
}

function applyLayer(p, calls, layer, texture) {
  const m = p.m;
  let fill = 0;
  switch (layer.fill) {
    case 'two-colour':
      p.colour(calls.start, layer.start);
      p.colour(calls.end, layer.end);
      break;
    case 'stops': {
      // Start and end colours first: setting them takes a table out of force.
      p.colour(calls.start, layer.stops[0].colour);
      p.colour(calls.end, layer.stops[layer.stops.length - 1].colour);
      const n = layer.stops.length;
      const colours = m._malloc(4 * n), weights = m._malloc(4 * n);
      layer.stops.forEach((s, i) => {
        m.HEAPU32[(colours >> 2) + i] = packColour(parseHex(s.colour));
        m.HEAPU32[(weights >> 2) + i] = s.weight >>> 0;
      });
      const ok = p.call(calls.table, colours, weights, (a) => a.u8(n & 255));
      m._free(colours);
      m._free(weights);
      if (!ok) throw new RenderError('the library refused the colour stops');
      break;
    }
    case 'texture': {
      const bytes = texture.width * texture.height * 4;
      const pixels = m._malloc(bytes);
      m.HEAPU8.set(texture.pixels, pixels);
      const ok = p.call(calls.texture, pixels, (a) => a.i32(texture.width), (a) => a.i32(texture.height));
      m._free(pixels);
      if (!ok) throw new RenderError('the library refused the texture');
      fill = 1;
      break;
    }
    default:
      p.colour(calls.start, layer.colour);
      p.colour(calls.end, layer.colour);
  }
  p.call(calls.fillType, (a) => a.i32(fill));

  let type = 0, p1 = 0.0, p2 = 0.0;
  if (layer.fill === 'two-colour' || layer.fill === 'stops') {
    if (layer.shape === 'radial') {
      type = 2;
      p1 = layer.radialFrom;
      p2 = layer.radialTo;
    } else if (layer.shape === 'linear') {
      type = 3;
      p1 = layer.angleDegrees * kDegreesToRadians;
    } else {
      type = 1;
    }
  }
  p.call(calls.gradient, (a) => a.i32(type), (a) => a.f64(p1), (a) => a.f64(p2));
  p.call(calls.fitMode, (a) => a.u8(layer.extentCanvas ? 1 : 0));
  const area = layer.hasArea ? layer.area : [0, 0, 0, 0];
  p.call(calls.area, ...area.map((v) => (a) => a.i32(v)));
  p.call(calls.tiling, (a) => a.i32(kTiling[layer.tiling] ?? 2));
  p.call(calls.blur, (a) => a.u8(layer.blur));
}

function applySettings(p, s, textures) {
  applyLayer(p, kFaceCalls, s.face, textures.face);
  applyLayer(p, kOutlineCalls, s.outline, textures.outline);
  p.call('_SetOutlineThickness', (a) => a.i32(s.outlineWidth));
  if (s.emboss) {
    const t = parseHex(s.embossTint);
    // The relief is scaled by the first byte for red, the third for green and the second for blue.
    p.call('_SetFaceTextureEmbossed', (a) => a.f64(s.embossAngleDegrees * kDegreesToRadians),
      (a) => a.u8(t.r), (a) => a.u8(t.b), (a) => a.u8(t.g));
  }
  p.call('_EnableFaceEmbossed', (a) => a.u8(s.emboss ? 1 : 0));
  p.call('_SetOutline3DBorder', (a) => a.u8(s.bevelElevation), (a) => a.u8(s.bevelPasses),
    (a) => a.f64(s.bevelAngleDegrees * kDegreesToRadians));
  p.call('_EnableOutline3DBorder', (a) => a.u8(s.bevel ? 1 : 0));
  p.colour('_SetShadowColor', s.shadowColour);
  p.call('_SetShadowOffset', (a) => a.i32(s.shadowX), (a) => a.i32(s.shadowY));
  p.call('_SetShadowZoom', (a) => a.f64(s.shadowZoomX), (a) => a.f64(s.shadowZoomY));
  p.call('_SetShadowBlurLevel', (a) => a.u8(s.shadowBlur));
  p.call('_SetShadowExtruded', (a) => a.u8(s.extrude ? 1 : 0));
  p.call('_SetExtrudedShadowColor', (a) => a.u8(s.extrudeSmooth ? 1 : 0));
  p.call('_SetShadowVisible', (a) => a.u8(s.shadowVisible ? 1 : 0));
  p.call('_SetDrawShadowOnly', (a) => a.u8(s.shadowOnly ? 1 : 0));
}

// Boxes are {left, top, right, bottom}, right and bottom outside.
const width = (b) => b.right - b.left;
const height = (b) => b.bottom - b.top;
const inflated = (b, by) => ({ left: b.left - by, top: b.top - by, right: b.right + by, bottom: b.bottom + by });
const moved = (b, dx, dy) => ({ left: b.left + dx, top: b.top + dy, right: b.right + dx, bottom: b.bottom + dy });
const united = (a, b) => ({
  left: Math.min(a.left, b.left), top: Math.min(a.top, b.top),
  right: Math.max(a.right, b.right), bottom: Math.max(a.bottom, b.bottom),
});

// How far, beyond the outline's own box, anything may be drawn, before the probe render measures it.
function reachEstimate(s, glyphs, slack) {
  const stroke = s.outlineWidth > 0 ? 3 * s.outlineWidth + 2 : 0;
  const blur = 2 * Math.max(s.face.blur, s.outline.blur);
  let reach = inflated(glyphs, stroke + blur + slack);
  if (s.shadowVisible && parseHex(s.shadowColour).a !== 0) {
    const shadow = inflated(glyphs, stroke + 2 * s.shadowBlur + slack);
    const growX = ((s.shadowZoomX - 1.0) * width(shadow)) / 2.0;
    const growY = ((s.shadowZoomY - 1.0) * height(shadow)) / 2.0;
    if (growX > 0) {
      shadow.left -= Math.trunc(growX) + 2;
      shadow.right += Math.trunc(growX) + 2;
    }
    if (growY > 0) {
      shadow.top -= Math.trunc(growY) + 2;
      shadow.bottom += Math.trunc(growY) + 2;
    }
    const m = moved(shadow, s.shadowX, s.shadowY);
    reach = united(reach, s.extrude ? united(m, shadow) : m);
  }
  return reach;
}

function checkCanvasSize(w, h) {
  if (w > kMaxCanvasSide || h > kMaxCanvasSide || w * h > kMaxCanvasPixels) {
    throw new RenderError(`the image would be ${w} x ${h} pixels; the limit is ${kMaxCanvasSide} on a side`);
  }
}

// The box of the pixels that are not fully transparent.
function inkOf(pixels, w, h) {
  const box = { left: w, top: h, right: 0, bottom: 0 };
  for (let y = 0; y < h; ++y) {
    const row = y * w * 4;
    for (let x = 0; x < w; ++x) {
      if (pixels[row + x * 4 + 3] === 0) continue;
      if (x < box.left) box.left = x;
      if (x + 1 > box.right) box.right = x + 1;
      if (y < box.top) box.top = y;
      if (y + 1 > box.bottom) box.bottom = y + 1;
    }
  }
  return box;
}

const floorHalf = (v) => (v >= 0 ? Math.trunc(v / 2) : -Math.trunc((-v + 1) / 2));

// The library draws each layer in an image of its own and lays it on the canvas at a whole-pixel place,
// so on a transparent canvas the picture does not depend on where the canvas lies, except for what is
// measured from the canvas itself: gradients spread over it or over areas given in its pixels, and an
// extrusion so long that the library cuts it down to the canvas (below this bound it never does).
// The same holds on a canvas of one colour: there the picture is a window onto a larger one, and that
// colour wherever the window reaches past it.
const kExtrusionCostBound = 2 ** 30;
function placeFree(s, reach) {
  const fromCanvas = (l) => l.extentCanvas || l.hasArea;
  const extrusionSteps = s.extrude ? Math.max(Math.abs(s.shadowX), Math.abs(s.shadowY)) : 0;
  return !fromCanvas(s.face) && !fromCanvas(s.outline) &&
    (!reach || extrusionSteps * width(reach) * height(reach) < kExtrusionCostBound);
}

// The settings a probe depends on, as text: all but where the canvas lies and what fills it, and the 3D
// border when the probe leaves it out.
function probeKey(s) {
  const { background, padding, translateX, translateY, fixedCanvas, canvasWidth, canvasHeight, ...seen } = s;
  if (!seen.bevel) for (const k of ['bevelElevation', 'bevelPasses', 'bevelAngleDegrees']) delete seen[k];
  return JSON.stringify(seen);
}

function sameMeasure(a, b) {
  if (a.settings !== b.settings || a.textures.face !== b.textures.face || a.textures.outline !== b.textures.outline) return false;
  if (a.block.length !== b.block.length) return false;
  for (let i = 0; i < a.block.length; ++i) if (a.block[i] !== b.block[i]) return false;
  return true;
}

// The w x h window of a pw x ph image whose top-left corner lies at (x, y) in the image; `fill` (a BGRA
// word) where the window reaches past the image.
function windowOnto(pixels, pw, ph, x, y, w, h, fill) {
  const out = new Uint8Array(w * h * 4);
  if (fill) new Uint32Array(out.buffer).fill(fill);
  const x0 = Math.max(0, -x), x1 = Math.min(w, pw - x);
  if (x1 <= x0) return out;
  for (let row = Math.max(0, -y); row < Math.min(h, ph - y); ++row) {
    const from = ((row + y) * pw + x + x0) * 4;
    out.set(pixels.subarray(from, from + (x1 - x0) * 4), (row * w + x0) * 4);
  }
  return out;
}

// The canvas's fill as the library's buffer holds it: a BGRA word, 0 for a transparent background.
function backgroundWord(s) {
  const bg = parseHex(s.background);
  return bg.a ? ((bg.a << 24) | (bg.r << 16) | (bg.g << 8) | bg.b) >>> 0 : 0;
}

export class Renderer {
  // `painter`, when given, draws a picture on another thread while this one measures: (settings, block
  // bytes, canvas box, fill, textures) => a promise of the pixels, or of null when it could not.
  constructor(module, painter = null) {
    this.m = module;
    this.args = new Arguments(module);
    this.painter = painter;
  }

  // The picture on the canvas `box` of the drawing's coordinates, filled with `fill` first; null when the
  // library refused.
  paint(s, blockBytes, box, fill, textures) {
    checkCanvasSize(width(box), height(box));
    const m = this.m;
    const block = m._LettrixGlobalAlloc(0, blockBytes.length);
    if (block === 0) return null;
    try {
      m.HEAPU8.set(blockBytes, block);
      return this.renderOnto(s, textures, block, -box.left, -box.top, width(box), height(box), fill);
    } finally {
      m._LettrixGlobalFree(block);
    }
  }

  // Renders `block` (its box `ink`) onto a canvas of w x h pixels filled with `fill` (a BGRA word), the
  // drawing moved by (tx, ty). Returns the pixels, or null when the library refused.
  renderOnto(s, textures, block, tx, ty, w, h, fill) {
    const m = this.m;
    const bytes = w * h * 4;
    const buffer = m._malloc(bytes);
    if (buffer === 0) throw new RenderError('out of memory for a ' + w + ' x ' + h + ' image');
    m.HEAPU32.fill(fill, buffer >> 2, (buffer >> 2) + w * h);
    const p = new Process(m, this.args);
    try {
      applySettings(p, s, textures);
      p.call('_SetTranslation', (a) => a.i32(tx), (a) => a.i32(ty));
      const ok = p.call('_Render', block, (a) => a.i32(w), (a) => a.i32(h), buffer);
      return ok ? m.HEAPU8.slice(buffer, buffer + bytes) : null;
    } finally {
      p.destroy();
      m._free(buffer);
    }
  }

  // The program's whole render: probe, canvas size, final picture. `blockBytes` is the outline block,
  // `ink` its box; textures are {face, outline} of {width, height, pixels (BGRA)} where a layer uses one.
  // Returns {width, height, pixels, route} with pixels in memory order blue, green, red, alpha; the route
  // says how the picture was had: 'probe', 'painter', 'kept measure' or 'second render'.
  async render(s, blockBytes, ink, textures) {
    const m = this.m;
    const block = m._LettrixGlobalAlloc(0, blockBytes.length);
    if (block === 0) throw new RenderError('out of memory for the outline block');
    try {
      m.HEAPU8.set(blockBytes, block);
      return await this.place(s, block, blockBytes, ink, textures);
    } finally {
      m._LettrixGlobalFree(block);
    }
  }

  async place(s, block, blockBytes, glyphs, textures) {
    // Probe: render on a transparent canvas with room to spare and measure what was drawn; should
    // anything touch the edge, the room grows and the probe runs again. Only alpha decides what counts as
    // drawn, and the 3D border shades colours alone, so a probe that is not itself the picture leaves the
    // border out (it is the costliest effect).
    const fill = backgroundWord(s);
    const reuse = fill === 0 && placeFree(s);
    const probeSettings = reuse || !s.bevel ? s : { ...s, bevel: false };
    // A probe that is not the picture is kept: dragging a colour, the background, the padding or the 3D
    // border changes nothing it measures, and the next picture then needs none.
    const measure = { settings: probeKey(probeSettings), block: blockBytes, textures };
    const known = reuse ? null : this.measured;
    let drawn, probe, reach, complete = false, painted = null, paintedBox = null;
    if (known && sameMeasure(known, measure)) drawn = known.drawn;
    const measuredBefore = Boolean(drawn);
    for (let slack = 8; !drawn; slack *= 4) {
      reach = reachEstimate(s, glyphs, slack);
      checkCanvasSize(width(reach), height(reach));
      const pw = width(reach), ph = height(reach);
      if (!reuse && !painted && this.painter && placeFree(s, reach)) {
        paintedBox = reach;
        painted = this.painter(s, blockBytes, reach, fill, textures);
      }
      probe = this.renderOnto(probeSettings, textures, block, -reach.left, -reach.top, pw, ph, 0);
      if (!probe) throw new RenderError('the library drew nothing: the outline has no area');
      drawn = inkOf(probe, pw, ph);
      if (drawn.right <= drawn.left || drawn.bottom <= drawn.top) {
        drawn = glyphs;
        break;
      }
      const touches = drawn.left === 0 || drawn.top === 0 || drawn.right === pw || drawn.bottom === ph;
      drawn = moved(drawn, reach.left, reach.top);
      complete = !touches;
      if (!touches || slack > 4096) break;
    }
    if (!reuse) this.measured = { ...measure, block: blockBytes.slice(), drawn };
    let w, h, left, top;
    if (s.fixedCanvas) {
      w = s.canvasWidth;
      h = s.canvasHeight;
      left = drawn.left - floorHalf(w - width(drawn));
      top = drawn.top - floorHalf(h - height(drawn));
    } else {
      w = width(drawn) + 2 * s.padding;
      h = height(drawn) + 2 * s.padding;
      left = drawn.left - s.padding;
      top = drawn.top - s.padding;
    }
    checkCanvasSize(w, h);
    const tx = -left + s.translateX, ty = -top + s.translateY;
    // The probe, or the painter's picture, holds everything drawn, placed by whole pixels: the picture is
    // a window onto it.
    const window = (pixels, box) => windowOnto(pixels, width(box), height(box), -box.left - tx, -box.top - ty, w, h, fill);
    if (reuse && complete && placeFree(s, reach)) return { width: w, height: h, pixels: window(probe, reach), route: 'probe' };
    // Awaited even when it cannot be used, so that the painter is idle again for the next picture.
    const big = painted && (await painted);
    if (big && complete && reach === paintedBox) return { width: w, height: h, pixels: window(big, paintedBox), route: 'painter' };
    const pixels = this.renderOnto(s, textures, block, tx, ty, w, h, fill);
    if (!pixels) throw new RenderError('the library drew nothing: the outline has no area');
    return { width: w, height: h, pixels, route: measuredBefore ? 'kept measure' : 'second render' };
  }
}

// The whole-pixel box the library takes for a block: floor of the smallest and ceiling of the largest
// coordinate, each contour's start point rounded half up first. Null for an empty or malformed block.
export function measureBlock(bytes) {
  const v = new DataView(bytes.buffer, bytes.byteOffset, bytes.byteLength);
  let minX = Infinity, minY = Infinity, maxX = -Infinity, maxY = -Infinity;
  const add = (x, y) => {
    minX = Math.min(minX, x); maxX = Math.max(maxX, x);
    minY = Math.min(minY, y); maxY = Math.max(maxY, y);
  };
  const rounded = (f) => (f >> 16) + ((f & 0xffff) >= 0x8000 ? 1 : 0);
  let at = 0;
  while (at < bytes.length) {
    if (bytes.length - at < 16) return null;
    const cb = v.getUint32(at, true);
    if (cb < 16 || cb > bytes.length - at || v.getUint32(at + 4, true) !== 24) return null;
    add(rounded(v.getInt32(at + 8, true)) * 65536, rounded(v.getInt32(at + 12, true)) * 65536);
    let r = 16;
    while (r < cb) {
      if (cb - r < 4) return null;
      const type = v.getUint16(at + r, true), count = v.getUint16(at + r + 2, true);
      if (Math.floor((cb - r - 4) / 8) < count) return null;
      if (type >= 1 && type <= 3) {
        for (let k = 0; k < count; ++k) add(v.getInt32(at + r + 4 + 8 * k, true), v.getInt32(at + r + 8 + 8 * k, true));
      }
      r += 4 + 8 * count;
    }
    at += cb;
  }
  if (minX > maxX) return null;
  return {
    left: Math.floor(minX / 65536), top: Math.floor(minY / 65536),
    right: Math.ceil(maxX / 65536), bottom: Math.ceil(maxY / 65536),
  };
}
