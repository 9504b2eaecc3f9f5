/* Lettrix: decorated text drawn into a caller's 32-bit pixel buffer.
 *
 * The caller lays its text out itself and hands Render the glyph outlines as one block of global memory
 * in GetGlyphOutline's GGO_NATIVE layout (TTPOLYGONHEADER / TTPOLYCURVE records, 16.16 fixed point,
 * y growing downwards, one unit per pixel). The block is passed as its global-memory handle, from
 * GlobalAlloc with GMEM_FIXED or GMEM_MOVEABLE (off Windows, LettrixGlobalAlloc): Render locks it for the
 * read and unlocks it before it returns. Three layers are drawn, bottom to top: Shadow, Outline, Face.
 *
 * 32-bit and 64-bit Windows: lettrix.dll exists for both; a program loads the one of its own bitness.
 * The interface is the same in both, the handle slot (RenderHandle) being pointer-sized, and so is the
 * outline block's layout (GGO_NATIVE records hold no pointers). Both draw the same pixels.
 *
 * Pixels are 4 bytes: blue, green, red, alpha in memory; rows are width * 4 bytes with no padding.
 * Colours are passed as (alpha, c0, c1, c2) with c0 red, c1 green, c2 blue.
 *
 * Every function but CreateRenderProcess takes the address of the caller's RenderHandle slot. A slot
 * holding 0 or all ones has no process: the function then does nothing and returns 0 / false.
 * All other arguments are passed by address (except texture pixels and Render's block and buffer).
 * No function raises, logs or keeps state beyond the processes the caller holds. A process must not be
 * used by two threads at once; separate processes may be used from separate threads.
 *
 * Extruded Shadow: SetShadowExtruded(1) turns the flat Shadow into a solid block that joins the copy at
 * the Shadow offset to the glyphs' own position: the Shadow shape is laid over itself at every pixel step
 * of the line between the two. With SetExtrudedShadowColor(1) (the default) the overlapping steps are
 * composited over each other, so a translucent Shadow grows denser towards the glyphs; with any other
 * value (0, say) the block is one even body in the Shadow colour at the Shadow alpha (an opaque Shadow
 * looks the same either way). With a Shadow blur level of 0 the block's outline is then smoothed: a
 * light blur of its alpha (radius 1, three times) rounds off the stair-steps the line leaves on slanted
 * sides, and a steeper alpha ramp about half the body's alpha restores a solid body with an antialiased
 * edge about two pixels wide, where the unsmoothed edge was. The body's alpha is that of the densest pixel
 * of the Shadow image; when that image has more than 2^22 pixels, or its pixels times the stamps pass
 * 2^26, and the part that can reach the buffer falls short of the densest value the stamps allow, it is
 * measured over that part alone. Colours are left as drawn. A Shadow blur level above 0 replaces that
 * smoothing by the ordinary blur. An extrusion costs about its length in pixels times the Shadow image's
 * pixels: a Shadow whose extrusion would still cost more than 2^34 pixel blends after it is cut down to
 * what can reach the buffer is not drawn at all (the Outline and Face still are); everyday offsets never
 * come near.
 *
 * Caller memory: the functions that take the caller's memory (Render's block and buffer, textures,
 * colour stops) check it before use, but those checks see unmapped or protected memory only. A heap
 * block that is too small for the size given is not caught: the caller must pass sizes that fit.
 */
#ifndef LETTRIX_H
#define LETTRIX_H

#include "lettrix_export.h"

#ifndef __cplusplus
#include <stdbool.h>
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** The caller's slot for one render process: its address, or 0 / all ones for none. */
typedef uintptr_t RenderHandle;

/** Creates a render process with default settings. Returns its handle value for the caller's slot,
 *  or 0 when memory ran out. Release it with DestroyRenderProcess. */
LETTRIX_API RenderHandle LETTRIX_CALL CreateRenderProcess(void);

/** Destroys the process in *slot (if any) with its textures, and always writes 0 into the slot. */
LETTRIX_API void LETTRIX_CALL DestroyRenderProcess(RenderHandle* slot);

/** Draws the outlines of the global-memory block `block` (a fixed or movable handle, locked only during
 *  the call) into `buffer` (*width x *height pixels, both >= 1). Returns true when drawn; false, with the
 *  buffer untouched, for a bad slot, block (no size, not lockable, unreadable), size or buffer
 *  (unreadable or unwritable memory included) or an outline with no area. */
