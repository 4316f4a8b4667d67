#include <pugixml.hpp>

#include "rows.h"

namespace bench {
namespace {

void ReadFrom(const pugi::xml_node& parent, Totals& totals) {
  for (const pugi::xml_node& node : parent.children()) {
    const char* const name = node.name();
    if (name[1] != 0 || name[0] == 'k') {  // <section> or <k>
      ReadFrom(node, totals);
    } else if (name[0] == 'i') {
      totals.Number(node.text().as_int());
    } else if (name[0] == 'r') {
      totals.Number(node.text().as_double());
    } else if (name[0] == 'b') {
      totals.Flag(node.text().as_bool());
    } else {
      totals.Text(node.text().get());
    }
  }
}

class PugiXml {
 public:
  static constexpr Format kFormat = Format::kXml;

  bool Load(const std::string& path) {
    const bool good = document_.load_file(path.c_str(), kFlags);
    root_ = document_.child("file");
    return good && root_;
  }
  void Read(Totals& totals) { ReadFrom(root_, totals); }
  double LookUp(const std::string& section, const std::string& keyword) {
    return root_.find_child_by_attribute("section", "name", section.c_str())
        .find_child_by_attribute("k", "name", keyword.c_str())
        .first_child()
        .text()
        .as_double();
  }
  bool Write(const std::string& path) { return document_.save_file(path.c_str()); }

 private:
  // The default flags, and strings of blanks are not dropped.
  static constexpr unsigned kFlags = pugi::parse_default | pugi::parse_ws_pcdata_single;

  pugi::xml_document document_;
  pugi::xml_node root_;
};

const auto kRows = Rows<PugiXml>("pugixml")
                       .Load({"100KB", "1MB", "10MB", "50MB", "small", "settings"})
                       .Read({"1MB", "10MB", "small", "settings"})
                       .Free({"1MB", "10MB"})
                       .LookUp({"1MB"})
                       .Write({"1MB", "10MB"})
                       .Rewrite({"1MB", "10MB"})
                       .Memory({"10MB"});

}  // namespace
}  // namespace bench
