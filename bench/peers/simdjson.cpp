#include <simdjson.h>

#include "rows.h"

namespace bench {
namespace {

using simdjson::dom::element_type;

void ReadFrom(simdjson::dom::element value, Totals& totals) {
  switch (value.type()) {
    case element_type::OBJECT:
      for (const auto member : simdjson::dom::object(value)) ReadFrom(member.value, totals);
      break;
    case element_type::ARRAY:
      for (const auto item : simdjson::dom::array(value)) ReadFrom(item, totals);
      break;
    case element_type::INT64:
      totals.Number(static_cast<double>(value.get_int64().value()));
      break;
    case element_type::DOUBLE:
      totals.Number(value.get_double().value());
      break;
    case element_type::STRING:
      totals.Text(value.get_string().value());
      break;
    default:
      totals.Flag(value.get_bool().value());
  }
}

// A document is owned by its parser, so each load makes a new parser.
class SimdJson {
 public:
  static constexpr Format kFormat = Format::kJson;

  bool Load(const std::string& path) { return parser_.load(path).get(root_) == simdjson::SUCCESS; }
  void Read(Totals& totals) { ReadFrom(root_, totals); }
  double LookUp(const std::string& section, const std::string& keyword) {
    return root_[section][keyword].at(0).get_double().value();
  }
  bool Write(const std::string& path) { return WriteText(path, simdjson::to_string(root_)); }

 private:
  simdjson::dom::parser parser_;
  simdjson::dom::element root_;
};

const auto kRows = Rows<SimdJson>("simdjson")
                       .Load({"100KB", "1MB", "10MB", "50MB", "small", "settings"})
                       .Read({"100KB", "1MB", "10MB", "small", "settings"})
                       .Free({"1MB", "10MB"})
                       .LookUp({"1MB"})
                       .Write({"1MB", "10MB"})
                       .Rewrite({"1MB", "10MB"})
                       .Memory({"10MB"});

}  // namespace
}  // namespace bench
