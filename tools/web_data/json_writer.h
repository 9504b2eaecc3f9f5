// A small JSON writer: values are appended in order and the commas between them are placed by the writer.
#pragma once

#include <string>

namespace lxt::web {

class Json {
 public:
  Json& Open(char bracket);   // '{' or '['
  Json& Close(char bracket);  // '}' or ']'
  Json& Key(const std::string& key);
  Json& String(const std::string& value);
  Json& Number(double value);
  Json& Bool(bool value);
  const std::string& Text() const { return text_; }

 private:
  void BeforeValue();
  void Quoted(const std::string& s);

  std::string text_;
  bool needComma_ = false;
};

}  // namespace lxt::web
