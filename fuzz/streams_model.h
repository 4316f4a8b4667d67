// A file as a stream of tokens, one per line: from the token reader, and from a tree.
#ifndef ZON_FUZZ_STREAMS_MODEL_H
#define ZON_FUZZ_STREAMS_MODEL_H

#include <string>

#include <zon.h>
#include <zonclasses.h>

namespace model {

inline std::string StreamOf(const std::string& path) {
  void* reader = nullptr;
  if (zontLoadFile(path.c_str(), &reader) != 0) return "no file";
  std::string line;
  int token;
  while ((token = zontNextToken(reader)) > 0) {
    line += std::to_string(token) + ":" + zontGetTokenString(reader) + "\n";
  }
  if (token < 0) line += zontGetError(reader, nullptr, nullptr);
  zontDispose(&reader);
  return line;
}

inline std::string TokenOf(const CzonNode* value) {
  const std::string& text = static_cast<const CzonParam*>(value)->GetText();
  switch (value->GetSyntaxClass()) {
    case kZonInt:
      return "1020:" + text;
    case kZonReal:
      return "1021:" + text;
    case kZonBool:
      return value->GetBool() ? "1010:" : "1011:";
    case kZonString:
      return "1030:" + text;
    case kZonFilename:
      return "1200:" + text;
    default:
      return value->IsClob() ? "1030:<CLOB:" + text + ">" : "1000:";
  }
}

inline std::string TraversalOf(const CzonNode* node) {
  std::string line;
  if (node->IsParam()) return TokenOf(node) + "\n";
  if (node->GetOwner() != nullptr) {
    line = (node->IsKeyword() ? "200:" : "100:") + node->GetName() + "\n";
  }
  for (unsigned n = 1; n <= node->GetNoNodes(); ++n) line += TraversalOf(node->NodeByNum(n));
  if (node->GetSyntaxClass() == kZonSection) line += "101:\n";
  return line;
}

}  // namespace model

#endif