LETTRIX_API bool LETTRIX_CALL Render(RenderHandle* slot, void* block, const int32_t* width,
                                     const int32_t* height, void* buffer);

/** Face fill colour, or gradient start colour; takes the colour-stop table out of force. */
LETTRIX_API void LETTRIX_CALL SetColorFaceStart(RenderHandle* slot, const uint8_t* alpha, const uint8_t* c0,
                                                const uint8_t* c1, const uint8_t* c2);
/** Face gradient end colour; takes the colour-stop table out of force. */
LETTRIX_API void LETTRIX_CALL SetColorFaceEnd(RenderHandle* slot, const uint8_t* alpha, const uint8_t* c0,
                                              const uint8_t* c1, const uint8_t* c2);
/** Outline fill colour, or gradient start colour (default transparent black). */
LETTRIX_API void LETTRIX_CALL SetColorOutlineStart(RenderHandle* slot, const uint8_t* alpha,
                                                   const uint8_t* c0, const uint8_t* c1, const uint8_t* c2);
/** Outline gradient end colour. */
LETTRIX_API void LETTRIX_CALL SetColorOutlineEnd(RenderHandle* slot, const uint8_t* alpha, const uint8_t* c0,
                                                 const uint8_t* c1, const uint8_t* c2);
/** Shadow colour and opacity (0 = no Shadow drawn). */
LETTRIX_API void LETTRIX_CALL SetShadowColor(RenderHandle* slot, const uint8_t* alpha, const uint8_t* c0,
                                             const uint8_t* c1, const uint8_t* c2);
/** Shadow offset in pixels, unclamped. */
LETTRIX_API void LETTRIX_CALL SetShadowOffset(RenderHandle* slot, const int32_t* x, const int32_t* y);
/** Shadow scale factors; both are stored only when both are > 0, otherwise neither. */
LETTRIX_API void LETTRIX_CALL SetShadowZoom(RenderHandle* slot, const double* x, const double* y);
/** 1 draws the Shadow (default), 0 hides it. */
LETTRIX_API void LETTRIX_CALL SetShadowVisible(RenderHandle* slot, const uint8_t* on);
/** 1 draws the Shadow alone, without Face and Outline. */
LETTRIX_API void LETTRIX_CALL SetDrawShadowOnly(RenderHandle* slot, const uint8_t* on);
/** 1 extrudes the Shadow into a solid block (see above). A null pointer changes nothing. */
LETTRIX_API void LETTRIX_CALL SetShadowExtruded(RenderHandle* slot, const uint8_t* on);
/** Colouring of the extruded Shadow, 1 (default) or 0 (see above). A null pointer changes nothing. */
LETTRIX_API void LETTRIX_CALL SetExtrudedShadowColor(RenderHandle* slot, const uint8_t* value);
/** Face blur radius in pixels, 0 (none) to 254; larger values act as 254. */
LETTRIX_API void LETTRIX_CALL SetFaceBlurLevel(RenderHandle* slot, const uint8_t* level);
/** Outline blur radius in pixels, as SetFaceBlurLevel. */
LETTRIX_API void LETTRIX_CALL SetOutlineBlurLevel(RenderHandle* slot, const uint8_t* level);
/** Shadow blur radius in pixels, as SetFaceBlurLevel. */
LETTRIX_API void LETTRIX_CALL SetShadowBlurLevel(RenderHandle* slot, const uint8_t* level);
/** Face fill: 0 colour or gradient, any other value texture (used while a Face texture is set). */
LETTRIX_API void LETTRIX_CALL SetFaceFillType(RenderHandle* slot, const int32_t* type);
/** Outline fill: 0 colour or gradient, any other value texture. */
LETTRIX_API void LETTRIX_CALL SetOutlineFillType(RenderHandle* slot, const int32_t* type);
/** Face gradient: type 0 solid start colour, 1 linear top to bottom, 2 radial from the centre with p1 and
 *  p2 (0..1) the fractions of the radius where the ramp starts and ends, 3 linear at angle p1 (radians,
 *  clamped to [-pi, pi]). p2 is read for type 2 only, p1 for types 2 and 3; other types store 0. */
LETTRIX_API void LETTRIX_CALL SetGradientFace(RenderHandle* slot, const int32_t* type, const double* p1,
                                              const double* p2);
