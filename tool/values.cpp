#include "tool/values.h"

#include <sstream>

#include <zon.h>
#include <zonclasses.h>

#include "tool/source.h"

namespace tool {

int CheckMemory(int status) {
  if (status == ZONX_NO_MEMORY) throw std::bad_alloc();
  return status;
}

const char* KindOf(void* value) {
  if (zonIsClob(value) != 0) return "list";
  switch (zonGetSyntaxClass(value)) {
    case kZonInt:
      return "integer";
    case kZonReal:
      return "real";
    case kZonBool:
      return "boolean";
    case kZonString:
      return "string";
    case kZonFilename:
      return zonIsFilename(value) != 0 ? "filename" : "datetime";
    case kZonDefaultPar:
      return "default";
    case kZonSubstit:
      return "substitution";
    case kZonUnknown:
      return "unknown";
    default:
      return "undefined";
  }
}

const char* KindName(int kind) {
  switch (kind) {
    case ZONX_INTEGER:
      return "integer";
    case ZONX_REAL:
      return "real";
    case ZONX_BOOLEAN:
      return "boolean";
    case ZONX_STRING:
      return "string";
    case ZONX_FILENAME:
      return "file name";
    case ZONX_DATETIME:
      return "date-time";
    case ZONX_SUBSTITUTION:
      return "substitution";
    case ZONX_CLOB:
      return "packed list";
    case ZONX_UNKNOWN:
      return "remark alone";
    default:
      return "empty place";
  }
}

std::string KindWithArticle(int kind) {
  const char* article = kind == ZONX_INTEGER || kind == ZONX_EMPTY ? "an " : "a ";
  return std::string(article) + KindName(kind);
}

std::string WrittenForm(void* value) {
  std::ostringstream text;
  static_cast<CzonNode*>(static_cast<CzonBase*>(value))->Write(text);
  return text.str();
}

std::string PlainForm(void* value) {
  if (zonIsClob(value) == 0 && zonIsString(value) != 0) return zonGetString(value);
  if (zonIsFilename(value) != 0) return zonGetFilenameString(value);
  const std::string text = WrittenForm(value);
  return text.size() > 1 && text.front() == '#' ? text.substr(1, text.size() - 2) : text;
}

std::string LoadedForm(void* value) {
  if (zonIsFilename(value) != 0) return std::string("|") + zonGetFilenameString(value) + "|";
  return (zonGetSyntaxClass(value) == kZonSubstit ? "%" : "") + WrittenForm(value);
}

std::string TextForm(void* value) {
  const char* text = "";
  return CheckMemory(zonxGetText(value, "", &text)) == ZONX_OK ? text : "";
}

std::string LoadedValues(void* keyword) {
  std::string text;
  for (unsigned int n = 1; void* value = zonNodeByNum(keyword, n); ++n) {
    if (n > 1) text += ", ";
    text += LoadedForm(value);
  }
  return text;
}

bool IsWithinInt(void* value) {
  return zonGetDouble(value) == zonGetInt(value);
}

bool HasMultiFlag(void* node) {
  const auto* named =
      static_cast<CzonNamedNode*>(static_cast<CzonNode*>(static_cast<CzonBase*>(node)));
  return (named->GetFlags() & CzonNamedNode::kMulti) != 0;
}

zonxPlace PlaceOf(void* node) {
  zonxPlace place{};
  CheckMemory(zonxWhere(node, &place));
  return place;
}

void* OwnerOf(void* node) {
  return static_cast<CzonNode*>(static_cast<CzonBase*>(node))->GetOwner();
}

std::string NameOf(void* node) {
  const std::string name = *zonGetName(node) != '\0' ? zonGetName(node) : "()";
  return zonGetNoInstances(node) > 1 ? name + ":" + std::to_string(zonGetInstanceNo(node)) : name;
}

}  // namespace tool
