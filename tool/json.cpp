// The whole tree of a file as JSON. Written while the tree is traversed, so a large file needs no
// second tree. The document is described in docs/man/zon.1.
#include <cmath>
#include <iostream>

#include <zon.h>
#include <zonclasses.h>

#include "tool/commands.h"
#include "tool/jsonwriter.h"
#include "tool/source.h"
#include "tool/values.h"

namespace tool {
namespace {

const CzonNode& NodeOf(void* node) {
  return *static_cast<CzonNode*>(static_cast<CzonBase*>(node));
}

void PutRemark(JsonWriter& json, void* node) {
  const std::string& remark = NodeOf(node).GetRemark();
  if (!remark.empty()) json.PutText("remark", remark);
}

void PutPlace(JsonWriter& json, void* node) {
  const zonxPlace place = PlaceOf(node);
  json.Put("line", place.line);
  json.Put("column", place.column);
}

void PutItem(JsonWriter& json, void* list) {
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

void PutList(JsonWriter& json, void* list) {
  json.PutText("text", WrittenForm(list));
  if (zonGetClobNoItems(list) < 0) return;  // malformed
  json.Key("items");
  json.Open('[');
  for (zonClobReset(list); zonIsClobEnd(list) == 0;) PutItem(json, list);
  json.Close(']');
}

// Beyond 32 bits the integer view differs from the number in the file, so that is added, and its
// text: not every integer is a double.
void PutInteger(JsonWriter& json, void* value) {
  json.Put("value", zonGetInt(value));
  if (IsWithinInt(value)) return;
  json.Put("real", zonGetDouble(value));
  json.Put("text", TextForm(value));
}

// The text is always added: JSON has no infinity, and the spelling can matter to a program.
void PutReal(JsonWriter& json, void* value) {
  const double number = zonGetDouble(value);
  if (std::isfinite(number)) json.Put("value", number);
  json.Put("text", WrittenForm(value));
}

void PutValue(JsonWriter& json, void* value, bool withPlaces) {
  const std::string kind = KindOf(value);
  json.Open('{', true);
  json.Put("kind", kind);
  if (withPlaces) PutPlace(json, value);
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
void PutChildren(JsonWriter& json, const char* key, void* node, bool withPlaces) {
  json.Key(key);
  json.Open('[');
  for (unsigned int n = 1; void* child = zonNodeByNum(node, n); ++n) {
    if (zonIsParam(child) != 0) {
      PutValue(json, child, withPlaces);
      continue;
    }
    json.Open('{');
    json.Put("kind", KindOfOwner(child));
    json.Put("name", zonGetName(child));
    if (withPlaces) PutPlace(json, child);
    if (HasMultiFlag(child)) json.Put("multi", true);
    PutRemark(json, child);
    PutChildren(json, zonIsSection(child) != 0 ? "children" : "values", child, withPlaces);
    json.Close('}');
  }
  json.Close(']');
}

}  // namespace

Status DumpJson(const std::string& file, bool withPlaces) {
  const Source source(file);
  if (source.GetStatus() != kFine) return source.GetStatus();
  JsonWriter json;
  json.Open('{');
  json.PutText("file", source.GetInput().Name());
  PutChildren(json, "sections", source.Root(), withPlaces);
  json.Close('}');
  std::cout << '\n';
  return kFine;
}

}  // namespace tool
