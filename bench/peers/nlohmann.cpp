#include <nlohmann/json.hpp>

#include "rows.h"

namespace bench {
namespace {

using nlohmann::json;

void ReadFrom(const json& value, Totals& totals) {
  switch (value.type()) {
    case json::value_t::object:
    case json::value_t::array:
      for (const json& item : value) ReadFrom(item, totals);
      break;
    case json::value_t::boolean:
      totals.Flag(value.get<bool>());
      break;
    case json::value_t::string:
      totals.Text(value.get_ref<const std::string&>());
      break;
    default:
      totals.Number(value.get<double>());
  }
}

json Made(const Value& value) {
  if (value.kind == Kind::kInteger) return static_cast<int>(value.number);
  if (value.kind == Kind::kReal) return value.number;
  if (value.kind == Kind::kBoolean) return value.number != 0;
  return value.text;
}

json Made(const Section& section) {
  json object = json::object();
  for (const Keyword& keyword : section.keywords) {
    json array = json::array();
    for (const Value& value : keyword.values) array.push_back(Made(value));
    object[keyword.name] = std::move(array);
  }
  for (const Section& inner : section.sections) object[inner.name] = Made(inner);
  return object;
}

class Nlohmann {
 public:
  static constexpr Format kFormat = Format::kJson;

  bool Load(const std::string& path) {
    FileText file;
    if (!file.Read(path)) return false;
    root_ = json::parse(file.text.get(), file.text.get() + file.size);
    return true;
  }
  void Read(Totals& totals) { ReadFrom(root_, totals); }
  double LookUp(const std::string& section, const std::string& keyword) {
    return root_.find(section)->find(keyword)->front().get<double>();
  }
  double Find(const Place& place) {
    const json* inside = &root_;
    for (const std::string& name : place.sections) inside = &*inside->find(name);
    const json& value = inside->find(place.keyword)->front();
    if (place.first.kind == Kind::kBoolean) return value.get<bool>() ? 1 : 0;
    if (place.first.kind < Kind::kBoolean) return value.get<double>();
    return static_cast<double>(value.get_ref<const std::string&>().size());
  }
  void Build(const Section& root) { root_ = Made(root); }
  bool Write(const std::string& path) { return WriteText(path, root_.dump()); }

 private:
  json root_;
};

const auto kRows = Rows<Nlohmann>("nlohmann")
                       .Load({"100KB", "1MB", "10MB", "small", "settings"})
                       .Read({"1MB", "10MB", "small", "settings"})
                       .Free({"1MB", "10MB"})
                       .LookUp({"1MB"})
                       .Find({"settings", "settings1MB", "settings10MB"})
                       .Write({"1MB", "10MB"})
                       .Build({"1MB"})
                       .Memory({"10MB"});

}  // namespace
}  // namespace bench
