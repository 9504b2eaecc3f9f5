// The wrapper class: a process slot and a Canvas, built on the exported functions alone.
#include <cstdint>

#include "lettrix/lettrix.h"
#include "platform/platform.h"

namespace {

bool HasProcess(RenderHandle slot) {
  return slot != 0 && slot != ~RenderHandle{0};
}

// The exported functions read one byte where these methods take an int: on the little-endian targets the
// int's address is that of its lowest byte.
const uint8_t* LowByte(const int& v) {
  return reinterpret_cast<const uint8_t*>(&v);
}

}  // namespace

CLettrix::CLettrix()
    : slot(0), canvasMemory(nullptr), canvasPixels(nullptr), canvasWidth(0), canvasHeight(0) {}

CLettrix::~CLettrix() {
  DestroyProcess();
}

CLettrix& CLettrix::operator=(const CLettrix& other) {
  slot = other.slot;
  canvasMemory = other.canvasMemory;
  canvasPixels = other.canvasPixels;
  canvasWidth = other.canvasWidth;
  canvasHeight = other.canvasHeight;
  return *this;
}

namespace {

void FreeCanvas(void** memory, uint32_t** pixels) {
  if (!lx::platform::IsNoBlock(*memory)) {
    lx::platform::ReleaseLockedBlock(*memory);
    *pixels = nullptr;
    *memory = nullptr;
  }
}

}  // namespace

int CLettrix::CreateCanvas(const int& width, const int& height) {
  FreeCanvas(&canvasMemory, &canvasPixels);
  canvasWidth = width;
  canvasHeight = height;
  // Deliberately 32-bit: (-1) x (-1) makes a 4-byte Canvas, and a product that wraps to 0 makes none.
  const uint32_t bytes = static_cast<uint32_t>(width) * static_cast<uint32_t>(height) * 4u;
  if (bytes != 0) {
    canvasMemory = lx::platform::GlobalAlloc(lx::platform::kGmemMoveableZeroInit, bytes);
    canvasPixels =
        canvasMemory != nullptr ? static_cast<uint32_t*>(lx::platform::GlobalLock(canvasMemory)) : nullptr;
  }
  return canvasPixels != nullptr ? 1 : 0;
}

int CLettrix::CreateProcessA() {
  slot = CreateRenderProcess();
  return HasProcess(slot) ? 1 : 0;
}

void CLettrix::DestroyProcess() {
  if (HasProcess(slot)) DestroyRenderProcess(&slot);
  FreeCanvas(&canvasMemory, &canvasPixels);
}

int CLettrix::RenderIt(void* const input) {
  if (input == nullptr || canvasWidth < 1 || canvasHeight < 1 || canvasPixels == nullptr ||
      !HasProcess(slot)) {
    return 0;
  }
  // A size whose 32-bit product wrapped made a Canvas smaller than its width and height claim.
  const uint64_t needed = uint64_t(uint32_t(canvasWidth)) * uint32_t(canvasHeight) * 4u;
  if (!lx::platform::IsNoBlock(canvasMemory) && lx::platform::GlobalSize(canvasMemory) < needed) return 0;
  const int32_t width = canvasWidth;
  const int32_t height = canvasHeight;
  return Render(&slot, input, &width, &height, canvasPixels) ? 1 : 0;
}

namespace {

// Forwarding: nothing is called without a process.
template <typename Call>
int Forward(RenderHandle slot, int result, Call call) {
  if (!HasProcess(slot)) return 0;
  call();
  return result;
}

template <typename Call>
int ForwardTruth(RenderHandle slot, Call call) {
  if (!HasProcess(slot)) return 0;
  return call() ? 1 : 0;
}

// The class keeps the Win32 integer types of its interface; the functions take the fixed-width ones.
template <typename Word>
const uint32_t* Words(const Word* p) {
  static_assert(sizeof(Word) == 4, "32-bit words");
  return reinterpret_cast<const uint32_t*>(p);
}
const int32_t* Int32(const LettrixLong& v) {
  static_assert(sizeof(LettrixLong) == 4, "32-bit long");
  return reinterpret_cast<const int32_t*>(&v);
}

}  // namespace

int CLettrix::BlurFace(const unsigned char& level) {
  return Forward(slot, 0, [&] { SetFaceBlurLevel(&slot, &level); });
}
int CLettrix::BlurOutline(const unsigned char& level) {
  return Forward(slot, 0, [&] { SetOutlineBlurLevel(&slot, &level); });
}
int CLettrix::BlurShadow(const unsigned char& level) {
  return Forward(slot, 0, [&] { SetShadowBlurLevel(&slot, &level); });
}

int CLettrix::EmbossFaceTexture(const double& angle, const unsigned char& a, const unsigned char& b,
                                const unsigned char& c) {
  return Forward(slot, 1, [&] { SetFaceTextureEmbossed(&slot, &angle, &a, &b, &c); });
}
int CLettrix::EnableFaceEmbossed(const int& on) {
  return Forward(slot, 1, [&] { ::EnableFaceEmbossed(&slot, LowByte(on)); });
}
int CLettrix::EnableOutline3DBorder(const int& on) {
  return Forward(slot, 1, [&] { ::EnableOutline3DBorder(&slot, LowByte(on)); });
}
int CLettrix::ExtrudeShadow(const int& on) {
  return Forward(slot, 1, [&] { SetShadowExtruded(&slot, LowByte(on)); });
}

