// Everything one run of the programs is asked to do: the picture's settings (the composition layer's),
// the text, and the files to read and write.
#pragma once

#include <string>

#include "compose/settings.h"

namespace lxt {

using lx::compose::Align;
using lx::compose::ColourStop;
using lx::compose::Direction;
using lx::compose::FillKind;
using lx::compose::GradientShape;
using lx::compose::LayerSettings;
using lx::compose::Rgba;
using lx::compose::TextureTiling;

struct Job : lx::compose::Settings {
  std::string text;  // UTF-8
  bool hasText = false;
  std::string textFile;  // read the text from this file when the run starts; "-" is standard input

  std::string output;        // .png or .tga
  std::string dumpOutline;   // write the outline block here
  std::string outlineBlock;  // render this block file instead of text
};

}  // namespace lxt
