// Render after any sequence of settings, on any outline block. The input starts with the buffer's
// size, its old content and a list of setter calls (every exported setter can be reached, with any
// values, and with null pointers); the rest is the outline block.
//
// Beyond not crashing, Render must keep what it promises: nothing written before or after the buffer
// (canaries around it), the buffer untouched when it answers false, and the same pixels when the same
// call is made again on the same old content (a read of memory nobody wrote would show here).
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "lettrix/lettrix.h"

namespace {

using lx::fuzz::FuzzInput;

constexpr size_t kCanaryPixels = 64;
constexpr uint32_t kCanary = 0xA5C3E10Fu;
constexpr int kSetterCount = 38;

// The argument values of one call. Each is read into its named local by a statement of its own
// before the call: the order in which a call's arguments are evaluated is the compiler's choice, and a
// saved input must decode the same whichever compiler built the target. A null flag hands the setter
// null pointers instead.
struct Args {
  FuzzInput& in;
  bool null;
  template <typename T>
  void Read(T* storage) {
    *storage = in.Value<T>();
  }
  template <typename T>
  const T* Ptr(const T* storage) const {
    return null ? nullptr : storage;
  }
};

// Calls setter number `which` (0..kSetterCount-1) with values read from the input.
void CallSetter(RenderHandle* slot, int which, FuzzInput& in, bool null) {
  Args a{in, null};
  uint8_t b0, b1, b2, b3;
  int32_t i0, i1, i2, i3;
  double d0, d1;
  switch (which) {
    case 0:
      a.Read(&b0);
      a.Read(&b1);
      a.Read(&b2);
      a.Read(&b3);
      SetColorFaceStart(slot, a.Ptr(&b0), a.Ptr(&b1), a.Ptr(&b2), a.Ptr(&b3));
      break;
    case 1:
      a.Read(&b0);
      a.Read(&b1);
      a.Read(&b2);
      a.Read(&b3);
      SetColorFaceEnd(slot, a.Ptr(&b0), a.Ptr(&b1), a.Ptr(&b2), a.Ptr(&b3));
      break;
    case 2:
      a.Read(&b0);
      a.Read(&b1);
      a.Read(&b2);
      a.Read(&b3);
      SetColorOutlineStart(slot, a.Ptr(&b0), a.Ptr(&b1), a.Ptr(&b2), a.Ptr(&b3));
      break;
    case 3:
      a.Read(&b0);
      a.Read(&b1);
      a.Read(&b2);
      a.Read(&b3);
      SetColorOutlineEnd(slot, a.Ptr(&b0), a.Ptr(&b1), a.Ptr(&b2), a.Ptr(&b3));
      break;
    case 4:
      a.Read(&b0);
      a.Read(&b1);
      a.Read(&b2);
      a.Read(&b3);
      SetShadowColor(slot, a.Ptr(&b0), a.Ptr(&b1), a.Ptr(&b2), a.Ptr(&b3));
      break;
    case 5:
      a.Read(&i0);
      a.Read(&i1);
      SetShadowOffset(slot, a.Ptr(&i0), a.Ptr(&i1));
      break;
    case 6:
      a.Read(&d0);
      a.Read(&d1);
      SetShadowZoom(slot, a.Ptr(&d0), a.Ptr(&d1));
      break;
    case 7:
      a.Read(&b0);
      SetShadowVisible(slot, a.Ptr(&b0));
      break;
    case 8:
      a.Read(&b0);
      SetDrawShadowOnly(slot, a.Ptr(&b0));
      break;
    case 9:
      a.Read(&b0);
      SetShadowExtruded(slot, a.Ptr(&b0));
      break;
    case 10:
      a.Read(&b0);
      SetExtrudedShadowColor(slot, a.Ptr(&b0));
      break;
    case 11:
      a.Read(&b0);
      SetFaceBlurLevel(slot, a.Ptr(&b0));
      break;
    case 12:
      a.Read(&b0);
      SetOutlineBlurLevel(slot, a.Ptr(&b0));
      break;
    case 13:
      a.Read(&b0);
      SetShadowBlurLevel(slot, a.Ptr(&b0));
      break;
    case 14:
      a.Read(&i0);
      SetFaceFillType(slot, a.Ptr(&i0));
      break;
    case 15:
      a.Read(&i0);
      SetOutlineFillType(slot, a.Ptr(&i0));
      break;
    case 16:
      a.Read(&i0);
      a.Read(&d0);
      a.Read(&d1);
      SetGradientFace(slot, a.Ptr(&i0), a.Ptr(&d0), a.Ptr(&d1));
      break;
    case 17:
      a.Read(&i0);
      a.Read(&d0);
      a.Read(&d1);
      SetGradientOutline(slot, a.Ptr(&i0), a.Ptr(&d0), a.Ptr(&d1));
      break;
    case 18:
    case 19: {
      // Up to 255 colours with weights, or with no weight table at all.
      uint8_t count = in.Byte();
      const bool noStops = (count & 1) != 0;
      std::vector<uint32_t> colours(count), stops(count);
      for (uint32_t& c : colours) c = in.Value<uint32_t>();
      for (uint32_t& s : stops) s = in.Value<uint32_t>();
      const uint32_t* c = null || colours.empty() ? nullptr : colours.data();
      const uint32_t* s = noStops || stops.empty() ? nullptr : stops.data();
      if (which == 18) {
        SetFaceGradientColors(slot, c, s, null ? nullptr : &count);
      } else {
        SetOutlineGradientColors(slot, c, s, null ? nullptr : &count);
      }
      break;
    }
    case 20:
      a.Read(&b0);
      SetFaceGradientFitMode(slot, a.Ptr(&b0));
      break;
    case 21:
      a.Read(&b0);
      SetOutlineGradientFitMode(slot, a.Ptr(&b0));
      break;
    case 22:
      a.Read(&i0);
      a.Read(&i1);
      a.Read(&i2);
      a.Read(&i3);
      SetFaceUserGradientArea(slot, a.Ptr(&i0), a.Ptr(&i1), a.Ptr(&i2), a.Ptr(&i3));
      break;
    case 23:
      a.Read(&i0);
      a.Read(&i1);
      a.Read(&i2);
      a.Read(&i3);
      SetOutlineUserGradientArea(slot, a.Ptr(&i0), a.Ptr(&i1), a.Ptr(&i2), a.Ptr(&i3));
      break;
    case 24:
    case 25: {
      // Small textures with pixels from the input. The size may also be zero or negative, but never
      // more than the pixels hold: that is the caller's duty.
      std::vector<uint32_t> pixels(16 * 16);
      int32_t width = 1 + in.Below(16), height = 1 + in.Below(16);
      for (size_t i = 0; i < static_cast<size_t>(width) * height; ++i) pixels[i] = in.Value<uint32_t>();
      if (in.Byte() == 0xFF) width = std::min(in.Value<int32_t>(), 16);
      void* memory = null ? nullptr : pixels.data();
      if (which == 24) {
        SetTextureFace(slot, memory, &width, &height);
      } else {
        SetTextureOutline(slot, memory, &width, &height);
      }
      break;
    }
    case 26:
      a.Read(&i0);
      SetFaceTextureTiling(slot, a.Ptr(&i0));
      break;
    case 27:
      a.Read(&i0);
      SetOutlineTextureTiling(slot, a.Ptr(&i0));
      break;
    case 28:
      a.Read(&d0);
      a.Read(&b0);
      a.Read(&b1);
      a.Read(&b2);
      SetFaceTextureEmbossed(slot, a.Ptr(&d0), a.Ptr(&b0), a.Ptr(&b1), a.Ptr(&b2));
      break;
    case 29:
      a.Read(&b0);
      EnableFaceEmbossed(slot, a.Ptr(&b0));
      break;
    case 30:
      a.Read(&b0);
      EnableOutline3DBorder(slot, a.Ptr(&b0));
      break;
    case 31:
      a.Read(&b0);
      a.Read(&b1);
      a.Read(&d0);
      SetOutline3DBorder(slot, a.Ptr(&b0), a.Ptr(&b1), a.Ptr(&d0));
      break;
    case 32:
      a.Read(&i0);
      SetOutlineThickness(slot, a.Ptr(&i0));
      break;
    case 33:
      a.Read(&i0);
      a.Read(&i1);
      SetTranslation(slot, a.Ptr(&i0), a.Ptr(&i1));
      break;
    case 34:
      ResetTranslation(slot);
      break;
    // Everyday values, so that the fuzzer reaches the drawing with effects on, not only clamped
    // extremes.
    case 35: {
      const int32_t thickness = in.Below(8);
      SetOutlineThickness(slot, &thickness);
      break;
    }
    case 36: {
      const int32_t x = static_cast<int8_t>(in.Byte()) / 8, y = static_cast<int8_t>(in.Byte()) / 8;
      SetShadowOffset(slot, &x, &y);
      break;
    }
    case 37: {
      const uint8_t level = in.Below(6);
      const uint8_t layer = in.Below(3);
      if (layer == 0) SetFaceBlurLevel(slot, &level);
      if (layer == 1) SetOutlineBlurLevel(slot, &level);
      if (layer == 2) SetShadowBlurLevel(slot, &level);
      break;
    }
  }
}

// The buffer between two canaries, filled with the same old content each time.
struct GuardedBuffer {
  GuardedBuffer(size_t pixels, uint32_t seed) : memory(pixels + 2 * kCanaryPixels, kCanary) {
    uint32_t v = seed;
    for (size_t i = 0; i < pixels; ++i) {
      v = v * 1664525u + 1013904223u;
      memory[kCanaryPixels + i] = v;
    }
  }
  void* pixels() { return memory.data() + kCanaryPixels; }
  bool CanariesIntact() const {
    for (size_t i = 0; i < kCanaryPixels; ++i) {
      if (memory[i] != kCanary || memory[memory.size() - 1 - i] != kCanary) return false;
    }
    return true;
  }
  std::vector<uint32_t> memory;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzInput in(data, size);
  const int32_t width = 1 + in.Below(64);
  const int32_t height = 1 + in.Below(64);
  const uint32_t seed = in.Value<uint32_t>();
  const int calls = in.Below(24);

