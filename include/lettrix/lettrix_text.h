/* Lettrix text: UTF-8 text to the outline block Render draws.
 *
 * LettrixTextLayOut shapes the text with HarfBuzz (kerning, ligatures, marks, contextual forms, any
 * OpenType feature asked for), orders mixed left-to-right and right-to-left text with FriBidi, breaks it
 * into lines at line feeds and, when asked, at spaces to fit a width, aligns the lines, and writes the
 * glyphs' outlines from FreeType as one block of global memory in GetGlyphOutline's GGO_NATIVE layout:
 * TTPOLYGONHEADER / TTPOLYCURVE records, lines and quadratic splines only, 16.16 fixed-point pixels with
 * y growing downwards, ready to be handed to Render as it stands. TrueType and CFF (OpenType) fonts are
 * read; CFF's cubic curves are split into quadratic ones that stay within 1/16 pixel of them. A character
 * the font lacks is taken from a fallback font that fontconfig finds for it; one that no installed font
 * has is drawn as the font's missing-glyph box.
 *
 * Units: pixels throughout (1 pixel = 1 unit of the block); the origin is the top left corner of the
 * first line's box. Threads: calls on separate threads may run at once; nothing is shared between calls.
 * Linux (and other fontconfig systems) only: the Windows build offers no text library.
 */
#ifndef LETTRIX_TEXT_H
#define LETTRIX_TEXT_H

#include "lettrix_export.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Alignment of each line within the widest line. */
enum { LETTRIX_ALIGN_LEFT = 0, LETTRIX_ALIGN_CENTRE = 1, LETTRIX_ALIGN_RIGHT = 2 };
/** Base direction of each paragraph: AUTO takes it from the paragraph's first strong letter (left to
 *  right when it has none). */
enum { LETTRIX_DIRECTION_AUTO = 0, LETTRIX_DIRECTION_LTR = 1, LETTRIX_DIRECTION_RTL = 2 };

/** How to lay the text out. Start from LettrixTextDefaults and change what you need; strings are read
 *  during the call only. */
typedef struct LettrixTextLayout {
  const char* font_file;   /* a TrueType, OpenType (CFF) or collection file; NULL or "": font_family */
  const char* font_family; /* fontconfig pattern ("DejaVu Serif:bold") used when font_file is empty;
                              NULL or "" with no file: "DejaVu Sans:bold" */
  int32_t font_index;      /* face within a collection file, 0..65535 (default 0) */
  double pixel_size;       /* em size in pixels, 1..2048 (default 32) */
  int32_t align;           /* LETTRIX_ALIGN_*, default left */
  double line_spacing;     /* factor of the font's line height (ascender + descender + line gap),
                              0.1..10 (default 1) */
  double letter_spacing;   /* pixels added between characters, -1000..1000 (default 0) */
  double wrap_width;       /* 0 (default): lines end at line feeds only; else 1..32767 pixels: lines
                              also break at spaces to fit, and a word wider than this is broken inside */
  int32_t direction;       /* LETTRIX_DIRECTION_*, default auto */
  const char* language;    /* BCP 47 tag ("ar", "hi", "tr") steering language-specific forms; NULL or
                              "": none */
  const char* script;      /* ISO 15924 tag ("Arab", "Deva") for all the text; NULL or "": found for
                              each run of characters */
  const char* features;    /* OpenType features, comma separated, in HarfBuzz's syntax ("liga=0,kern",
                              "+smcp", "-kern"); NULL or "": the font's defaults */
  int32_t fallback;        /* nonzero (default): characters the font lacks come from fallback fonts */
} LettrixTextLayout;

/** One line of the result, in visual order from the top. */
typedef struct LettrixTextLine {
  double left, right; /* the pen's extent: where the line starts and ends after alignment */
  double top, bottom; /* the line's box: baseline minus the font's ascender, plus its descender */
  double baseline;
  size_t text_offset; /* the bytes of the text the line shows (line feeds and the spaces a wrapped */
  size_t text_length; /* line ends at are left out) */
} LettrixTextLine;

/** One glyph of the result, in drawing order (each line's glyphs left to right). */
typedef struct LettrixTextGlyph {
  uint32_t glyph;  /* glyph index in its font */
  uint32_t font;   /* index into font_files: 0 the chosen font, higher numbers fallback fonts */
  size_t cluster;  /* byte offset in the text of the first character this glyph belongs to */
  uint32_t line;   /* index into lines */
  int32_t missing; /* nonzero: no installed font has the character; this is the missing-glyph box */
  double x, y;     /* the glyph's origin on the baseline, pixels */
  double advance;  /* pen advance, pixels, letter spacing included */
} LettrixTextGlyph;

/** What LettrixTextLayOut made. Everything in it belongs to the library until LettrixTextRelease. */
typedef struct LettrixTextResult {
  void* block;       /* global-memory handle of the outline block (its address: a fixed block), ready
                        for Render; NULL when the text has no ink (spaces only, say) */
  size_t block_size; /* bytes */
  int32_t ink_left, ink_top, ink_right, ink_bottom; /* the whole-pixel box Render measures for the
                        block (right and bottom outside); all 0 without a block */
  double width;                                     /* pen advance of the widest line */
  double height;                                    /* from the first line's top to the last line's bottom */
  size_t line_count;
  LettrixTextLine* lines;
  size_t glyph_count;
  LettrixTextGlyph* glyphs;
  size_t missing_count; /* characters no installed font has */
  size_t font_count;
  const char** font_files; /* the file of each font used, the chosen one first */
} LettrixTextResult;

/** Fills *layout with the defaults above. */
LETTRIX_API void LETTRIX_CALL LettrixTextDefaults(LettrixTextLayout* layout);

/** Lays out `length` bytes of UTF-8 `text` (line feeds, and CR LF pairs, start new lines). Returns 1 and
 *  fills *result (release it with LettrixTextRelease), or 0 with *result emptied, no block made, and a
 *  message of at most message_size - 1 bytes in `message` (which may be NULL) when: text or layout is
 *  NULL; the text is not valid UTF-8; the font cannot be read, or fontconfig finds no font for the
 *  family; a number is out of its range; a feature, language or script cannot be understood; or a
 *  coordinate of the block would leave the 16.16 range (-32768..32767 pixels). */
LETTRIX_API int LETTRIX_CALL LettrixTextLayOut(const char* text, size_t length,
                                               const LettrixTextLayout* layout, LettrixTextResult* result,
                                               char* message, size_t message_size);

/** Frees everything in *result (the block included) and empties it; an empty result is left alone. */
LETTRIX_API void LETTRIX_CALL LettrixTextRelease(LettrixTextResult* result);

#ifdef __cplusplus
}
#endif

#endif
