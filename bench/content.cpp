#include "content.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <stdexcept>
#include <unordered_set>
#include <utility>

#ifdef ZON_BENCH_SETTINGS
#include <nlohmann/json.hpp>
#endif

namespace bench {

void Totals::Number(double number) {
  ++values_;
  sum_ += number;
  magnitude_ += std::abs(number);
}

void Totals::Flag(bool flag) {
  ++values_;
  flags_ += flag ? 1 : 0;
}

void Totals::Text(std::string_view text) {
  ++values_;
  letters_ += text.size() + (text.empty() ? 0 : static_cast<unsigned char>(text.front()));
}

bool Totals::Near(const Totals& other) const {
  return values_ == other.values_ && flags_ == other.flags_ && letters_ == other.letters_ &&
         std::abs(sum_ - other.sum_) <= 1e-9 * other.magnitude_;
}

namespace {

// Makes names unique in a section, and different from the reserved words of all formats.
class Names {
 public:
  std::string Unique(const std::string& name) {
    std::string unique = name;
    for (int n = 2; !taken_.insert(Lower(unique)).second; ++n) {
      unique = name + "_" + std::to_string(n);
    }
    return unique;
  }

 private:
  static std::string Lower(std::string name) {
    for (char& c : name) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return name;
  }

  std::unordered_set<std::string> taken_ = {
      "true",   "false", "endsect", "default",  "and",  "break", "do",    "else",
      "elseif", "end",   "for",     "function", "goto", "if",    "in",    "local",
      "nil",    "not",   "repeat",  "return",   "then", "until", "while", "or"};
};

Value MakeValue(Kind kind, const std::string& text) {
  Value value{kind, text, 0};
  if (kind == Kind::kBoolean) value.number = text == "true" ? 1 : 0;
  if (kind == Kind::kInteger || kind == Kind::kReal) {
    value.number = std::strtod(text.c_str(), nullptr);
  }
  return value;
}

// Prints a section in one format. In the patterns % is the name and @ the path: the names from the
// outermost section on, joined by dots.
class Printer {
 public:
  explicit Printer(Format format)
      : format_(format), style_(kStyles[static_cast<std::size_t>(format)]) {}

  std::string Print(const Section& root) {
    text_ = style_.open;
    PutContent(root, "", 0);
    return std::move(text_) + style_.close;
  }

 private:
  struct Style {
    const char* open;
    const char* close;
    const char* sectionOpen;
    const char* sectionClose;
    const char* keywordOpen;
    const char* keywordClose;
    const char* betweenItems;
    const char* betweenValues;
  };
  static constexpr Style kStyles[] = {
      {"", "", "[%]", "EndSect", "% = ", "", "", ", "},
      {"", "", "[%]", "EndSect", "% = ", "", "", ", "},
      {"{\n", "}\n", "\"%\": {", "}", "\"%\": [", "]", ",", ", "},
      {"<file>\n", "</file>\n", "<section name=\"%\">", "</section>", "<k name=\"%\">", "</k>", "",
       ""},
      {"return {\n", "}\n", "% = {", "}", "% = {", "}", ",", ", "},
      {"", "", "% = {", "};", "% = (", ");", "", ", "},
      {"", "", "[@]", "", "% = [", "]", "", ", "},
      {"", "", "%:", "", "%: [", "]", "", ", "},
  };

  void PutContent(const Section& section, const std::string& path, std::size_t depth) {
    std::size_t left = section.keywords.size() + section.sections.size();
    for (const Keyword& keyword : section.keywords) {
      Put(style_.keywordOpen, keyword.name, path, depth);
      for (const Value& value : keyword.values) {
        if (&value != keyword.values.data()) text_ += style_.betweenValues;
        Put(value);
      }
      text_ += style_.keywordClose;
      End(--left);
    }
    for (const Section& inner : section.sections) {
      const std::string innerPath = (path.empty() ? "" : path + ".") + inner.name;
      Put(style_.sectionOpen, inner.name, innerPath, depth);
      text_ += '\n';
      PutContent(inner, innerPath, depth + 1);
      if (*style_.sectionClose != 0) Put(style_.sectionClose, "", "", depth);
      End(--left);
    }
  }

  void End(std::size_t left) {
    if (left > 0) text_ += style_.betweenItems;
    text_ += '\n';
  }

  void Put(const char* pattern, const std::string& name, const std::string& path,
           std::size_t depth) {
    text_.append(3 * depth, ' ');
    for (; *pattern != 0; ++pattern) {
      if (*pattern == '%') {
        text_ += name;
      } else if (*pattern == '@') {
        text_ += path;
      } else {
        text_ += *pattern;
      }
    }
  }