int CLettrix::FaceStartColor(const unsigned char& alpha, const unsigned char& c0, const unsigned char& c1,
                             const unsigned char& c2) {
  return Forward(slot, 1, [&] { SetColorFaceStart(&slot, &alpha, &c0, &c1, &c2); });
}
int CLettrix::FaceEndColor(const unsigned char& alpha, const unsigned char& c0, const unsigned char& c1,
                           const unsigned char& c2) {
  return Forward(slot, 1, [&] { SetColorFaceEnd(&slot, &alpha, &c0, &c1, &c2); });
}
int CLettrix::FaceFillType(const int& type) {
  return Forward(slot, 1, [&] { SetFaceFillType(&slot, &type); });
}
int CLettrix::FaceGradient(const int& type, const double& p1, const double& p2) {
  return Forward(slot, 1, [&] { SetGradientFace(&slot, &type, &p1, &p2); });
}
int CLettrix::FaceGradientColors(const LettrixColorWord* colours, const unsigned int* stops,
                                 const unsigned char& count) {
  return ForwardTruth(slot,
                      [&] { return SetFaceGradientColors(&slot, Words(colours), Words(stops), &count); });
}
int CLettrix::FaceGradientFitMode(const int& mode) {
  return Forward(slot, 1, [&] { SetFaceGradientFitMode(&slot, LowByte(mode)); });
}
int CLettrix::FaceTexture(void* const pixels, const int& width, const int& height) {
  return ForwardTruth(slot, [&] { return SetTextureFace(&slot, pixels, &width, &height); });
}
int CLettrix::FaceTextureTiling(const int& mode) {
  return Forward(slot, 1, [&] { SetFaceTextureTiling(&slot, &mode); });
}
int CLettrix::FaceUserGradientArea(const LettrixLong& left, const LettrixLong& top, const LettrixLong& right,
                                   const LettrixLong& bottom) {
  return ForwardTruth(slot, [&] {
    return SetFaceUserGradientArea(&slot, Int32(left), Int32(top), Int32(right), Int32(bottom));
  });
}

int CLettrix::OutlineStartColor(const unsigned char& alpha, const unsigned char& c0, const unsigned char& c1,
                                const unsigned char& c2) {
  return Forward(slot, 1, [&] { SetColorOutlineStart(&slot, &alpha, &c0, &c1, &c2); });
}
int CLettrix::OutlineEndColor(const unsigned char& alpha, const unsigned char& c0, const unsigned char& c1,
                              const unsigned char& c2) {
  return Forward(slot, 1, [&] { SetColorOutlineEnd(&slot, &alpha, &c0, &c1, &c2); });
}
int CLettrix::OutlineFillType(const int& type) {
  return Forward(slot, 1, [&] { SetOutlineFillType(&slot, &type); });
}
int CLettrix::OutlineGradient(const int& type, const double& p1, const double& p2) {
  return Forward(slot, 1, [&] { SetGradientOutline(&slot, &type, &p1, &p2); });
}
int CLettrix::OutlineGradientColors(const LettrixColorWord* colours, const unsigned int* stops,
                                    const unsigned char& count) {
  return ForwardTruth(slot,
                      [&] { return SetOutlineGradientColors(&slot, Words(colours), Words(stops), &count); });
}
int CLettrix::OutlineGradientFitMode(const int& mode) {
  return Forward(slot, 1, [&] { SetOutlineGradientFitMode(&slot, LowByte(mode)); });
}
int CLettrix::OutlineTexture(void* const pixels, const int& width, const int& height) {
  return ForwardTruth(slot, [&] { return SetTextureOutline(&slot, pixels, &width, &height); });
}
int CLettrix::OutlineTextureTiling(const int& mode) {
  return Forward(slot, 1, [&] { SetOutlineTextureTiling(&slot, &mode); });
}
int CLettrix::OutlineThickness(const int& thickness) {
  return Forward(slot, 1, [&] { SetOutlineThickness(&slot, &thickness); });
}
int CLettrix::OutlineUserGradientArea(const LettrixLong& left, const LettrixLong& top,
                                      const LettrixLong& right, const LettrixLong& bottom) {
  return ForwardTruth(slot, [&] {
    return SetOutlineUserGradientArea(&slot, Int32(left), Int32(top), Int32(right), Int32(bottom));
  });
}
int CLettrix::Outline3DBorder(const unsigned char& width, const unsigned char& depth, const double& angle) {
  return Forward(slot, 1, [&] { SetOutline3DBorder(&slot, &width, &depth, &angle); });
}

int CLettrix::ShadowColor(const unsigned char& alpha, const unsigned char& c0, const unsigned char& c1,
                          const unsigned char& c2) {
  return Forward(slot, 1, [&] { SetShadowColor(&slot, &alpha, &c0, &c1, &c2); });
}
int CLettrix::ShadowOffset(const int& x, const int& y) {
  return Forward(slot, 1, [&] { SetShadowOffset(&slot, &x, &y); });
}
int CLettrix::ShadowOnly(const int& on) {
  return Forward(slot, 1, [&] { SetDrawShadowOnly(&slot, LowByte(on)); });
}
int CLettrix::ShadowVisible(const int& on) {
  return Forward(slot, 1, [&] { SetShadowVisible(&slot, LowByte(on)); });
}
int CLettrix::ShadowZoom(const double& x, const double& y) {
  return Forward(slot, 1, [&] { SetShadowZoom(&slot, &x, &y); });
}
int CLettrix::TranslateGlyph(const int& dx, const int& dy) {
  return Forward(slot, 1, [&] { SetTranslation(&slot, &dx, &dy); });
}
int CLettrix::TranslationOff() {
  return Forward(slot, 1, [&] { ResetTranslation(&slot); });
}
