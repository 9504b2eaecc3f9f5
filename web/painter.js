// The second drawing thread: while the drawing worker measures a picture's canvas, this one draws the
// picture itself on the measuring canvas, so that a picture on a coloured background costs the time of
// one render instead of two.
//
// Messages in: {id, settings, block, box, fill, textures} (see Renderer.paint); answers {id, pixels}
// with pixels null when it could not draw. Says {type: 'listening'} once it can.
import createLettrixModule from './lettrix.mjs';
import { Renderer } from './renderer.js';

const ready = createLettrixModule().then((module) => new Renderer(module));

self.onmessage = async ({ data }) => {
  let pixels = null;
  try {
    pixels = (await ready).paint(data.settings, data.block, data.box, data.fill, data.textures);
  } catch {
    // The drawing worker draws the picture itself.
  }
  self.postMessage({ id: data.id, pixels }, pixels ? [pixels.buffer] : []);
};
ready.then(() => self.postMessage({ type: 'listening' }));
