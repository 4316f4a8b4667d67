#include <unistd.h>

#include <iostream>
#include <optional>

#include <zon.h>

#include "tool/commands.h"
#include "tool/source.h"

namespace tool {
namespace {

const char* KindOfToken(int token) {
  switch (token) {
    case 100:
      return "section";
    case 101:
      return "EndSect";
    case 200:
      return "keyword";
    case 1000:
      return "undefined";
    case 1010:
      return "true";
    case 1011:
      return "false";
    case 1020:
      return "integer";
    case 1021:
      return "real";
    case 1030:
      return "string";
    default:
      return "filename";
  }
}

// Prints the text of a token on one line: line ends and backslashes are escaped.
void PrintText(const char* text) {
  for (; *text != '\0'; ++text) {
    switch (*text) {
      case '\\':
        std::cout << "\\\\";
        break;
      case '\n':
        std::cout << "\\n";
        break;
      case '\r':
        std::cout << "\\r";
        break;
      default:
        std::cout << *text;
        break;
    }
  }
}

Status PrintTokens(void* reader, const Input& input) {
  Status status = kFine;
  while (const int token = zontNextToken(reader)) {
    if (token > 0) {
      const char* text = zontGetTokenString(reader);
      std::cout << KindOfToken(token) << (*text != '\0' ? " " : "");
      PrintText(text);
      std::cout << '\n';
      continue;
    }
    unsigned int line = 0;
    unsigned int position = 0;
    const char* text = zontGetError(reader, &line, &position);
    std::cout.flush();  // the message follows the tokens before it, if both go to one place
    input.ReportSyntaxError(line, position, text);
    status = kFindings;
  }
  return status;
}

}  // namespace

Status Tokens(const std::string& file) {
  const Input input(file);
  if (input.Path().empty()) return kTrouble;
  void* reader = nullptr;
  const int code = zontLoadFile(input.Path().c_str(), &reader);
  if (code != 0) {
    input.ReportOpenError(code);
    return kTrouble;
  }
  std::optional<Progress> progress;
  if (isatty(STDOUT_FILENO) == 0) progress.emplace(input.Name());
  const Status status = PrintTokens(reader, input);
  zontDispose(&reader);
  return status;
}

}  // namespace tool