  RenderHandle slot = CreateRenderProcess();
  if (slot == 0) return 0;
  for (int i = 0; i < calls; ++i) {
    const uint8_t op = in.Byte();
    CallSetter(&slot, (op & 0x7F) % kSetterCount, in, (op & 0x80) != 0);
  }

  const std::vector<uint8_t> bytes = in.Rest();
  void* block = bytes.empty() ? nullptr : LettrixGlobalAlloc(0, bytes.size());
  if (block != nullptr) std::memcpy(block, bytes.data(), bytes.size());

  const size_t pixels = static_cast<size_t>(width) * height;
  GuardedBuffer first(pixels, seed), second(pixels, seed);
  const GuardedBuffer before(pixels, seed);
  const bool drawn = Render(&slot, block, &width, &height, first.pixels());
  if (!first.CanariesIntact()) std::abort();
  if (!drawn && first.memory != before.memory) std::abort();
  if (drawn) {
    // The same call again: the same answer and the same pixels.
    if (!Render(&slot, block, &width, &height, second.pixels())) std::abort();
    if (!second.CanariesIntact() || second.memory != first.memory) std::abort();
  }

  if (block != nullptr) LettrixGlobalFree(block);
  DestroyRenderProcess(&slot);
  if (slot != 0) std::abort();
  return 0;
}
