// lettrix: renders decorated text with every setting of the library into a PNG or TGA file.
#include <string>
#include <vector>

#include "compose/composition.h"
#include "tools/lettrix_cli/png_file.h"
#include "tools/lettrix_cli/program.h"
#include "tools/lettrix_cli/texture_file.h"
#include "tools/text_outline/text_outline.h"

int main(int argc, char** argv) {
  lxt::ProgramParts parts;
  parts.info.name = "lettrix";
  parts.info.summary = "Draws TEXT with a Face, an Outline and a Shadow into FILE (PNG or TGA).";
  parts.info.hasFontconfig = true;
  parts.info.readsPng = true;
  parts.info.defaultFont = lx::text::kDefaultFontPath;
  parts.layOutText = [](const lxt::Job& job) { return lx::compose::LayOutText(job, job.text); };
  parts.readImage = [](const std::string& path) {
    return lxt::ReadTextureFile(path, path, lxt::DecodePng, "lettrix");
  };
  parts.encodePng = lxt::EncodePng;
  return lxt::RunProgram(std::vector<std::string>(argv + 1, argv + argc), parts);
}
