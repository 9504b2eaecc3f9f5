// Parsing of option values. Every parser names the option in its message, so the user sees which of
// several values was wrong; all of them throw Error (kSetting).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "compose/settings.h"

namespace lx::compose {

// A whole number in [min, max].
int64_t ParseInteger(const std::string& option, const std::string& text, int64_t min, int64_t max);
// A decimal number in [min, max].
double ParseNumber(const std::string& option, const std::string& text, double min, double max);
// "X,Y", each in [min, max].
void ParseIntegerPair(const std::string& option, const std::string& text, int64_t min, int64_t max,
                      int32_t* x, int32_t* y);
// "X" or "X,Y" (Y defaults to X), each in [min, max].
void ParseNumberPair(const std::string& option, const std::string& text, double min, double max, double* x,
                     double* y);
// "WxH", each in [min, max].
void ParseSize(const std::string& option, const std::string& text, int32_t min, int32_t max, int32_t* width,
               int32_t* height);
// "L,T,R,B" with right > left and bottom > top.
void ParseRectangle(const std::string& option, const std::string& text, int32_t out[4]);
// #RGB, #RRGGBB, #RRGGBBAA, a colour name, or "transparent".
Rgba ParseColour(const std::string& option, const std::string& text);
// COLOUR[:WEIGHT],COLOUR[:WEIGHT],... with 1 to 255 stops; weights 0..1000000, default 1.
std::vector<ColourStop> ParseStops(const std::string& option, const std::string& text);
// "on"/"off" and their synonyms.
bool ParseSwitch(const std::string& option, const std::string& text);

// Splits at every `separator`, keeping empty pieces.
std::vector<std::string> Split(const std::string& text, char separator);

}  // namespace lx::compose
