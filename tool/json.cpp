// The whole tree of a file as JSON. Written while the tree is traversed, so a large file needs no
// second tree. The document is described in docs/man/zon.1.
#include <cmath>
#include <iostream>

#include <zon.h>
#include <zonclasses.h>
#include <nlohmann/json.hpp>

#include "tool/commands.h"
#include "tool/source.h"
#include "tool/values.h"

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

// Prints objects, lists and scalars with commas, line ends and indentation. An object or list that is
// opened with `onOneLine` has no line ends inside.
class Writer {
 public:
  void Open(char bracket, bool onOneLine = false) {
    Separate();
    std::cout << bracket;
    ++depth_;
    isFirst_ = true;
    if (onOneLine && flat_ == 0) flat_ = depth_;
  }
  void Close(char bracket) {
    const bool wasFlat = flat_ != 0;
    if (flat_ == depth_) flat_ = 0;
    --depth_;
    if (!wasFlat && !isFirst_) Indent();
    std::cout << bracket;
    isFirst_ = false;
  }
  void Key(const char* key) {
    Separate();
    std::cout << '"' << key << "\": ";
    isAfterKey_ = true;
  }
  template <class T>
  void Put(const char* key, const T& value) {
    Key(key);
    Scalar(Json(value).dump());
  }
  // The key gets the suffix "-latin1" if the text is not UTF-8.
  void PutText(const char* key, const std::string& text) {
    try {
      const std::string quoted = Json(text).dump();
      Key(key);
      Scalar(quoted);
    } catch (const Json::type_error&) {
      Put((std::string(key) + "-latin1").c_str(), FromLatin1(text));
    }
  }

 private:
  void Scalar(const std::string& text) {
    std::cout << text;
    isAfterKey_ = isFirst_ = false;
  }
  void Separate() {
    if (isAfterKey_ || depth_ == 0) {
      isAfterKey_ = false;
      return;
    }
    if (!isFirst_) std::cout << (flat_ != 0 ? ", " : ",");
    if (flat_ == 0) Indent();
    isFirst_ = false;
  }
  void Indent() const { std::cout << '\n' << std::string(2 * depth_, ' '); }

  std::size_t depth_ = 0;
  std::size_t flat_ = 0;     // from this depth on there are no line ends; 0 if there are
  bool isFirst_ = true;      // no element of the innermost object or list is printed yet
  bool isAfterKey_ = false;  // set by Key: the next value needs no separator
};

const CzonNode& NodeOf(void* node) {
  return *static_cast<CzonNode*>(static_cast<CzonBase*>(node));
}

void PutRemark(Writer& json, void* node) {
  const std::string& remark = NodeOf(node).GetRemark();
  if (!remark.empty()) json.PutText("remark", remark);
}

void PutItem(Writer& json, void* list) {
  json.Open('{');
  if (zonIsClobBool(list) != 0) {
    json.Put("kind", "boolean");
    json.Put("value", zonGetClobBool(list) != 0);
  } else if (zonIsClobInt(list) != 0) {
    json.Put("kind", "integer");
    json.Put("value", zonGetClobInt(list));
  } else if (zonIsClobFloat(list) != 0) {
    json.Put("kind", "float");
    json.Put("value", zonGetClobFloat(list));
  } else if (zonIsClobDouble(list) != 0) {
    json.Put("kind", "double");
    json.Put("value", zonGetClobDouble(list));
  } else {
    const bool isName = zonIsClobFilename(list) != 0;
    json.Put("kind", isName ? "filename" : "string");
    json.PutText("value", isName ? zonGetClobFilenameString(list) : zonGetClobString(list));
  }
  json.Close('}');
}

void PutList(Writer& json, void* list) {
  json.PutText("text", WrittenForm(list));
  if (zonGetClobNoItems(list) < 0) return;  // malformed
  json.Key("items");
  json.Open('[');
  for (zonClobReset(list); zonIsClobEnd(list) == 0;) PutItem(json, list);
  json.Close(']');
}

// Beyond 32 bits the integer view differs from the number in the file, so that is added.
void PutInteger(Writer& json, void* value) {
  json.Put("value", zonGetInt(value));
  if (!IsWithinInt(value)) json.Put("real", zonGetDouble(value));
}

// The text is always added: JSON has no infinity, and the spelling can matter to a program.
void PutReal(Writer& json, void* value) {
  const double number = zonGetDouble(value);
  if (std::isfinite(number)) json.Put("value", number);
  json.Put("text", WrittenForm(value));
}

void PutValue(Writer& json, void* value) {
  const std::string kind = KindOf(value);
  json.Open('{', true);
  json.Put("kind", kind);
  if (kind == "integer") {
    PutInteger(json, value);
  } else if (kind == "real") {
    PutReal(json, value);
  } else if (kind == "boolean") {
    json.Put("value", zonGetBool(value) != 0);
  } else if (kind == "list") {
    PutList(json, value);
  } else if (kind != "undefined" && kind != "unknown" && kind != "default") {
    json.PutText("value", PlainForm(value));
  }
  PutRemark(json, value);
  json.Close('}');
}

const char* KindOfOwner(void* node) {
  switch (zonGetSyntaxClass(node)) {
    case kZonSection:
      return "section";
    case kZonKeyword:
      return "keyword";
    default:
      return "definition";
  }
}

// The children of a node in file order.
void PutChildren(Writer& json, const char* key, void* node) {
  json.Key(key);
  json.Open('[');
  for (unsigned int n = 1; void* child = zonNodeByNum(node, n); ++n) {
    if (zonIsParam(child) != 0) {
      PutValue(json, child);
      continue;
    }
    json.Open('{');
    json.Put("kind", KindOfOwner(child));
    json.Put("name", zonGetName(child));
    const unsigned int flags = static_cast<const CzonNamedNode&>(NodeOf(child)).GetFlags();
    if ((flags & CzonNamedNode::kMulti) != 0) json.Put("multi", true);
    PutRemark(json, child);
    PutChildren(json, zonIsSection(child) != 0 ? "children" : "values", child);
    json.Close('}');
  }
  json.Close(']');
}

}  // namespace

Status DumpJson(const std::string& file) {
  const Source source(file);
  if (source.GetStatus() != kFine) return source.GetStatus();
  Writer json;
  json.Open('{');
  json.PutText("file", source.GetInput().Name());
  PutChildren(json, "sections", source.Root());
  json.Close('}');
  std::cout << '\n';
  return kFine;
}

}  // namespace tool
