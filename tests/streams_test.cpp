// The two readers against each other: on files that both can read, the stream of tokens is the
// traversal of the tree.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "host.h"
#include "streams_model.h"

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

TEST(Streams, TokensAreTheTraversalOfTheTree) {
  Writer writer;
  for (int round = 0; round < 400; ++round) {
    const std::string text = writer.File();
    const std::string path = host::WriteFile("stream.zon", text);
    const host::File file(zonLoadFile(path.c_str(), 0));
    ASSERT_EQ(host::SyntaxError(file), "") << text;
    const auto* root = dynamic_cast<CzonNode*>(static_cast<CzonBase*>(zonGetRoot(file)));
    ASSERT_EQ(model::StreamOf(path), model::TraversalOf(root)) << text;
  }
}

}  // namespace
