// lettrix_image_compare A B [--tolerance N --max-share F]: compares two PNG or TGA images. Without a
// tolerance every byte must be equal; with one, at most the share F (0..1) of pixels may differ by more
// than N in some byte. Prints what it found; exit status 0 alike, 1 different, 2 unusable arguments.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/png_file.h"
#include "tools/lettrix_cli/tool_error.h"

namespace {

lxt::Image Load(const std::string& path) {
  const std::vector<uint8_t> bytes = lxt::ReadWholeFile(path, "image");
  const bool png = bytes.size() > 4 && bytes[1] == 'P' && bytes[2] == 'N' && bytes[3] == 'G';
  return png ? lxt::DecodePng(bytes, path) : lxt::DecodeTga(bytes, path);
}

int ByteDifference(uint32_t a, uint32_t b) {
  int most = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    const int d = std::abs(int(a >> shift & 0xFF) - int(b >> shift & 0xFF));
    if (d > most) most = d;
  }
  return most;
}

}  // namespace

int main(int argc, char** argv) {
  if (!(argc == 3 ||
        (argc == 7 && std::string(argv[3]) == "--tolerance" && std::string(argv[5]) == "--max-share"))) {
    std::fprintf(stderr, "usage: %s A B [--tolerance N --max-share F]\n", argv[0]);
    return 2;
  }
  const int tolerance = argc == 7 ? std::atoi(argv[4]) : 0;
  const double maxShare = argc == 7 ? std::atof(argv[6]) : 0.0;
  try {
    const lxt::Image a = Load(argv[1]), b = Load(argv[2]);
    if (a.width != b.width || a.height != b.height) {
      std::printf("sizes differ: %dx%d and %dx%d\n", a.width, a.height, b.width, b.height);
      return 1;
    }
    size_t differing = 0, beyond = 0;
    double sum = 0.0;
    for (size_t i = 0; i < a.pixels.size(); ++i) {
      const int d = ByteDifference(a.pixels[i], b.pixels[i]);
      differing += d != 0;
      beyond += d > tolerance;
      sum += d;
    }
    const double share = a.pixels.empty() ? 0.0 : double(beyond) / double(a.pixels.size());
    std::printf("%dx%d: %zu pixels differ, %zu (%.3f%%) by more than %d; mean largest byte difference %.3f\n",
                a.width, a.height, differing, beyond, share * 100.0, tolerance,
                sum / double(a.pixels.size()));
    return share <= maxShare ? 0 : 1;
  } catch (const lxt::ToolError& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 2;
  }
}