/** Outline gradient, as SetGradientFace. */
LETTRIX_API void LETTRIX_CALL SetGradientOutline(RenderHandle* slot, const int32_t* type, const double* p1,
                                                 const double* p2);
/** Face colour stops: *count packed colours (c0 | c1 << 8 | c2 << 16 | alpha << 24) with relative
 *  weights (stops may be null: all weights 1; a zero weight beside non-zero ones drops its colour).
 *  At most 256 are kept; the arrays are copied and must be readable and writable. Returns false, with the
 *  table emptied, for a count of 0, bad memory or a bad slot. */
LETTRIX_API bool LETTRIX_CALL SetFaceGradientColors(RenderHandle* slot, const uint32_t* colours,
                                                    const uint32_t* stops, const uint8_t* count);
/** Outline colour stops, as SetFaceGradientColors. */
LETTRIX_API bool LETTRIX_CALL SetOutlineGradientColors(RenderHandle* slot, const uint32_t* colours,
                                                       const uint32_t* stops, const uint8_t* count);
/** Face gradient extent: 0 the outline's box, 1 the whole buffer; a user gradient area overrides both. */
LETTRIX_API void LETTRIX_CALL SetFaceGradientFitMode(RenderHandle* slot, const uint8_t* mode);
/** Outline gradient extent, as SetFaceGradientFitMode (mode 0 includes the stroke). */
LETTRIX_API void LETTRIX_CALL SetOutlineGradientFitMode(RenderHandle* slot, const uint8_t* mode);
/** Face gradient area in buffer pixels. Stored even when empty; returns true when not empty (an empty
 *  area means none), false also for a bad slot. */
LETTRIX_API bool LETTRIX_CALL SetFaceUserGradientArea(RenderHandle* slot, const int32_t* left,
                                                      const int32_t* top, const int32_t* right,
                                                      const int32_t* bottom);
/** Outline gradient area, as SetFaceUserGradientArea. */
LETTRIX_API bool LETTRIX_CALL SetOutlineUserGradientArea(RenderHandle* slot, const int32_t* left,
                                                         const int32_t* top, const int32_t* right,
                                                         const int32_t* bottom);
/** Copies a Face texture of *width x *height pixels (made opaque); the caller may free its pixels at once.
 *  The memory must be readable and writable. Returns false, leaving the stored texture as it was, for a
 *  null pointer, a size below 1, bad memory or a bad slot. */
LETTRIX_API bool LETTRIX_CALL SetTextureFace(RenderHandle* slot, void* pixels, const int32_t* width,
                                             const int32_t* height);
/** Copies an Outline texture, as SetTextureFace. */
LETTRIX_API bool LETTRIX_CALL SetTextureOutline(RenderHandle* slot, void* pixels, const int32_t* width,
                                                const int32_t* height);
/** Face texture placement: 0 centred once on white, 1 stretched (bilinear), 2 tiled (default; any other
 *  value). */
LETTRIX_API void LETTRIX_CALL SetFaceTextureTiling(RenderHandle* slot, const int32_t* mode);
/** Outline texture placement, as SetFaceTextureTiling. */
LETTRIX_API void LETTRIX_CALL SetOutlineTextureTiling(RenderHandle* slot, const int32_t* mode);
/** Face emboss light: azimuth in radians (clamped to [-pi, pi]; NaN lights as 0) and a tint; the grey
 *  relief is scaled per channel by a/255 (red), c/255 (green) and b/255 (blue). 255, 255, 255 keeps it
 *  grey. */
LETTRIX_API void LETTRIX_CALL SetFaceTextureEmbossed(RenderHandle* slot, const double* angle,
                                                     const uint8_t* a, const uint8_t* b, const uint8_t* c);
/** 1 embosses the Face. A null pointer changes nothing. */
LETTRIX_API void LETTRIX_CALL EnableFaceEmbossed(RenderHandle* slot, const uint8_t* on);
/** 1 gives the Outline a bevelled 3D border. A null pointer changes nothing. */
LETTRIX_API void LETTRIX_CALL EnableOutline3DBorder(RenderHandle* slot, const uint8_t* on);
/** 3D border light: elevation in degrees (clamped to 3..60), shading passes (1..60), azimuth in radians
 *  (clamped to [-pi, pi]; NaN lights as 0). */
