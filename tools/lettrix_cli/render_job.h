// Turns a job into pixels through the library's public interface: sets every layer setting on a render
// process, places the outline block on the canvas and renders it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tools/lettrix_cli/image.h"
#include "tools/lettrix_cli/job.h"

namespace lxt {

// Reads a texture file (TGA, and PNG where the program can); throws JobError.
using ImageFileReader = std::function<Image(const std::string& path)>;

// The largest canvas side the programs make, in pixels.
constexpr int32_t kMaxCanvasSide = 16384;

// Lays out the job's text in the font file and returns its outline block; throws JobError when the
// font cannot be read or the text cannot be laid out, or has nothing to draw.
std::vector<uint8_t> BuildTextBlock(const Job& job, const std::string& fontPath);

// Checks a block read from a file; throws JobError naming `fileName` when it is malformed or empty.
void CheckOutlineBlock(const std::vector<uint8_t>& block, const std::string& fileName);

// Renders the block with the job's settings. With a fitted canvas the image is just large enough for
// everything drawn plus the padding; with a fixed one the drawing is centred. Throws JobError.
Image RenderJob(const Job& job, const std::vector<uint8_t>& block, const ImageFileReader& readImage);

}  // namespace lxt
