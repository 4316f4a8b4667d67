// Generated content, the same for every library that is measured: one model in memory, printed in
// the format of each library. Numbers, names and lengths are random, with a fixed seed.
#ifndef ZON_BENCH_CONTENT_H
#define ZON_BENCH_CONTENT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

enum class Kind { kInteger, kReal, kBoolean, kString, kFileName, kDateTime };

struct Value {
  Kind kind = Kind::kInteger;
  std::string text;   // as written in a file, without quotes
  double number = 0;  // of integers and reals; 1 for true
};

struct Keyword {
  std::string name;
  std::vector<Value> values;
};

// Names are unique within a section, also without regard to case, and keywords precede inner
// sections: some formats require it.
struct Section {
  std::string name;
  std::vector<Keyword> keywords;
  std::vector<Section> sections;
};

// A checksum of the values that were read. Equal content gives equal totals, in any order.
class Totals {
 public:
  void Number(double number);
  void Flag(bool flag);
  void Text(std::string_view text);

  std::size_t Values() const { return values_; }
  // Equal, except that a library may lose some digits of numbers.
  bool Near(const Totals& other) const;

 private:
  std::size_t values_ = 0;
  std::size_t flags_ = 0;
  std::size_t letters_ = 0;
  double sum_ = 0;
  double magnitude_ = 0;
};

// kZonTokens has strings in place of date-times, which the token reader does not accept.
enum class Format { kZon, kZonTokens, kJson, kXml, kLua, kLibconfig, kToml, kYaml };

// A number, with the names by which it is found.
struct Path {
  std::string section;
  std::string keyword;
  double number = 0;
};

// A keyword, by the names of its sections from the outermost one on.
struct Place {
  std::size_t file = 0;  // its number
  std::vector<std::string> sections;
  std::string keyword;
  Value first;
};

// One or more files, which a row processes in turn.
struct Source {
  std::vector<std::string> files;
  std::size_t bytes = 0;
  Totals totals;
  std::vector<Path> paths;    // in the first file, shuffled
  std::vector<Place> places;  // every keyword of every file, shuffled
};

// Sizes: "100KB", "1MB", "10MB", "50MB" of parameter text; "small", a hundred files of 1 to 50 KB;
// "settings", the models in the JSON file that the environment variable ZON_PEERS_TREE names, each
// in a file; "settings1MB" and "settings10MB", one file of these models, each in a section, again
// and again.
bool HasSize(const std::string& size);
std::vector<Section> Models(const std::string& size);
const Source& SourceOf(Format format, const std::string& size);

// The path of a file in a temporary folder, which is removed when the process ends.
std::string TemporaryFile(const std::string& name);
bool WriteText(const std::string& path, const std::string& text);

}  // namespace bench

#endif
