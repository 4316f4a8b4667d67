// The command files.
#include <algorithm>
#include <iostream>

#include "tool/commands.h"
#include "tool/jsonwriter.h"
#include "tool/loadedfile.h"
#include "tool/references.h"

namespace tool {
namespace {

const char* StateText(Reference::State state) {
  switch (state) {
    case Reference::kNone:
      return "none";
    case Reference::kMissing:
      return "missing";
    case Reference::kFile:
      return "file";
    default:
      return "folder";
  }
}

void PrintLine(const Reference& reference, const std::string& file) {
  std::cout << Printable(file) << ':' << reference.place.line << ':' << reference.place.column
            << '\t' << reference.path << '\t' << StateText(reference.state) << '\t'
            << Printable(reference.resolved) << '\n';
}

void PutObject(JsonWriter& json, const Reference& reference, const std::string& file) {
  json.Open('{', true);
  json.PutText("file", file);
  json.Put("line", reference.place.line);
  json.Put("column", reference.place.column);
  json.PutText("path", reference.path);
  json.PutText("name", reference.name);
  json.PutText("resolved", reference.resolved);
  json.Put("state", StateText(reference.state));
  json.Close('}');
}

}  // namespace

Status Files(const FilesOptions& options) {
  if (!options.folder.empty()) return CopyWithReferences(options.files, options.folder);
  Status worst = kFine;
  JsonWriter json;
  if (options.json) json.Open('[');
  for (const std::string& name : options.files) {
    const LoadedFile file(name);
    if (!file.IsSound()) {
      worst = kTrouble;
      continue;
    }
    for (const Reference& reference : FindReferences(file.Root())) {
      // A program makes the folders of its results.
      const bool isMissing = reference.state == Reference::kMissing && !reference.isResult;
      if (options.missing && !isMissing) continue;
      if (options.missing) worst = std::max(worst, kFindings);
      if (options.json) {
        PutObject(json, reference, file.GetInput().Name());
      } else {
        PrintLine(reference, file.GetInput().Name());
      }
    }
    if (!std::cout) break;
  }
  if (options.json) json.Close(']');
  if (options.json) std::cout << '\n';
  return worst;
}

}  // namespace tool
