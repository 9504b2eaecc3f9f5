// What is on screen as a lettrix command line and as a call of the Python package: the settings that
// differ from a base (the program's defaults, or the chosen preset after --preset NAME), as options.
// Both are built from one list of options, in the order the program applies them.

const shape = (l) => (l.shape === 'radial' ? `radial:${l.radialFrom},${l.radialTo}`
  : l.shape === 'linear' ? `linear:${l.angleDegrees}` : 'vertical');

function layerOptions(prefix, l) {
  const out = [];
  if (l.fill === 'two-colour') out.push([`${prefix}-fill`, `${prefix}-colors`, [l.start, l.end]]);
  else if (l.fill === 'stops') {
    out.push([`${prefix}-fill`, `${prefix}-stops`, l.stops.map((s) => (s.weight === 1 ? s.colour : `${s.colour}:${s.weight}`)).join(',')]);
  } else if (l.fill === 'texture') out.push([`${prefix}-fill`, `${prefix}-texture`, l.texture]);
  else out.push([`${prefix}-fill`, `${prefix}-color`, l.colour]);
  out.push([`${prefix}-gradient`, `${prefix}-gradient`, shape(l)]);
  // The extent clears an area, so the area follows it.
  out.push([`${prefix}-gradient-extent`, `${prefix}-gradient-extent`, l.extentCanvas ? 'canvas' : 'text']);
  if (l.hasArea) out.push([`${prefix}-gradient-area`, `${prefix}-gradient-area`, l.area]);
  out.push([`${prefix}-tiling`, `${prefix}-tiling`, l.tiling]);
  out.push([`${prefix}-blur`, `${prefix}-blur`, l.blur]);
  return out;
}

const flag = (key, on, yes, no) => [key, on ? yes : no, null];

// [key, option name, value (null for a switch; an array for a pair or list)] for every setting.
export function settingOptions(s) {
  return [
    ['size', 'size', s.pixelSize],
    ['canvas', 'canvas', s.fixedCanvas ? `${s.canvasWidth}x${s.canvasHeight}` : 'fit'],
    ['padding', 'padding', s.padding],
    ['background', 'background', s.background],
    ['translate', 'translate', [s.translateX, s.translateY]],
    ...layerOptions('face', s.face),
    flag('emboss', s.emboss, 'emboss', 'no-emboss'),
    ['emboss-angle', 'emboss-angle', s.embossAngleDegrees],
    ['emboss-tint', 'emboss-tint', s.embossTint],
    ['outline-width', 'outline-width', s.outlineWidth],
    ...layerOptions('outline', s.outline),
    flag('bevel', s.bevel, 'bevel', 'no-bevel'),
    ['bevel-elevation', 'bevel-elevation', s.bevelElevation],
    ['bevel-passes', 'bevel-passes', s.bevelPasses],
    ['bevel-angle', 'bevel-angle', s.bevelAngleDegrees],
    ['shadow-color', 'shadow-color', s.shadowColour],
    ['shadow-offset', 'shadow-offset', [s.shadowX, s.shadowY]],
    ['shadow-zoom', 'shadow-zoom', [s.shadowZoomX, s.shadowZoomY]],
    ['shadow-blur', 'shadow-blur', s.shadowBlur],
    flag('extrude', s.extrude, 'extrude', 'no-extrude'),
    ['extrude-shading', 'extrude-shading', s.extrudeSmooth ? 'smooth' : 'flat'],
    flag('shadow', s.shadowVisible, 'shadow', 'no-shadow'),
    ...(s.shadowOnly ? [['shadow-only', 'shadow-only', null]] : []),
  ];
}

const same = (a, b) => JSON.stringify(a) === JSON.stringify(b);

// The options that take `base` to `s`: [name, value] pairs.
export function changedOptions(s, base) {
  const before = new Map(settingOptions(base).map(([key, name, value]) => [key, [name, value]]));
  return settingOptions(s)
    .filter(([key, name, value]) => !before.has(key) || !same(before.get(key), [name, value]))
    .map(([, name, value]) => [name, value]);
}

// The job as arguments of the program (without its name). `job` = {settings, base, preset, text,
// fontPath (null for the default font), blockFile (set for text of several lines), output}.
export function commandArgs(job) {
  const args = [];
  if (job.preset) args.push('--preset', job.preset);
  if (job.fontPath) args.push('--font', job.fontPath);
  for (const [name, value] of changedOptions(job.settings, job.base)) {
    args.push(`--${name}`);
    if (value !== null) args.push(Array.isArray(value) ? value.join(',') : String(value));
  }
  if (job.blockFile) args.push('--outline-block', job.blockFile);
  else args.push('--text', job.text);
  args.push('-o', job.output);
  return args;
}

function shellQuote(word) {
  return /^[A-Za-z0-9_@%+=:,./#-]+$/.test(word) ? word : `'${word.replace(/'/g, `'\\''`)}'`;
}

export function commandLine(job) {
  return ['lettrix', ...commandArgs(job).map(shellQuote)].join(' ');
}

function pythonValue(v) {
  if (typeof v === 'boolean') return v ? 'True' : 'False';
  if (Array.isArray(v)) return `(${v.map(pythonValue).join(', ')})`;
  if (typeof v === 'number') return String(v);
  return JSON.stringify(v);
}

// The Python package's lettrix.render(text, ...) (or render_block for the page's several lines) with every
// option as a keyword (dashes to underscores), a pair of switches as one bool keyword, pairs as tuples;
// then lettrix.save.
export function pythonCall(job) {
  const kw = [];
  if (job.preset) kw.push(['preset', job.preset]);
  if (job.fontPath && !job.blockFile) kw.push(['font', job.fontPath]);
  for (const [name, value] of changedOptions(job.settings, job.base)) {
    // A block is laid out already: render_block takes no size.
    if (job.blockFile && name === 'size') continue;
    if (value !== null) kw.push([name.replace(/-/g, '_'), value]);
    else if (name.startsWith('no-')) kw.push([name.slice(3).replace(/-/g, '_'), false]);
    else kw.push([name.replace(/-/g, '_'), true]);
  }
  const args = kw.map(([k, v]) => `    ${k}=${pythonValue(v)},`);
  const call = job.blockFile
    ? `with open(${JSON.stringify(job.blockFile)}, "rb") as f:\n    block = f.read()\nimage = lettrix.render_block(\n    block,\n`
    : `image = lettrix.render(\n    ${pythonValue(job.text)},\n`;
  return `import lettrix\n\n${call}${args.join('\n')}${args.length ? '\n' : ''})\nlettrix.save(image, ${JSON.stringify(job.output)})\n`;
}