  void Put(const Value& value) {
    const auto kind = static_cast<std::size_t>(value.kind);
    const bool isText = value.kind >= Kind::kString;
    if (format_ == Format::kXml) {
      const std::string tag(1, "irbsfd"[kind]);
      text_ += "<" + tag + ">" + Escaped(value.text) + "</" + tag + ">";
    } else if (!isText) {
      text_ += value.text;
    } else if (format_ == Format::kZonTokens && value.kind == Kind::kDateTime) {
      text_ += "'" + value.text + "'";
    } else if (format_ == Format::kZon || format_ == Format::kZonTokens) {
      const char mark = "   '|#"[kind];
      text_ += mark + Escaped(value.text) + mark;
    } else {
      text_ += '"' + Escaped(value.text) + '"';
    }
  }

  std::string Escaped(const std::string& text) const {
    std::string escaped;
    for (const char c : text) {
      if (format_ == Format::kXml) {
        escaped += c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '&' ? "&amp;" : std::string(1, c);
      } else if (format_ == Format::kZon || format_ == Format::kZonTokens) {
        escaped.append(c == '\'' ? 2 : 1, c);
      } else {
        if (c == '"' || c == '\\') escaped += '\\';
        escaped += c;
      }
    }
    return escaped;
  }

  Format format_;
  const Style& style_;
  std::string text_;
};

// Names of 3 to 24 letters, 1 to 12 values a keyword, three levels.
class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  // Top-level sections until their parameter text has `size` bytes.
  Section Make(std::size_t size) {
    Section root;
    Names names;
    for (std::size_t made = 0; made < size;) {
      Section alone;
      alone.sections.push_back(Target(names));
      made += Printer(Format::kZon).Print(alone).size();
      root.sections.push_back(std::move(alone.sections.front()));
    }
    return root;
  }

  int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }

 private:
  std::string Name() {
    std::string name;
    for (int length = Number(3, 24); length > 0; --length) {
      name += static_cast<char>(Number(0, 1) ? Number('a', 'z') : Number('A', 'Z'));
    }
    return name;
  }

  Value RandomValue() {
    const int kind = Number(1, 21);
    char text[40];
    if (kind <= 7) return MakeValue(Kind::kInteger, std::to_string(Number(-100000, 100000)));
    if (kind <= 15) {
      std::snprintf(text, sizeof text, "%.*f", Number(1, 8), Number(-100000000, 100000000) / 1e4);
      return MakeValue(Kind::kReal, text);
    }
    if (kind <= 17) return MakeValue(Kind::kBoolean, Number(0, 1) ? "true" : "false");
    if (kind <= 19) return MakeValue(Kind::kString, Name());
    if (kind <= 20) return MakeValue(Kind::kFileName, Name() + "/" + Name());
    std::snprintf(text, sizeof text, "20%02d-%02d-%02d %02d:%02d:00", Number(0, 99), Number(1, 12),
                  Number(1, 28), Number(0, 23), Number(0, 59));
    return MakeValue(Kind::kDateTime, text);
  }

  Keyword RandomKeyword(Names& names) {
    Keyword keyword{names.Unique(Name()), {}};
    for (int values = Number(1, 12); values > 0; --values) keyword.values.push_back(RandomValue());
    return keyword;
  }

  // A top-level section. Its own keyword, a real, is the target of look-ups.
  Section Target(Names& outer) {
    Section target{outer.Unique(Name()), {}, {}};
    Names names;
    target.keywords.push_back(
        {names.Unique(Name()), {MakeValue(Kind::kReal, std::to_string(Number(1, 999) / 8.0))}});
    for (int sections = Number(1, 6); sections > 0; --sections) {
      Section section{names.Unique(Name()), {}, {}};
      Names inner;
      for (int keywords = Number(1, 8); keywords > 0; --keywords) {
        section.keywords.push_back(RandomKeyword(inner));
      }
      target.sections.push_back(std::move(section));
    }
    return target;
  }

  std::mt19937 random_;
};

#ifdef ZON_BENCH_SETTINGS
// Reads {"files": [{"tree": [["s", name, [...]], ["k", name, ["i2", "r1.0", "bt", "stext"]]]}]}.
Section FromJson(const std::string& name, const nlohmann::json& tree) {
  Section section{name, {}, {}};
  Names names;
  for (const nlohmann::json& item : tree) {
    const std::string inner = names.Unique(item[1].get<std::string>());
    if (item[0] == "s") {
      section.sections.push_back(FromJson(inner, item[2]));
      continue;
    }
    Keyword keyword{inner, {}};
    for (const std::string text : item[2]) {
      const std::string rest = text.substr(1);
      if (text[0] == 'i') keyword.values.push_back(MakeValue(Kind::kInteger, rest));
      if (text[0] == 'r') keyword.values.push_back(MakeValue(Kind::kReal, rest));
      if (text[0] == 'b') {
        keyword.values.push_back(MakeValue(Kind::kBoolean, rest == "t" ? "true" : "false"));
      }
      if (text[0] == 's') keyword.values.push_back(MakeValue(Kind::kString, rest));
    }
    section.keywords.push_back(std::move(keyword));
  }
  return section;
}

