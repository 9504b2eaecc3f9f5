#include "compose/option_values.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "compose/compose_error.h"
#include "compose/option_table.h"

namespace lx::compose {
namespace {

struct NamedColour {
  const char* name;
  Rgba colour;
};

constexpr NamedColour kNamedColours[] = {
    {"black", {0, 0, 0, 255}},       {"white", {255, 255, 255, 255}}, {"red", {220, 30, 30, 255}},
    {"green", {40, 170, 60, 255}},   {"blue", {30, 80, 220, 255}},    {"yellow", {255, 220, 40, 255}},
    {"orange", {255, 140, 20, 255}}, {"gold", {212, 175, 55, 255}},   {"silver", {192, 192, 200, 255}},
    {"grey", {128, 128, 128, 255}},  {"gray", {128, 128, 128, 255}},  {"navy", {20, 30, 90, 255}},
    {"purple", {120, 40, 160, 255}}, {"pink", {255, 105, 180, 255}},  {"cyan", {0, 220, 230, 255}},
    {"magenta", {230, 0, 200, 255}}, {"brown", {120, 70, 30, 255}},   {"transparent", {0, 0, 0, 0}},
};

std::string Quote(const std::string& s) {
  return "'" + s + "'";
}

[[noreturn]] void Bad(const std::string& option, const std::string& text, const std::string& what) {
  throw SettingError("--" + option + ": " + Quote(text) + " is not " + what);
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::string Lower(std::string s) {
  for (char& c : s) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return s;
}

}  // namespace

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  size_t start = 0;
  for (;;) {
    size_t at = text.find(separator, start);
    parts.push_back(text.substr(start, at == std::string::npos ? std::string::npos : at - start));
    if (at == std::string::npos) return parts;
    start = at + 1;
  }
}

int64_t ParseInteger(const std::string& option, const std::string& text, int64_t min, int64_t max) {
  const std::string range = " (" + std::to_string(min) + ".." + std::to_string(max) + ")";
  if (text.empty()) Bad(option, text, "a whole number" + range);
  errno = 0;
  char* end = nullptr;
  long long v = std::strtoll(text.c_str(), &end, 10);
  if (*end != '\0' || errno == ERANGE || text[0] == ' ') Bad(option, text, "a whole number" + range);
  if (v < min || v > max) {
    throw SettingError("--" + option + ": " + text + " is out of range" + range);
  }
  return v;
}

double ParseNumber(const std::string& option, const std::string& text, double min, double max) {
  char buf[64];
  std::snprintf(buf, sizeof buf, " (%g..%g)", min, max);
  if (text.empty() || text[0] == ' ') Bad(option, text, std::string("a number") + buf);
  char* end = nullptr;
  double v = std::strtod(text.c_str(), &end);
  if (*end != '\0' || !std::isfinite(v)) Bad(option, text, std::string("a number") + buf);
  if (v < min || v > max) throw SettingError("--" + option + ": " + text + " is out of range" + buf);
  return v;
}

void ParseIntegerPair(const std::string& option, const std::string& text, int64_t min, int64_t max,
                      int32_t* x, int32_t* y) {
  std::vector<std::string> parts = Split(text, ',');
  if (parts.size() != 2) Bad(option, text, "a pair X,Y");
  *x = static_cast<int32_t>(ParseInteger(option, parts[0], min, max));
  *y = static_cast<int32_t>(ParseInteger(option, parts[1], min, max));
}

void ParseNumberPair(const std::string& option, const std::string& text, double min, double max, double* x,
                     double* y) {
  std::vector<std::string> parts = Split(text, ',');
  if (parts.size() > 2) Bad(option, text, "X or X,Y");
  *x = ParseNumber(option, parts[0], min, max);
  *y = parts.size() == 2 ? ParseNumber(option, parts[1], min, max) : *x;
}

void ParseSize(const std::string& option, const std::string& text, int32_t min, int32_t max, int32_t* width,
               int32_t* height) {
  std::vector<std::string> parts = Split(Lower(text), 'x');
  if (parts.size() != 2) Bad(option, text, "a size WxH");
  *width = static_cast<int32_t>(ParseInteger(option, parts[0], min, max));
  *height = static_cast<int32_t>(ParseInteger(option, parts[1], min, max));
}

void ParseRectangle(const std::string& option, const std::string& text, int32_t out[4]) {
  std::vector<std::string> parts = Split(text, ',');
  if (parts.size() != 4) Bad(option, text, "a rectangle LEFT,TOP,RIGHT,BOTTOM");
  for (int i = 0; i < 4; ++i) out[i] = static_cast<int32_t>(ParseInteger(option, parts[i], -32768, 32767));
  if (out[2] <= out[0] || out[3] <= out[1]) {
    throw SettingError("--" + option + ": " + Quote(text) +
                       " is an empty rectangle (RIGHT must exceed LEFT and " + "BOTTOM must exceed TOP)");
  }
}

Rgba ParseColour(const std::string& option, const std::string& text) {
  const std::string what = "a colour (#RGB, #RRGGBB, #RRGGBBAA or a name: " + ColourNames() + ")";
  if (!text.empty() && text[0] == '#') {
    std::vector<int> d;
    for (size_t i = 1; i < text.size(); ++i) {
      int v = HexDigit(text[i]);
      if (v < 0) Bad(option, text, what);
      d.push_back(v);
    }
    Rgba c;
    if (d.size() == 3) {
      c.r = static_cast<uint8_t>(d[0] * 17);
      c.g = static_cast<uint8_t>(d[1] * 17);
      c.b = static_cast<uint8_t>(d[2] * 17);
      return c;
    }
    if (d.size() == 6 || d.size() == 8) {
      c.r = static_cast<uint8_t>(d[0] * 16 + d[1]);
      c.g = static_cast<uint8_t>(d[2] * 16 + d[3]);
      c.b = static_cast<uint8_t>(d[4] * 16 + d[5]);
      if (d.size() == 8) c.a = static_cast<uint8_t>(d[6] * 16 + d[7]);
      return c;
    }
    Bad(option, text, what);
  }
  const std::string name = Lower(text);
  for (const NamedColour& n : kNamedColours) {
    if (name == n.name) return n.colour;
  }
  Bad(option, text, what);
}

std::string ColourNames() {
  std::string names;
  for (const NamedColour& n : kNamedColours) {
    if (!names.empty()) names += ", ";
    names += n.name;
  }
  return names;
}

std::vector<ColourStop> ParseStops(const std::string& option, const std::string& text) {
  std::vector<std::string> parts = Split(text, ',');
  if (parts.size() > 255) {
    throw SettingError("--" + option + ": " + std::to_string(parts.size()) + " colour stops; at most 255");
  }
  std::vector<ColourStop> stops;
  for (const std::string& part : parts) {
    ColourStop stop;
    size_t colon = part.find(':');
    stop.colour = ParseColour(option, part.substr(0, colon));
    if (colon != std::string::npos) {
      stop.weight = static_cast<uint32_t>(ParseInteger(option, part.substr(colon + 1), 0, 1000000));
    }
    stops.push_back(stop);
  }
  return stops;
}

bool ParseSwitch(const std::string& option, const std::string& text) {
  const std::string v = Lower(text);
  if (v == "on" || v == "yes" || v == "1" || v == "true") return true;
  if (v == "off" || v == "no" || v == "0" || v == "false") return false;
  Bad(option, text, "on or off");
}

}  // namespace lx::compose
