#include <toml++/toml.h>

#include <fstream>

#include "rows.h"

namespace bench {
namespace {

void ReadFrom(const toml::node& node, Totals& totals) {
  if (const toml::table* table = node.as_table()) {
    for (const auto& [key, inner] : *table) ReadFrom(inner, totals);
  } else if (const toml::array* array = node.as_array()) {
    for (const toml::node& inner : *array) ReadFrom(inner, totals);
  } else if (const auto* text = node.as_string()) {
    totals.Text(text->get());
  } else if (const auto* flag = node.as_boolean()) {
    totals.Flag(flag->get());
  } else {
    totals.Number(node.value_or(0.0));
  }
}

class TomlPlusPlus {
 public:
  static constexpr Format kFormat = Format::kToml;

  bool Load(const std::string& path) {
    root_ = toml::parse_file(path);
    return true;
  }
  void Read(Totals& totals) { ReadFrom(root_, totals); }
  double LookUp(const std::string& section, const std::string& keyword) {
    return root_[section][keyword][0].value_or(0.0);
  }
  bool Write(const std::string& path) {
    std::ofstream stream(path, std::ios::binary);
    return static_cast<bool>(stream << root_ << std::flush);
  }

 private:
  toml::table root_;
};

const auto kRows = Rows<TomlPlusPlus>("toml++")
                       .Load({"1MB", "small", "settings"})
                       .Read({"1MB"})
                       .LookUp({"1MB"})
                       .Write({"1MB"})
                       .Memory({"1MB"});

}  // namespace
}  // namespace bench
