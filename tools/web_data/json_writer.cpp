#include "tools/web_data/json_writer.h"

#include <cstdio>

namespace lxt::web {

void Json::BeforeValue() {
  if (needComma_) text_ += ',';
  needComma_ = true;
}

void Json::Quoted(const std::string& s) {
  text_ += '"';
  for (unsigned char c : s) {
    if (c == '"' || c == '\\') {
      text_ += '\\';
      text_ += static_cast<char>(c);
    } else if (c < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", c);
      text_ += escape;
    } else {
      text_ += static_cast<char>(c);  // UTF-8 passes through
    }
  }
  text_ += '"';
}

Json& Json::Open(char bracket) {
  BeforeValue();
  text_ += bracket;
  needComma_ = false;
  return *this;
}

Json& Json::Close(char bracket) {
  text_ += bracket;
  needComma_ = true;
  return *this;
}

Json& Json::Key(const std::string& key) {
  BeforeValue();
  Quoted(key);
  text_ += ':';
  needComma_ = false;
  return *this;
}

Json& Json::String(const std::string& value) {
  BeforeValue();
  Quoted(value);
  return *this;
}

Json& Json::Number(double value) {
  BeforeValue();
  char s[32];
  std::snprintf(s, sizeof s, "%.17g", value);
  text_ += s;
  return *this;
}

Json& Json::Bool(bool value) {
  BeforeValue();
  text_ += value ? "true" : "false";
  return *this;
}

}  // namespace lxt::web
