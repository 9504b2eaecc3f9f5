// Text to an outline block as GetGlyphOutline(GGO_NATIVE) gives it: HarfBuzz shapes each line (kerning,
// ligatures, right-to-left runs in visual order), the glyphs' contours are placed at their pen positions
// in buffer pixels with y growing downwards, cubic curves are split into quadratic ones, and each contour
// is written as a TTPOLYGONHEADER with TT_PRIM_LINE and TT_PRIM_QSPLINE records, 16.16 fixed point.

const kPolygonType = 24;
const kPrimLine = 1;
const kPrimQSpline = 2;
// How far, in pixels, a quadratic piece of a split cubic may stray from the cubic.
const kCubicTolerance = 1 / 32;

export class LayoutError extends Error {}

// Pixels to 16.16, rounding half to even as the native writer does.
function toFixed(pixels) {
  const v = pixels * 65536;
  let r = Math.round(v);
  if (Math.abs(v % 1) === 0.5 && r % 2 !== 0) r -= 1;
  if (!(r >= -2147483648 && r <= 2147483647)) throw new LayoutError('the text leaves the 16.16 coordinate range (32767 pixels)');
  return r;
}

// A cubic from p0 to p3 as quadratic pieces [{c, p}], few enough to keep within the tolerance.
function cubicToQuadratics(p0, c1, c2, p3) {
  const dx = p3.x - 3 * c2.x + 3 * c1.x - p0.x, dy = p3.y - 3 * c2.y + 3 * c1.y - p0.y;
  const error = (Math.sqrt(3) / 36) * Math.hypot(dx, dy);
  const n = Math.max(1, Math.min(64, Math.ceil(Math.cbrt(error / kCubicTolerance))));
  const at = (t) => {
    const u = 1 - t;
    return {
      x: u * u * u * p0.x + 3 * u * u * t * c1.x + 3 * u * t * t * c2.x + t * t * t * p3.x,
      y: u * u * u * p0.y + 3 * u * u * t * c1.y + 3 * u * t * t * c2.y + t * t * t * p3.y,
    };
  };
  const slope = (t) => {
    const u = 1 - t;
    return {
      x: 3 * u * u * (c1.x - p0.x) + 6 * u * t * (c2.x - c1.x) + 3 * t * t * (p3.x - c2.x),
      y: 3 * u * u * (c1.y - p0.y) + 6 * u * t * (c2.y - c1.y) + 3 * t * t * (p3.y - c2.y),
    };
  };
  const pieces = [];
  for (let i = 0; i < n; ++i) {
    const t0 = i / n, t1 = (i + 1) / n, h = (t1 - t0) / 2;
    const a = at(t0), b = i + 1 === n ? p3 : at(t1);
    const da = slope(t0), db = slope(t1);
    // The control point is where the end tangents of the piece meet, estimated from both ends.
    const c = {
      x: (a.x + da.x * h + (b.x - db.x * h)) / 2,
      y: (a.y + da.y * h + (b.y - db.y * h)) / 2,
    };
    pieces.push({ c, p: b });
  }
  return pieces;
}

// SVG path data ("M x y L x y Q cx cy x y C ... Z") to contours of points {x, y, on} in font units.
function pathToContours(path) {
  const tokens = path.match(/[MLQCZ]|-?[\d.]+(?:e-?\d+)?/g) || [];
  const contours = [];
  let contour = null, last = null;
  for (let i = 0; i < tokens.length; ) {
    const op = tokens[i++];
    const num = () => parseFloat(tokens[i++]);
    const pt = () => ({ x: num(), y: num() });
    if (op === 'M') {
      last = pt();
      contour = [{ ...last, on: true }];
      contours.push(contour);
    } else if (op === 'L') {
      last = pt();
      contour.push({ ...last, on: true });
    } else if (op === 'Q') {
      const c = pt();
      last = pt();
      contour.push({ ...c, on: false }, { ...last, on: true });
    } else if (op === 'C') {
      const c1 = pt(), c2 = pt(), p = pt();
      for (const q of cubicToQuadratics(last, c1, c2, p)) contour.push({ ...q.c, on: false }, { ...q.p, on: true });
      last = p;
    } else if (op === 'Z') {
      contour = null;
    }
  }
  return contours;
}

