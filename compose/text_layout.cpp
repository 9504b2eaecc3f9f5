// Text to outline blocks through the text library, with the settings' font and layout.
#include <memory>
#include <string>

#include "compose/composition.h"
#include "compose/laid_text.h"
#include "lettrix/lettrix_text.h"

namespace lx::compose {

std::vector<uint8_t> LayOutText(const Settings& settings, const std::string& text) {
  const std::string font = ResolveFont(settings);
  LettrixTextLayout layout;
  LettrixTextDefaults(&layout);
  layout.font_file = font.c_str();
  layout.pixel_size = settings.pixelSize;
  layout.align = settings.align == Align::kCentre  ? LETTRIX_ALIGN_CENTRE
                 : settings.align == Align::kRight ? LETTRIX_ALIGN_RIGHT
                                                   : LETTRIX_ALIGN_LEFT;
  layout.line_spacing = settings.lineSpacing;
  layout.letter_spacing = settings.letterSpacing;
  layout.wrap_width = settings.wrapWidth;
  layout.direction = settings.direction == Direction::kLeftToRight   ? LETTRIX_DIRECTION_LTR
                     : settings.direction == Direction::kRightToLeft ? LETTRIX_DIRECTION_RTL
                                                                     : LETTRIX_DIRECTION_AUTO;
  layout.language = settings.language.c_str();
  layout.features = settings.features.c_str();

  LaidText laid;
  char message[512];
  if (!LettrixTextLayOut(text.data(), text.size(), &layout, laid.get(), message, sizeof message)) {
    const std::string why = message;
    if (why.find("feature") != std::string::npos) throw SettingError("--features: " + why);
    if (why.find("language tag") != std::string::npos) throw SettingError("--language: " + why);
    if (why.rfind("cannot", 0) == 0) throw JobError(why);
    throw JobError("cannot lay out the text in '" + font + "': " + why);
  }
  const LettrixTextResult* r = laid.get();
  if (r->block == nullptr) throw JobError("nothing to draw: the text has no visible letters");
  const auto* bytes = static_cast<const uint8_t*>(r->block);
  return std::vector<uint8_t>(bytes, bytes + r->block_size);
}

RgbaImage Compose(const Settings& settings, const std::string& text, const ImageReader& readImage) {
  return RenderBlock(settings, LayOutText(settings, text), readImage);
}

}  // namespace lx::compose