std::vector<Section> Settings() {
  std::ifstream stream(std::getenv("ZON_PEERS_TREE"));
  const nlohmann::json json = nlohmann::json::parse(stream);
  std::vector<Section> models;
  for (const nlohmann::json& file : json.at("files")) {
    models.push_back(FromJson("", file.at("tree")));
  }
  return models;
}

// One file of `size` bytes: each model is a section, again and again.
Section JoinedSettings(std::size_t size) {
  const std::vector<Section> models = Settings();
  Section root;
  std::size_t made = 0;
  for (std::size_t n = 0; made < size; ++n) {
    Section alone;
    alone.sections.push_back(models[n % models.size()]);
    alone.sections.front().name = "Run" + std::to_string(n + 1);
    made += Printer(Format::kZon).Print(alone).size();
    root.sections.push_back(std::move(alone.sections.front()));
  }
  return root;
}
#endif

constexpr std::string_view kSettings = "settings";

// The size of "1MB" or "100KB" in bytes.
std::size_t BytesOf(const std::string& size) {
  return std::stoul(size) * (size.find("MB") != std::string::npos ? 1000000 : 1000);
}

void Count(const Section& section, Totals& totals) {
  for (const Keyword& keyword : section.keywords) {
    for (const Value& value : keyword.values) {
      if (value.kind == Kind::kBoolean) {
        totals.Flag(value.number != 0);
      } else if (value.kind >= Kind::kString) {
        totals.Text(value.text);
      } else {
        totals.Number(value.number);
      }
    }
  }
  for (const Section& inner : section.sections) Count(inner, totals);
}

std::vector<Path> Paths(const Section& root) {
  std::vector<Path> paths;
  for (const Section& section : root.sections) {
    for (const Keyword& keyword : section.keywords) {
      const Value& first = keyword.values.front();
      if (first.kind == Kind::kReal) paths.push_back({section.name, keyword.name, first.number});
    }
  }
  std::shuffle(paths.begin(), paths.end(), std::mt19937(1));
  return paths;
}

void AddPlaces(const Section& section, Place& outer, std::vector<Place>& places) {
  for (const Keyword& keyword : section.keywords) {
    if (keyword.values.empty()) continue;
    places.push_back({outer.file, outer.sections, keyword.name, keyword.values.front()});
  }
  for (const Section& inner : section.sections) {
    outer.sections.push_back(inner.name);
    AddPlaces(inner, outer, places);
    outer.sections.pop_back();
  }
}

// The folder of temporary files; created with the first of them, removed at the end.
class Folder {
 public:
  Folder() {
    path_ = std::filesystem::temp_directory_path() / "zon-bench-XXXXXX";
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no folder for temporary files");
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

Source MakeSource(Format format, const std::string& size) {
  Source source;
  const std::string prefix = size + "-" + std::to_string(static_cast<int>(format)) + "-";
  for (const Section& model : Models(size)) {
    if (source.files.empty()) source.paths = Paths(model);
    Place outer{source.files.size(), {}, {}, {}};
    AddPlaces(model, outer, source.places);
    source.files.push_back(TemporaryFile(prefix + std::to_string(source.files.size())));
    const std::string text = Printer(format).Print(model);
    if (!WriteText(source.files.back(), text)) throw std::runtime_error("cannot write content");
    source.bytes += text.size();
    Count(model, source.totals);
  }
  std::shuffle(source.places.begin(), source.places.end(), std::mt19937(1));
  return source;
}

}  // namespace

bool HasSize(const std::string& size) {
#ifdef ZON_BENCH_SETTINGS
  return size.find(kSettings) != 0 || std::getenv("ZON_PEERS_TREE") != nullptr;
#else
  return size.find(kSettings) != 0;
#endif
}

std::vector<Section> Models(const std::string& size) {
#ifdef ZON_BENCH_SETTINGS
  if (size == kSettings) return Settings();
  if (size.find(kSettings) == 0) return {JoinedSettings(BytesOf(size.substr(kSettings.size())))};
#endif
  std::vector<Section> models;
  Generator generator(1);
  if (size == "small") {
    for (int n = 0; n < 100; ++n) {
      models.push_back(generator.Make(static_cast<std::size_t>(generator.Number(1000, 50000))));
    }
    return models;
  }
  models.push_back(generator.Make(BytesOf(size)));
  return models;
}

const Source& SourceOf(Format format, const std::string& size) {
  static std::map<std::pair<Format, std::string>, Source> sources;
  const auto key = std::make_pair(format, size);
  auto found = sources.find(key);
  if (found == sources.end()) found = sources.emplace(key, MakeSource(format, size)).first;
  return found->second;
}

std::string TemporaryFile(const std::string& name) {
  static const Folder folder;
  return folder.Path() + "/" + name;
}

bool WriteText(const std::string& path, const std::string& text) {
  std::ofstream stream(path, std::ios::binary);
  return static_cast<bool>(stream << text << std::flush);
}

}  // namespace bench
