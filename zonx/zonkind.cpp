#include "zonx/zonkind.h"

#include "tree/zonparam.h"

namespace zon {

int KindOf(const CzonNode& node) {
  const int syntaxClass = node.GetSyntaxClass();
  switch (syntaxClass) {
    case kZonTargetList:
    case kZonSection:
    case kZonKeyword:
    case kZonDefaultDef:
    case kZonInt:
    case kZonReal:
    case kZonBool:
    case kZonString:
    case kZonDefaultPar:
    case kZonSubstit:
    case kZonUnknown:
    case kZonUndefinedPar:
      return syntaxClass;
    case kZonFilename:
      return dynamic_cast<const CzonDateTime*>(&node) != nullptr ? ZONX_DATETIME : ZONX_FILENAME;
    case kZonParam:
      if (node.IsClob()) return ZONX_CLOB;
      return node.IsNumeric() ? ZONX_REAL : 0;
    default:
      return 0;
  }
}

const char* KindText(int kind) {
  switch (kind) {
    case ZONX_FILE:
      return "a file";
    case ZONX_SECTION:
      return "a section";
    case ZONX_KEYWORD:
      return "a keyword";
    case ZONX_DEFINITION:
      return "a default definition";
    case ZONX_INTEGER:
      return "an integer";
    case ZONX_REAL:
      return "a real";
    case ZONX_BOOLEAN:
      return "a truth value";
    case ZONX_STRING:
      return "a string";
    case ZONX_FILENAME:
      return "a file name";
    case ZONX_PLACEHOLDER:
      return "a placeholder";
    case ZONX_SUBSTITUTION:
      return "a substitution";
    case ZONX_DATETIME:
      return "a date-time";
    case ZONX_UNKNOWN:
      return "a remark alone";
    case ZONX_EMPTY:
      return "an empty place";
    case ZONX_CLOB:
      return "a CLOB";
    default:
      return "a node of the host";
  }
}

}  // namespace zon
