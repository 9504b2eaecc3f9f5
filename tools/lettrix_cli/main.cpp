// lettrix: renders decorated text with every setting of the library into a PNG or TGA file.
#include <string>
#include <vector>

#include "compose/composition.h"
#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/png_file.h"
#include "tools/lettrix_cli/program.h"
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
    const std::vector<uint8_t> bytes = lxt::ReadWholeFile(path, "texture file");
    if (bytes.size() >= 8 && bytes[0] == 0x89 && bytes[1] == 'P' && bytes[2] == 'N' && bytes[3] == 'G') {
      return lx::compose::ToRgba(lxt::DecodePng(bytes, path));
    }
    return lx::compose::ToRgba(lxt::DecodeTga(bytes, path));
  };
  parts.encodePng = lxt::EncodePng;
  return lxt::RunProgram(std::vector<std::string>(argv + 1, argv + argc), parts);
}
