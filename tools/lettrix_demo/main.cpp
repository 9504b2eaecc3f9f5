// lettrix-demo: the lettrix program for Windows. Fonts come from GDI, pixels from lettrix.dll; it writes
// TGA files and reads TGA textures.
#include <windows.h>
#include <shellapi.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/program.h"
#include "tools/lettrix_cli/texture_file.h"
#include "tools/lettrix_cli/tool_error.h"
#include "tools/text_outline/text_outline.h"

namespace {

std::string Utf8(const wchar_t* wide) {
  const int n = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  if (n <= 0) return std::string();
  std::string out(static_cast<size_t>(n), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, &out[0], n, nullptr, nullptr);
  out.resize(static_cast<size_t>(n - 1));
  return out;
}

// The arguments as UTF-8 (main's argv is in the ANSI code page and would lose the text's letters).
std::vector<std::string> Arguments() {
  int count = 0;
  LPWSTR* wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> args;
  for (int i = 1; wide && i < count; ++i) args.push_back(Utf8(wide[i]));
  LocalFree(wide);
  return args;
}

bool Readable(const std::string& path) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (f) std::fclose(f);
  return f != nullptr;
}

// A Unix path, as the native program takes it, names the same file through Wine's drive Z:.
std::string WindowsPath(const std::string& path) {
  if (path.empty() || path[0] != '/' || Readable(path)) return path;
  std::string mapped = "Z:" + path;
  for (char& c : mapped) {
    if (c == '/') c = '\\';
  }
  return Readable(mapped) ? mapped : path;
}

// One line through GDI: glyph outlines with pen advances and kerning pairs, but no shaping, no
// bidirectional ordering, no line breaks and no fallback fonts.
std::vector<uint8_t> LayOutWithGdi(const lxt::Job& job) {
  const std::string fontPath =
      WindowsPath(job.fontFile.empty() ? std::string(lx::text::kDefaultFontPath) : job.fontFile);
  // A clear message for the commonest mistake, before the font engine gives a vaguer one.
  lxt::ReadWholeFile(fontPath, "font file");
  lx::text::TextLine line;
  line.fontPath = fontPath;
  line.text = job.text;
  line.pixelSize = job.pixelSize;
  line.baselineY = job.pixelSize;
  lx::text::OutlineBlock block;
  std::string error;
  if (!lx::text::BuildOutlineBlock(line, &block, &error)) {
    if (error.rfind("cannot open font", 0) == 0) {
      throw lxt::JobError("cannot use font file '" + fontPath +
                          "': it is not a font the font engine can read");
    }
    throw lxt::JobError("cannot lay out the text in '" + fontPath + "': " + error);
  }
  if (block.bytes.empty() || block.ink.empty()) {
    throw lxt::JobError("nothing to draw: the text has no visible letters");
  }
  return std::move(block.bytes);
}

}  // namespace

int main() {
  lxt::ProgramParts parts;
  parts.info.name = "lettrix-demo";
  parts.info.summary =
      "Draws TEXT with a Face, an Outline and a Shadow into FILE (TGA), using lettrix.dll. The text is one "
      "line\n"
      "drawn through GDI: kerned, but not shaped (no ligatures, joined Arabic or reordered scripts), left "
      "to\n"
      "right, without line breaks or fallback fonts; the lettrix program on Linux does all of that.";
  parts.info.hasFontconfig = false;
  parts.info.readsPng = false;
  parts.info.shapesText = false;
  parts.info.defaultFont = lx::text::kDefaultFontPath;
  parts.layOutText = LayOutWithGdi;
  parts.readImage = [](const std::string& path) {
    return lxt::ReadTextureFile(path, WindowsPath(path), nullptr, "lettrix-demo");
  };
  return lxt::RunProgram(Arguments(), parts);
}
