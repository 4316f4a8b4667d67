#include <yaml-cpp/yaml.h>

#include "rows.h"

namespace bench {
namespace {

// Scalars are texts; a quoted one has the tag "!".
void ReadFrom(const YAML::Node& node, Totals& totals) {
  if (node.IsMap()) {
    for (const auto& member : node) ReadFrom(member.second, totals);
  } else if (node.IsSequence()) {
    for (const auto& item : node) ReadFrom(item, totals);
  } else if (node.Tag() == "!") {
    totals.Text(node.Scalar());
  } else if (node.Scalar() == "true" || node.Scalar() == "false") {
    totals.Flag(node.as<bool>());
  } else {
    totals.Number(node.as<double>());
  }
}

class YamlCpp {
 public:
  static constexpr Format kFormat = Format::kYaml;

  bool Load(const std::string& path) {
    root_ = YAML::LoadFile(path);
    return root_.IsMap();
  }
  void Read(Totals& totals) { ReadFrom(root_, totals); }
  double LookUp(const std::string& section, const std::string& keyword) {
    return root_[section][keyword][0].as<double>();
  }

 private:
  YAML::Node root_;
};

const auto kRows = Rows<YamlCpp>("yaml-cpp")
                       .Load({"1MB", "settings"})
                       .Read({"1MB"})
                       .LookUp({"1MB"})
                       .Memory({"1MB"});

}  // namespace
}  // namespace bench