function putU16(out, v) {
  out.push(v & 255, (v >> 8) & 255);
}
function putU32(out, v) {
  out.push(v & 255, (v >>> 8) & 255, (v >>> 16) & 255, (v >>> 24) & 255);
}

// One contour of fixed points {x, y, on}, starting on-curve and closing back to its start, as records.
// An on-curve point that sits on the midpoint of the controls around it is left implied, as TrueType
// and GDI keep it, so that a run of quadratic pieces becomes one B-spline record.
function appendContour(points, out) {
  if (points.length > 1 && points[points.length - 1].on &&
      points[points.length - 1].x === points[0].x && points[points.length - 1].y === points[0].y) {
    points = points.slice(0, -1);
  }
  if (points.length < 2) return;
  const start = points[0];
  const walk = points.slice(1).concat([start]);
  const kept = walk.filter((q, i) => {
    if (!q.on || i === 0 || i === walk.length - 1) return true;
    const a = walk[i - 1], b = walk[i + 1];
    return a.on || b.on || Math.abs(Math.trunc((a.x + b.x) / 2) - q.x) > 1 || Math.abs(Math.trunc((a.y + b.y) / 2) - q.y) > 1;
  });
  const records = [];
  let controls = [];
  for (const q of kept) {
    if (!q.on) {
      controls.push(q);
    } else if (controls.length) {
      controls.push(q);
      records.push({ type: kPrimQSpline, points: controls });
      controls = [];
    } else if (records.length && records[records.length - 1].type === kPrimLine) {
      records[records.length - 1].points.push(q);
    } else {
      records.push({ type: kPrimLine, points: [q] });
    }
  }
  // A final straight edge back to the start is implied: the reader closes every contour itself.
  const lastRecord = records[records.length - 1];
  const end = lastRecord.points[lastRecord.points.length - 1];
  if (lastRecord.type === kPrimLine && end.x === start.x && end.y === start.y) {
    lastRecord.points.pop();
    if (!lastRecord.points.length) records.pop();
  }
  if (!records.length) return;
  let cb = 16;
  for (const r of records) cb += 4 + 8 * r.points.length;
  putU32(out, cb);
  putU32(out, kPolygonType);
  putU32(out, start.x);
  putU32(out, start.y);
  for (const r of records) {
    putU16(out, r.type);
    putU16(out, r.points.length);
    for (const p of r.points) {
      putU32(out, p.x);
      putU32(out, p.y);
    }
  }
}

// Lays out `text` (line feeds start new lines) with `hb` (the harfbuzzjs module) in the font `font`
// (hb.Font) at `pixelSize` pixels to the em. The first baseline is pixelSize pixels from the top, the
// next ones a line height further each. Returns the block's bytes and the number of glyphs.
export function layOutText(hb, font, text, pixelSize) {
  const upem = font.face.upem;
  const scale = pixelSize / upem;
  const extents = font.hExtents();
  const lineHeight = (extents.ascender - extents.descender + extents.lineGap) * scale;
  const out = [];
  let glyphCount = 0;
  const paths = new Map();
  text.split('\n').forEach((line, index) => {
    const baseline = pixelSize + index * lineHeight;
    const buffer = new hb.Buffer();
    buffer.addText(line);
    buffer.guessSegmentProperties();
    hb.shape(font, buffer);
    const infos = buffer.getGlyphInfos();
    const positions = buffer.getGlyphPositions();
    let pen = 0;
    infos.forEach((info, i) => {
      const pos = positions[i];
      const gid = info.codepoint;
      if (!paths.has(gid)) paths.set(gid, pathToContours(font.glyphToPath(gid)));
      const ox = pen + pos.xOffset, oy = pos.yOffset;
      for (const contour of paths.get(gid)) {
        appendContour(contour.map((p) => ({
          x: toFixed((ox + p.x) * scale), y: toFixed(baseline - (oy + p.y) * scale), on: p.on,
        })), out);
      }
      pen += pos.xAdvance;
      ++glyphCount;
    });
  });
  return { bytes: new Uint8Array(out), glyphCount };
}
