// Texture files in, finished pictures out, with the lettrix program's own PNG and TGA code, so the
// package reads and writes exactly what the program does.
#pragma once

#include <string>

#include "compose/compose_error.h"
#include "compose/composition.h"

namespace lx::python {

// A file that could not be read or written; Python sees an OSError.
class UnreadableFile : public lx::compose::Error {
 public:
  explicit UnreadableFile(const std::string& message) : Error(lx::compose::ErrorKind::kJob, message) {}
};

// A PNG (by its signature) or TGA texture file; throws UnreadableFile naming the file.
lx::compose::RgbaImage ReadImageFile(const std::string& path);

// PNG, or TGA when the name ends in .tga, written under a temporary name and renamed into place; throws
// UnreadableFile and leaves nothing behind on failure.
void WriteImageFile(const lx::compose::RgbaImage& image, const std::string& path);

}  // namespace lx::python
