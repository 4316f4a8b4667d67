// The two readers against each other: on files that both can read, the stream of tokens is the
// traversal of the tree.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "host.h"

namespace {

// A random file that both readers can read.
class Writer {
 public:
  std::string File() {
    text_.clear();
    for (int sections = Number(0, 4); sections > 0; --sections) Section(0);
    return text_;
  }

 private:
  int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  const char* OneOf(std::initializer_list<const char*> texts) {
    return texts.begin()[Number(0, static_cast<int>(texts.size()) - 1)];
  }
  void Space() {
    text_ += OneOf({" ", "\n", "\t ", " // line\n", " ; 'x |\n", "/* a ' { */", "\r\n", "/**/ "});
  }
  // No word that begins like one of those that one reader knows and the other reads on behind.
  const char* Name() {
    return OneOf({"a", "Grid", "x_1", "EndSec", "endless", "truth", "T9", "defaults"});
  }

  void Section(int depth) {
    Space();
    text_ += std::string("[") + Name() + "]";
    for (int entries = Number(0, 4); entries > 0; --entries) {
      depth < 3 && Number(0, 3) == 0 ? Section(depth + 1) : Keyword();
    }
    Space();
    text_ += "EndSect ";
  }

  void Keyword() {
    Space();
    text_ += std::string(Name()) + OneOf({"=", " =", "\n= "});
    for (int values = Number(1, 5); values > 0; --values) {
      Space();
      text_ +=
          OneOf({"1", "-17", "+3", "0.5", ".5", "-1.", "1e5", "2.5E-3", "''", "'it''s'",
                 "'two\nlines ; // /*'", "|a\\b.dat|", "||", "true", "false", "", "12345678901"});
      Space();
      if (values > 1) text_ += ",";
    }
  }

  std::mt19937 random_{20211208};
  std::string text_;
};

std::string StreamOf(const std::string& path) {
  void* reader = nullptr;
  EXPECT_EQ(zontLoadFile(path.c_str(), &reader), 0);
  std::string line;
  int token;
  while ((token = zontNextToken(reader)) > 0) {
    line += std::to_string(token) + ":" + zontGetTokenString(reader) + "\n";
  }
  if (token < 0) line += zontGetError(reader, nullptr, nullptr);
  zontDispose(&reader);
  return line;
}

std::string TokenOf(const CzonNode* value) {
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
      return "1000:";
  }
}

std::string TraversalOf(const CzonNode* node) {
  std::string line;
  if (node->IsParam()) return TokenOf(node) + "\n";
  if (node->GetOwner() != nullptr) {
    line = (node->IsKeyword() ? "200:" : "100:") + node->GetName() + "\n";
  }
  for (unsigned n = 1; n <= node->GetNoNodes(); ++n) line += TraversalOf(node->NodeByNum(n));
  if (node->GetSyntaxClass() == kZonSection) line += "101:\n";
  return line;
}

TEST(Streams, TokensAreTheTraversalOfTheTree) {
  Writer writer;
  for (int round = 0; round < 400; ++round) {
    const std::string text = writer.File();
    const std::string path = host::WriteFile("stream.zon", text);
    const host::File file(zonLoadFile(path.c_str(), 0));
    ASSERT_EQ(host::SyntaxError(file), "") << text;
    const auto* root = dynamic_cast<CzonNode*>(static_cast<CzonBase*>(zonGetRoot(file)));
    ASSERT_EQ(StreamOf(path), TraversalOf(root)) << text;
  }
}

}  // namespace