LETTRIX_API void LETTRIX_CALL SetOutline3DBorder(RenderHandle* slot, const uint8_t* width,
                                                 const uint8_t* depth, const double* angle);
/** Outline thickness in pixels on each side of the contour (stroke width 2 * thickness, clamped to
 *  0..1000); 0 draws no Outline. */
LETTRIX_API void LETTRIX_CALL SetOutlineThickness(RenderHandle* slot, const int32_t* thickness);
/** Moves the drawing by (dx, dy) pixels; successive calls add up. */
LETTRIX_API void LETTRIX_CALL SetTranslation(RenderHandle* slot, const int32_t* dx, const int32_t* dy);
/** Removes every translation. */
LETTRIX_API void LETTRIX_CALL ResetTranslation(RenderHandle* slot);

#if defined(LETTRIX_HAS_GLOBAL_MEMORY)
/* Global memory for outline blocks, with kernel32's semantics: flags 0x02 makes a movable block (it counts
 * locks), 0x40 zero-fills; the handle is the block's address; 0 and all ones are no block. */
/** Allocates `bytes` (0 gives a null handle). Returns the handle, or null. */
LETTRIX_API void* LETTRIX_CALL LettrixGlobalAlloc(unsigned flags, size_t bytes);
/** Returns the address of the block, or null for an unknown handle. */
LETTRIX_API void* LETTRIX_CALL LettrixGlobalLock(void* handle);
/** Returns nonzero while the block stays locked. */
LETTRIX_API int LETTRIX_CALL LettrixGlobalUnlock(void* handle);
/** Frees the block. Returns null on success, the handle on failure. */
LETTRIX_API void* LETTRIX_CALL LettrixGlobalFree(void* handle);
/** The block's size in bytes, 0 for an unknown handle. */
LETTRIX_API size_t LETTRIX_CALL LettrixGlobalSize(void* handle);
#endif

#ifdef __cplusplus
}
#endif

#ifdef __cplusplus
/* The same service as one object: a render process and a Canvas (a 32-bit image in global memory, zero
 * pixels when made) into which RenderIt draws. Every setting method forwards to the exported function of
 * the same role and returns 1, or 0 without calling anything when the object has no process; the three
 * blur methods always return 0, and the colour-stop, user-area and texture methods return the function's
 * truth value. Methods that take an int by reference where the function takes a byte hand on the int's
 * lowest byte (256 is 0, 257 is 1).
 *
 * Assignment copies the fields only: both objects then share one process and one Canvas, and the caller
 * must destroy them once. An object must not be used by two threads at once. */
class LETTRIX_API CLettrix {
 public:
  /** No process, no Canvas. */
  CLettrix();
  /** Destroys the process and frees the Canvas, as DestroyProcess. */
  ~CLettrix();
  /** Copies the five fields; nothing is duplicated or freed. Returns *this. */
  CLettrix& operator=(const CLettrix& other);
  /** Not offered: a copy would share the process and Canvas and free them twice. */
  CLettrix(const CLettrix&) = delete;

  /** Frees any Canvas, stores width and height as given, and allocates width * height * 4 zero bytes
   *  (computed in 32-bit arithmetic; nothing is allocated when that is 0). Returns 1 when the Canvas has
   *  pixels, else 0. */
  int CreateCanvas(const int& width, const int& height);
  /** Creates a render process; the one held before is not destroyed. Returns 1 on success, else 0. */
  int CreateProcessA();
  /** Destroys the process (if any) and frees the Canvas; width and height keep their values. */
  void DestroyProcess();
  /** Renders the outline block `input` into the Canvas. Returns 0 without drawing for a null input, a
   *  Canvas width or height below 1, no Canvas pixels or no process (tested in that order), or a Canvas
   *  smaller than width * height * 4 bytes; otherwise Render's result, 1 or 0. */
  int RenderIt(void* const input);

