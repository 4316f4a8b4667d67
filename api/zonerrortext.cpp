// Tested by tests/handles_test.cpp.
#include "api/zonerrortext.h"

namespace zon {
namespace {

struct ErrorText {
  int code;
  const char* text;
};

// Compatibility: hosts compare these texts, so the blank before the comma of 1001 stays.
constexpr ErrorText kErrorTexts[] = {
    {1000, "Error starting. (ERR_START, 1000)"},
    {1001, "Error opening file. (ERR_FILE_OPEN , 1001)"},
    {1002, "Error initialising file. (ERR_FILE_INIT, 1002)"},
    {1003, "Error parsing. (ERR_PARSE, 1003)"},
    {1004, "Error initialising parsing. (ERR_PARSER_INIT, 1004)"},
    {1005, "Handle error (ERR_HANDLE, 1005)"},
    {1006, "Node error (ERR_NODE, 1006)"},
    {1007, "Invalid named node error"},
    {1008, "Invalid keyword error"},
    {1009, "Invalid section error"},
    {1010, "Invalid index error"},
    {1011, "Invalid target list error"},
    {1012, "Invalid parameter error"},
    {1013, "Not an independent node error"},
    {1014, "Invalid parameter type error"},
};

}  // namespace

const char* TextOfCode(int code) {
  for (const ErrorText& row : kErrorTexts) {
    if (row.code == code) return row.text;
  }
  return "unknown error code";
}

}  // namespace zon
