#include "effects/face_emboss.h"

#include "effects/channel_tint.h"
#include "effects/colour_bleed.h"
#include "effects/emboss_filter.h"

namespace lx {

void FaceEmbossScratch::trim(size_t maxBytes) {
  if (bleed.capacity() * sizeof(int32_t) > maxBytes) std::vector<int32_t>().swap(bleed);
  if (relief.capacity() * sizeof(uint32_t) > maxBytes) std::vector<uint32_t>().swap(relief);
}

void FaceEmboss(const PixelView& image, int32_t bleedDistance, const EmbossFilter* emboss,
                const ChannelTint* tint, FaceEmbossScratch& scratch) {
  if (image.empty()) return;
  if (bleedDistance > 0) SquareColourBleed(image, bleedDistance, scratch.bleed);
  if (emboss != nullptr) emboss->apply(image, scratch.relief);
  if (tint != nullptr && !tint->isIdentity()) tint->apply(image);
}

}  // namespace lx
