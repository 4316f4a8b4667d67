// A file as JSON, with all that the tree knows of it.
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

using Json = nlohmann::ordered_json;

bool IsUtf8(const std::string& text) {
  try {
    Json(text).dump();
    return true;
  } catch (const Json::type_error&) {
    return false;
  }
}

// Bytes that are no UTF-8 are told as the characters of Latin-1, under a name that says so.
void SetText(Json& node, const char* key, const std::string& text) {
  if (IsUtf8(text)) {
    node[key] = text;
    return;
  }
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
  node[std::string(key) + "-latin1"] = wide;
}

const CzonNode& NodeOf(void* node) {
  return *static_cast<CzonNode*>(static_cast<CzonBase*>(node));
}

void SetRemark(Json& json, void* node) {
  const std::string& remark = NodeOf(node).GetRemark();
  if (!remark.empty()) SetText(json, "remark", remark);
}

Json ItemsOf(void* list) {
  Json items = Json::array();
  for (zonClobReset(list); zonIsClobEnd(list) == 0;) {
    Json item;
    if (zonIsClobBool(list) != 0) {
      item = {{"kind", "boolean"}, {"value", zonGetClobBool(list) != 0}};
    } else if (zonIsClobInt(list) != 0) {
      item = {{"kind", "integer"}, {"value", zonGetClobInt(list)}};
    } else if (zonIsClobFloat(list) != 0) {
      item = {{"kind", "float"}, {"value", zonGetClobFloat(list)}};
    } else if (zonIsClobDouble(list) != 0) {
      item = {{"kind", "double"}, {"value", zonGetClobDouble(list)}};
    } else {
      const bool isName = zonIsClobFilename(list) != 0;
      item = {{"kind", isName ? "filename" : "string"}};
      SetText(item, "value", isName ? zonGetClobFilenameString(list) : zonGetClobString(list));
    }
    items.push_back(std::move(item));
  }
  return items;
}

// The text as well where the value alone would not tell it: JSON knows no infinity, and a program
// may care how a real was written.
void SetReal(Json& json, void* value) {
  const double number = zonGetDouble(value);
  if (std::isfinite(number)) json["value"] = number;
  json["text"] = WrittenForm(value);
}

Json ValueOf(void* value) {
  const std::string kind = KindOf(value);
  Json json = {{"kind", kind}};
  if (kind == "integer") {
    json["value"] = zonGetInt(value);
  } else if (kind == "real") {
    SetReal(json, value);
  } else if (kind == "boolean") {
    json["value"] = zonGetBool(value) != 0;
  } else if (kind == "list") {
    SetText(json, "text", WrittenForm(value));
    if (zonGetClobNoItems(value) >= 0) json["items"] = ItemsOf(value);
  } else if (kind != "undefined" && kind != "unknown" && kind != "default") {
    SetText(json, "value", PlainForm(value));
  }
  SetRemark(json, value);
  return json;
}

Json NodeToJson(void* node);

// What stands below a node, in the order of the file.
Json ChildrenOf(void* node) {
  Json children = Json::array();
  for (unsigned int n = 1; void* child = zonNodeByNum(node, n); ++n) {
    children.push_back(zonIsParam(child) != 0 ? ValueOf(child) : NodeToJson(child));
  }
  return children;
}

const char* KindOfOwner(void* node) {
  switch (zonGetSyntaxClass(node)) {
    case kZonSection:
      return "section";
    case kZonKeyword:
      return "keyword";
    default:
      return "definition";  // of default values
  }
}

Json NodeToJson(void* node) {
  Json json = {{"kind", KindOfOwner(node)}, {"name", zonGetName(node)}};
  const unsigned int flags = static_cast<const CzonNamedNode&>(NodeOf(node)).GetFlags();
  if ((flags & CzonNamedNode::kMulti) != 0) json["multi"] = true;
  SetRemark(json, node);
  json[zonIsSection(node) != 0 ? "children" : "values"] = ChildrenOf(node);
  return json;
}

}  // namespace

Status DumpJson(const std::string& file) {
  const Source source(file);
  if (source.Problem() != kFine) return source.Problem();
  Json json;
  SetText(json, "file", source.From().Name());
  json["sections"] = ChildrenOf(source.Root());
  std::cout << json.dump(2) << '\n';
  return kFine;
}

}  // namespace tool
