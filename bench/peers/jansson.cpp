#include <jansson.h>

#include "rows.h"

namespace bench {
namespace {

void ReadFrom(json_t* value, Totals& totals) {
  if (json_is_object(value)) {
    const char* key = nullptr;
    json_t* member = nullptr;
    json_object_foreach(value, key, member) ReadFrom(member, totals);
  } else if (json_is_array(value)) {
    std::size_t index = 0;
    json_t* item = nullptr;
    json_array_foreach(value, index, item) ReadFrom(item, totals);
  } else if (json_is_string(value)) {
    totals.Text({json_string_value(value), json_string_length(value)});
  } else if (json_is_number(value)) {
    totals.Number(json_number_value(value));
  } else {
    totals.Flag(json_is_true(value));
  }
}

class Jansson {
 public:
  static constexpr Format kFormat = Format::kJson;

  Jansson() = default;
  ~Jansson() { json_decref(root_); }
  Jansson(const Jansson&) = delete;
  Jansson& operator=(const Jansson&) = delete;

  bool Load(const std::string& path) {
    root_ = json_load_file(path.c_str(), 0, nullptr);
    return root_ != nullptr;
  }
  void Read(Totals& totals) { ReadFrom(root_, totals); }
  double LookUp(const std::string& section, const std::string& keyword) {
    json_t* const inside = json_object_get(root_, section.c_str());
    return json_number_value(json_array_get(json_object_get(inside, keyword.c_str()), 0));
  }
  double Find(const Place& place) {
    const json_t* inside = root_;
    for (const std::string& name : place.sections) inside = json_object_get(inside, name.c_str());
    const json_t* value = json_array_get(json_object_get(inside, place.keyword.c_str()), 0);
    if (place.first.kind == Kind::kBoolean) return json_is_true(value) ? 1 : 0;
    if (place.first.kind < Kind::kBoolean) return json_number_value(value);
    return static_cast<double>(json_string_length(value));
  }
  bool Write(const std::string& path) {
    return json_dump_file(root_, path.c_str(), JSON_COMPACT) == 0;
  }

 private:
  json_t* root_ = nullptr;
};

const auto kRows = Rows<Jansson>("jansson")
                       .Load({"1MB", "10MB", "small", "settings"})
                       .Read({"1MB", "10MB"})
                       .Free({"1MB"})
                       .LookUp({"1MB"})
                       .Find({"settings", "settings1MB", "settings10MB"})
                       .Write({"1MB"})
                       .Memory({"10MB", "settings10MB"});

}  // namespace
}  // namespace bench
