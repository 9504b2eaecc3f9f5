// The `lettrix` program's command line from any words (the input split at zero bytes). The parser must
// answer with a job whose values lie in the ranges the help promises, or with a usage error; nothing
// else may escape.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "tools/lettrix_cli/options.h"
#include "tools/lettrix_cli/tool_error.h"

namespace {

bool InRange(double v, double low, double high) {
  return v >= low && v <= high;
}

void ExpectLayerInRange(const lxt::LayerSettings& layer) {
  if (!InRange(layer.blur, 0, 254)) std::abort();
  if (!InRange(layer.radialFrom, 0, 1) || !InRange(layer.radialTo, 0, 1)) std::abort();
  if (!InRange(layer.angleDegrees, -180, 180)) std::abort();
  if (layer.fill == lxt::FillKind::kStops && (layer.stops.empty() || layer.stops.size() > 255)) std::abort();
  for (const lxt::ColourStop& stop : layer.stops) {
    if (stop.weight > 1000000) std::abort();
  }
  if (layer.fill == lxt::FillKind::kTexture && layer.texture.empty()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<std::string> args(1);
  for (size_t i = 0; i < size; ++i) {
    if (data[i] == 0) {
      args.emplace_back();
    } else {
      args.back() += static_cast<char>(data[i]);
    }
  }
  const lxt::ProgramInfo program{"lettrix", "fuzzing", true, true, true, "DejaVuSans.ttf"};
  try {
    const lxt::CommandLine line = lxt::ParseCommandLine(args, program);
    if (line.action != lxt::Action::kRender) return 0;
    const lxt::Job& job = line.job;
    ExpectLayerInRange(job.face);
    ExpectLayerInRange(job.outline);
    if (!InRange(job.outlineWidth, 0, 500) || !InRange(job.shadowBlur, 0, 254)) std::abort();
    if (!InRange(job.bevelElevation, 3, 60) || !InRange(job.bevelPasses, 1, 60)) std::abort();
    if (!InRange(job.pixelSize, 4, 1000) || !InRange(job.padding, 0, 4096)) std::abort();
    if (job.fixedCanvas && (!InRange(job.canvasWidth, 1, 16384) || !InRange(job.canvasHeight, 1, 16384))) {
      std::abort();
    }
    if (!InRange(job.translateX, -16384, 16384) || !InRange(job.translateY, -16384, 16384)) std::abort();
    if (!InRange(job.shadowX, -2000, 2000) || !InRange(job.shadowY, -2000, 2000)) std::abort();
    if (!InRange(job.shadowZoomX, 0.1, 10) || !InRange(job.shadowZoomY, 0.1, 10)) std::abort();
    if (!InRange(job.embossAngleDegrees, -180, 180) || !InRange(job.bevelAngleDegrees, -180, 180))
      std::abort();
    if (job.output.empty() && job.dumpOutline.empty()) std::abort();
    if (job.outlineBlock.empty() && job.text.empty()) std::abort();
  } catch (const lxt::ToolError& e) {
    if (e.exitCode() != lxt::kExitBadUsage) std::abort();
  }
  return 0;
}
