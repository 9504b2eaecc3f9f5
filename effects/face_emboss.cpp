#include "effects/face_emboss.h"

#include "effects/channel_tint.h"
#include "effects/colour_bleed.h"
#include "effects/emboss_filter.h"

namespace lx {

void FaceEmboss(const PixelView& image, int32_t bleedDistance, EmbossFilter* emboss,
                const ChannelTint* tint) {
  if (image.empty()) return;
  if (bleedDistance > 0) SquareColourBleed(image, bleedDistance);
  if (emboss != nullptr) emboss->apply(image);
  if (tint != nullptr && !tint->isIdentity()) tint->apply(image);
}

}  // namespace lx
