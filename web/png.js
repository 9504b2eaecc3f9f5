// PNG files of the library's pixels. A canvas keeps its pixels premultiplied and rounds every
// translucent one on the way out, so "Download PNG" writes the file itself: straight alpha, byte for
// byte what the library drew, as the lettrix program writes it.

const kCrcTable = (() => {
  const table = new Uint32Array(256);
  for (let n = 0; n < 256; ++n) {
    let c = n;
    for (let k = 0; k < 8; ++k) c = c & 1 ? 0xedb88320 ^ (c >>> 1) : c >>> 1;
    table[n] = c >>> 0;
  }
  return table;
})();

function crc32(bytes) {
  let c = 0xffffffff;
  for (let i = 0; i < bytes.length; ++i) c = kCrcTable[(c ^ bytes[i]) & 255] ^ (c >>> 8);
  return (c ^ 0xffffffff) >>> 0;
}

function chunk(type, data) {
  const out = new Uint8Array(12 + data.length);
  const view = new DataView(out.buffer);
  view.setUint32(0, data.length);
  for (let i = 0; i < 4; ++i) out[4 + i] = type.charCodeAt(i);
  out.set(data, 8);
  view.setUint32(8 + data.length, crc32(out.subarray(4, 8 + data.length)));
  return out;
}

// A PNG file (8-bit RGBA) of width x height pixels given in memory order blue, green, red, alpha.
export async function encodePng(width, height, bgra) {
  const stride = width * 4 + 1;
  const rows = new Uint8Array(stride * height);  // each row: filter type 0, then its pixels
  for (let y = 0; y < height; ++y) {
    for (let x = 0, from = y * width * 4, to = y * stride + 1; x < width; ++x, from += 4, to += 4) {
      rows[to] = bgra[from + 2];
      rows[to + 1] = bgra[from + 1];
      rows[to + 2] = bgra[from];
      rows[to + 3] = bgra[from + 3];
    }
  }
  const compressed = new Response(new Blob([rows]).stream().pipeThrough(new CompressionStream('deflate')));
  const header = new Uint8Array(13);
  const view = new DataView(header.buffer);
  view.setUint32(0, width);
  view.setUint32(4, height);
  header[8] = 8;  // bits per channel
  header[9] = 6;  // RGBA; compression, filtering and interlacing stay 0
  const signature = Uint8Array.of(137, 80, 78, 71, 13, 10, 26, 10);
  const idat = chunk('IDAT', new Uint8Array(await compressed.arrayBuffer()));
  return new Blob([signature, chunk('IHDR', header), idat, chunk('IEND', new Uint8Array(0))], { type: 'image/png' });
}
