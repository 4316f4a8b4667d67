#include <rapidjson/document.h>
#include <rapidjson/filewritestream.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/writer.h>

#include <cstdio>

#include "rows.h"
#include "zonxrows.h"

namespace bench {
namespace {

rapidjson::Value::StringRefType Ref(const std::string& text) {
  return rapidjson::StringRef(text.c_str(), text.size());
}

void ReadFrom(const rapidjson::Value& value, Totals& totals) {
  switch (value.GetType()) {
    case rapidjson::kObjectType:
      for (const auto& member : value.GetObject()) ReadFrom(member.value, totals);
      break;
    case rapidjson::kArrayType:
      for (const auto& item : value.GetArray()) ReadFrom(item, totals);
      break;
    case rapidjson::kNumberType:
      totals.Number(value.IsInt() ? value.GetInt() : value.GetDouble());
      break;
    case rapidjson::kStringType:
      totals.Text({value.GetString(), value.GetStringLength()});
      break;
    default:
      totals.Flag(value.IsTrue());
  }
}

template <bool kInSitu, bool kPretty>
class RapidJson {
 public:
  static constexpr Format kFormat = Format::kJson;

  bool Load(const std::string& path) {
    FileText file;
    if (!file.Read(path)) return false;
    if constexpr (kInSitu) {
      buffer_ = std::move(file);
      document_.ParseInsitu(buffer_.text.get());
    } else {
      document_.Parse(file.text.get(), file.size);
    }
    return !document_.HasParseError();
  }

  void Read(Totals& totals) { ReadFrom(document_, totals); }

  double LookUp(const std::string& section, const std::string& keyword) {
    const rapidjson::Value& inside = document_.FindMember(rapidjson::Value(Ref(section)))->value;
    return inside.FindMember(rapidjson::Value(Ref(keyword)))->value[0].GetDouble();
  }

  double Find(const Place& place) {
    const rapidjson::Value* inside = &document_;
    for (const std::string& name : place.sections) {
      inside = &inside->FindMember(rapidjson::Value(Ref(name)))->value;
    }
    const rapidjson::Value& value =
        inside->FindMember(rapidjson::Value(Ref(place.keyword)))->value[0];
    if (place.first.kind == Kind::kBoolean) return value.GetBool() ? 1 : 0;
    if (place.first.kind < Kind::kBoolean) return value.GetDouble();
    return value.GetStringLength();
  }

  // Each keyword of each section.
  template <class Visit>
  void Lists(Visit&& visit) const {
    for (const auto& section : document_.GetObject()) {
      for (const auto& list : section.value.GetObject()) visit(list.value);
    }
  }

  bool Write(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return false;
    char buffer[65536];
    rapidjson::FileWriteStream stream(file, buffer, sizeof buffer);
    bool good = false;
    if constexpr (kPretty) {
      rapidjson::PrettyWriter<rapidjson::FileWriteStream> writer(stream);
      writer.SetIndent(' ', 3).SetFormatOptions(rapidjson::kFormatSingleLineArray);
      good = document_.Accept(writer);
    } else {
      rapidjson::Writer<rapidjson::FileWriteStream> writer(stream);
      good = document_.Accept(writer);
    }
    return std::fclose(file) == 0 && good;
  }

 private:
  FileText buffer_;  // owns the texts of the document, so it must outlive it
  rapidjson::Document document_;
};

const auto kRows =
    Rows<RapidJson<false, false>>("rapidjson")
        .Load({"100KB", "1MB", "10MB", "50MB", "small", "settings", "settings1MB", "settings10MB"})
        .Read({"100KB", "1MB", "10MB", "small", "settings", "settings1MB", "settings10MB"})
        .Free({"1MB", "10MB"})
        .LookUp({"1MB"})
        .Find({"settings", "settings1MB"})
        .Write({"1MB", "10MB", "settings", "settings1MB"})
        .Rewrite({"1MB", "10MB"})
        .Memory({"10MB", "settings10MB"});
const bool kFirstRow = (AddFirst("rapidjson", "rapidjson_first", Format::kJson), true);
const auto kInSituRows = Rows<RapidJson<true, false>>("rapidjson-insitu")
                             .Load({"1MB", "10MB", "50MB", "small", "settings"})
                             .Read({"1MB", "10MB"})
                             .Memory({"10MB"});
// The lists of numbers that zonxGetDoubles reads.
const auto kListRow = AddRow("doubles/rapidjson/10MB", [](benchmark::State& state) {
  const std::string file = FileOfLists(true);
  for (auto _ : state) {
    RapidJson<false, false> json;
    Require(json.Load(file), "cannot load");
    double numbers[kNumbersOfList];
    json.Lists([&](const rapidjson::Value& list) {
      int n = 0;
      for (const auto& number : list.GetArray()) numbers[n++] = number.GetDouble();
      benchmark::DoNotOptimize(numbers);
    });
  }
  PerValue(state, std::size_t{kLists} * kNumbersOfList);
});
const auto kPrettyRows = Rows<RapidJson<false, true>>("rapidjson-pretty").Write({"1MB", "10MB"});

}  // namespace
}  // namespace bench
