// Loads and frees the file that is named: the whole work of a process.
#include <rapidjson/document.h>

#include <string>

#include "support.h"

int main(int count, char** arguments) {
  const std::string file = count == 2 ? arguments[1] : "";
  bench::FileText text;
  if (!text.Read(file)) return 1;
  rapidjson::Document document;
  document.Parse(text.text.get(), text.size);
  return document.HasParseError() ? 1 : 0;
}
