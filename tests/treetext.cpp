#include "treetext.h"

#include <map>

namespace host {

namespace {

const std::map<int, const char*> kKinds = {
    {kZonInt, "int "},        {kZonReal, "real "},         {kZonBool, "bool "},
    {kZonString, "string "},  {kZonDefaultPar, "default"}, {kZonSubstit, "subst "},
    {kZonUnknown, "unknown"}, {kZonUndefinedPar, "undef"}};

std::string KindOf(const CzonNode& value) {
  if (value.IsClob()) return "clob ";
  if (value.GetSyntaxClass() == kZonFilename) return value.IsFilename() ? "file " : "date ";
  const auto kind = kKinds.find(value.GetSyntaxClass());
  return kind != kKinds.end() ? kind->second : "other ";
}

}  // namespace

std::string Show(const CzonNode* node) {
  if (node == nullptr) return "null";
  const std::string remark = node->GetRemark().empty() ? "" : "{" + node->GetRemark() + "}";
  if (node->IsParam()) {
    return KindOf(*node) + static_cast<const CzonParam*>(node)->GetText() + remark;
  }
  std::string text = node->IsDefaultDef() ? "default " : "";
  text += node->GetName();
  const auto* named = static_cast<const CzonNamedNode*>(node);
  if ((named->GetFlags() & CzonNamedNode::kMulti) != 0) text += "()";
  if (node->GetInstanceNo() > 1) text += "<" + std::to_string(node->GetInstanceNo()) + ">";
  text += remark + (node->IsKeyword() ? "(" : "{");
  const char* separator = "";
  for (unsigned n = 1; n <= node->GetNoNodes(); ++n) {
    text += separator + Show(node->NodeByNum(n));
    separator = node->IsKeyword() ? ", " : " ";
  }
  return text + (node->IsKeyword() ? ")" : "}");
}

std::string Facts(void* node) {
  const std::pair<const char*, int (*)(void*)> kinds[] = {
      {" target", zonIsTarget},      {" section", zonIsSection},
      {" keyword", zonIsKeyword},    {" param", zonIsParam},
      {" numeric", zonIsNumeric},    {" int", zonIsInt},
      {" float", zonIsFloat},        {" double", zonIsDouble},
      {" bool", zonIsBool},          {" string", zonIsString},
      {" file", zonIsFilename},      {" undefined", zonIsUndefinedPar},
      {" default", zonIsDefaultPar}, {" inttype", zonNumericIsIntType}};
  std::ostringstream text;
  text << "class " << zonGetSyntaxClass(node) << ":";
  for (const auto& [name, is] : kinds) text << (is(node) != 0 ? name : "");
  Messages();
  text << "; " << zonGetInt(node) << ' ' << zonGetDouble(node) << ' ' << zonGetFloat(node) << ' '
       << zonGetBool(node) << " '" << zonGetString(node) << "'; refused ";
  text << Messages().size();
  return text.str();
}

std::string SyntaxError(void* file) {
  unsigned line = 0, position = 0;
  const std::string message = zonGetSyntaxErr(file, &line, &position, nullptr);
  if (message.empty()) return {};
  return std::to_string(line) + ":" + std::to_string(position) + " " + message;
}

std::string PlaceAfter(const std::string& text) {
  const auto line = 1 + std::count(text.begin(), text.end(), '\n');
  return std::to_string(line) + ":" + std::to_string(text.size() - text.rfind('\n') - 1);
}

}  // namespace host
