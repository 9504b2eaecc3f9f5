// The system-independent half of the text-to-outline library: contour points to GGO_NATIVE records,
// UTF-8 decoding, fixed-point conversion, and the facts about a font file that GDI needs to select it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lx::text {
struct TextLine;
}

namespace lx::text::detail {

// Writes a message for the caller when it asked for one.
void Fail(std::string* error, const std::string& message);

// The checks both font engines make before they open a font: a pixel size of 1 to 2048 and valid UTF-8.
// Returns the code points, or false with a message.
bool ReadTextLine(const TextLine& line, std::vector<uint32_t>* codePoints, std::string* error);

constexpr uint32_t kPolygonType = 24;  // TT_POLYGON_TYPE
constexpr uint16_t kPrimLine = 1;      // TT_PRIM_LINE
constexpr uint16_t kPrimQSpline = 2;   // TT_PRIM_QSPLINE

enum class PointKind { kOn, kConic, kCubic };

// One outline point in 16.16 fixed pixels, y growing downwards.
struct ContourPoint {
  int32_t x, y;
  PointKind kind;
};

// Appends one closed TrueType contour (on-curve and conic points in order, the contour closing back to
// its first point) as a TTPOLYGONHEADER and its records. Runs of on-curve points become one line record;
// conic points up to the next on-curve point become one quadratic spline record. A contour of fewer than
// two points is left out. Returns false, appending nothing, for a cubic point.
bool AppendContour(const std::vector<ContourPoint>& points, std::vector<uint8_t>* block);

// A pixel coordinate in 16.16 fixed point, rounded to the nearest unit; false outside the FIXED range.
bool ToFixed(double pixels, int32_t* fixed);

// Code points of a UTF-8 string; false for malformed, overlong or surrogate sequences.
bool DecodeUtf8(const std::string& text, std::vector<uint32_t>* codePoints);

// What GDI needs to select the face of a font file: the Windows family name (name ID 1), the weight
// class and whether it is italic (OS/2 table).
struct FontFileInfo {
  std::u16string family;
  int weight = 400;
  bool italic = false;
};

// Reads the first face of a TrueType file held in memory; false when the tables are missing or malformed.
bool ReadFontFileInfo(const std::vector<uint8_t>& file, FontFileInfo* info);

// The whole file, or false.
bool ReadWholeFile(const std::string& path, std::vector<uint8_t>* bytes);

}  // namespace lx::text::detail
