#include "tool/jsonwriter.h"

namespace tool {
namespace {

using Json = nlohmann::json;

// The text in UTF-8, its bytes read as Latin-1. For texts that are not valid UTF-8.
std::string FromLatin1(const std::string& text) {
  std::string wide;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      wide += c;
    } else {
      wide += static_cast<char>(0xC0 | (byte >> 6));
      wide += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return wide;
}

}  // namespace

void JsonWriter::Open(char bracket, bool onOneLine) {
  Separate();
  std::cout << bracket;
  ++depth_;
  isFirst_ = true;
  if (onOneLine && flat_ == 0) flat_ = depth_;
}

void JsonWriter::Close(char bracket) {
  const bool wasFlat = flat_ != 0;
  if (flat_ == depth_) flat_ = 0;
  --depth_;
  if (!wasFlat && !isFirst_) Indent();
  std::cout << bracket;
  isFirst_ = false;
}

void JsonWriter::Key(const char* key) {
  Separate();
  std::cout << '"' << key << "\": ";
  isAfterKey_ = true;
}

void JsonWriter::PutText(const char* key, const std::string& text) {
  try {
    const std::string quoted = Json(text).dump();
    Key(key);
    Scalar(quoted);
  } catch (const Json::type_error&) {
    Put((std::string(key) + "-latin1").c_str(), FromLatin1(text));
  }
}

void JsonWriter::PutRepaired(const char* key, const std::string& text) {
  Key(key);
  Scalar(Json(text).dump(-1, ' ', false, Json::error_handler_t::replace));
}

void JsonWriter::Scalar(const std::string& text) {
  std::cout << text;
  isAfterKey_ = isFirst_ = false;
}

void JsonWriter::Separate() {
  if (isAfterKey_ || depth_ == 0) {
    isAfterKey_ = false;
    return;
  }
  if (!isFirst_) std::cout << (flat_ != 0 ? ", " : ",");
  if (flat_ == 0) Indent();
  isFirst_ = false;
}

}  // namespace tool