  /** SetFaceBlurLevel. Returns 0 in every case. */
  int BlurFace(const unsigned char& level);
  /** SetOutlineBlurLevel. Returns 0 in every case. */
  int BlurOutline(const unsigned char& level);
  /** SetShadowBlurLevel. Returns 0 in every case. */
  int BlurShadow(const unsigned char& level);
  /** SetFaceTextureEmbossed(angle, a, b, c). */
  int EmbossFaceTexture(const double& angle, const unsigned char& a, const unsigned char& b,
                        const unsigned char& c);
  /** EnableFaceEmbossed with the int's lowest byte. */
  int EnableFaceEmbossed(const int& on);
  /** EnableOutline3DBorder with the int's lowest byte. */
  int EnableOutline3DBorder(const int& on);
  /** SetShadowExtruded with the int's lowest byte. */
  int ExtrudeShadow(const int& on);
  /** SetColorFaceStart(alpha, red, green, blue). */
  int FaceStartColor(const unsigned char& alpha, const unsigned char& c0, const unsigned char& c1,
                     const unsigned char& c2);
  /** SetColorFaceEnd(alpha, red, green, blue). */
  int FaceEndColor(const unsigned char& alpha, const unsigned char& c0, const unsigned char& c1,
                   const unsigned char& c2);
  /** SetFaceFillType. */
  int FaceFillType(const int& type);
  /** SetGradientFace. */
  int FaceGradient(const int& type, const double& p1, const double& p2);
  /** SetFaceGradientColors; returns its truth value. */
  int FaceGradientColors(const LettrixColorWord* colours, const unsigned int* stops,
                         const unsigned char& count);
  /** SetFaceGradientFitMode with the int's lowest byte. */
  int FaceGradientFitMode(const int& mode);
  /** SetTextureFace; returns its truth value. */
  int FaceTexture(void* const pixels, const int& width, const int& height);
  /** SetFaceTextureTiling. */
  int FaceTextureTiling(const int& mode);
  /** SetFaceUserGradientArea; returns its truth value. */
  int FaceUserGradientArea(const LettrixLong& left, const LettrixLong& top, const LettrixLong& right,
                           const LettrixLong& bottom);
  /** SetColorOutlineStart(alpha, red, green, blue). */
  int OutlineStartColor(const unsigned char& alpha, const unsigned char& c0, const unsigned char& c1,
                        const unsigned char& c2);
  /** SetColorOutlineEnd(alpha, red, green, blue). */
  int OutlineEndColor(const unsigned char& alpha, const unsigned char& c0, const unsigned char& c1,
                      const unsigned char& c2);
  /** SetOutlineFillType. */
  int OutlineFillType(const int& type);
  /** SetGradientOutline. */
  int OutlineGradient(const int& type, const double& p1, const double& p2);
  /** SetOutlineGradientColors; returns its truth value. */
  int OutlineGradientColors(const LettrixColorWord* colours, const unsigned int* stops,
                            const unsigned char& count);
  /** SetOutlineGradientFitMode with the int's lowest byte. */
  int OutlineGradientFitMode(const int& mode);
  /** SetTextureOutline; returns its truth value. */
  int OutlineTexture(void* const pixels, const int& width, const int& height);
  /** SetOutlineTextureTiling. */
  int OutlineTextureTiling(const int& mode);
  /** SetOutlineThickness. */
  int OutlineThickness(const int& thickness);
  /** SetOutlineUserGradientArea; returns its truth value. */
  int OutlineUserGradientArea(const LettrixLong& left, const LettrixLong& top, const LettrixLong& right,
                              const LettrixLong& bottom);
  /** SetOutline3DBorder(elevation, passes, azimuth). */
  int Outline3DBorder(const unsigned char& width, const unsigned char& depth, const double& angle);
  /** SetShadowColor(alpha, red, green, blue). */
  int ShadowColor(const unsigned char& alpha, const unsigned char& c0, const unsigned char& c1,
                  const unsigned char& c2);
  /** SetShadowOffset. */
  int ShadowOffset(const int& x, const int& y);
  /** SetDrawShadowOnly with the int's lowest byte. */
  int ShadowOnly(const int& on);
  /** SetShadowVisible with the int's lowest byte. */
  int ShadowVisible(const int& on);
  /** SetShadowZoom; returns 1 also when the factors were refused. */
  int ShadowZoom(const double& x, const double& y);
  /** SetTranslation. */
  int TranslateGlyph(const int& dx, const int& dy);
  /** ResetTranslation. */
  int TranslationOff();

  /* The fields, in this order; the slot must stay first. */
  RenderHandle slot;      /* the process, or 0 */
  void* canvasMemory;     /* global-memory handle of the Canvas, or null */
  uint32_t* canvasPixels; /* the locked Canvas: canvasWidth * canvasHeight pixels, or null */
  int canvasWidth;
  int canvasHeight;
};
#endif

#endif
