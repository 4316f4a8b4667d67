// The library as a class for rows.h.
#ifndef ZON_BENCH_ZONROWS_H
#define ZON_BENCH_ZONROWS_H

#include <zon.h>
#include <zonclasses.h>

#include <string>

#include "content.h"

namespace bench {

class Zon {
 public:
  static constexpr Format kFormat = Format::kZon;

  Zon() = default;
  ~Zon() {
    if (handle_ != nullptr) zonClose(&handle_);
  }
  Zon(const Zon&) = delete;
  Zon& operator=(const Zon&) = delete;

  bool Load(const std::string& path) {
    handle_ = zonLoadFile(path.c_str(), 1);
    return handle_ != nullptr && zonPeekErrorGlb() == 0;
  }

  void Read(Totals& totals) {
    totals_ = &totals;
    zonExplore(handle_, Visit);
  }

  double LookUp(const std::string& section, const std::string& keyword) {
    void* target = zonTargetByNameNum(handle_, section.c_str(), 1);
    void* found = zonKeywordByNameNum(target, keyword.c_str(), 1);
    return zonGetDouble(zonParamByNum(found, 1));
  }

  double Find(const Place& place) {
    const auto& names = place.sections;
    void* node = names.empty() ? handle_ : zonTargetByNameNum(handle_, names[0].c_str(), 1);
    for (std::size_t n = 1; n < names.size(); ++n) {
      node = zonSectionByNameNum(node, names[n].c_str(), 1);
    }
    void* value = zonParamByNum(zonKeywordByNameNum(node, place.keyword.c_str(), 1), 1);
    if (place.first.kind == Kind::kBoolean) return zonGetBool(value);
    if (place.first.kind < Kind::kBoolean) return zonGetDouble(value);
    return static_cast<double>(std::string_view(zonGetString(value)).size());
  }

  void Build(const Section& root) {
    handle_ = zonCreate();
    for (const Section& section : root.sections) {
      zonAddTarget(handle_, section.name.c_str());
      Fill(section);
    }
  }

  bool Write(const std::string& path) {
    zonWrite(handle_, path.c_str());
    return zonPeekErrorGlb() == 0;
  }

 private:
  // A global, because a visitor has no argument for it.
  inline static Totals* totals_ = nullptr;

  static void Visit(CzonNode* node) {
    switch (zonGetSyntaxClass(node)) {
      case 6:
        return totals_->Number(zonGetInt(node));
      case 7:
        return totals_->Number(zonGetDouble(node));
      case 8:
        return totals_->Flag(zonGetBool(node) != 0);
      case 9:
        return totals_->Text(zonGetString(node));
      case 10:  // a file name or a date-time; only the classes have the text of the latter
        return totals_->Text(zonIsFilename(node) ? zonGetFilenameString(node)
                                                 : static_cast<CzonParam*>(node)->GetText());
      default:
        return;
    }
  }

  void Fill(const Section& section) {
    for (const Keyword& keyword : section.keywords) {
      zonAddKeyword(handle_, keyword.name.c_str());
      for (const Value& value : keyword.values) Add(value);
    }
    for (const Section& inner : section.sections) {
      zonAddSection(handle_, inner.name.c_str());
      Fill(inner);
    }
    zonEndSection(handle_);
  }

  void Add(const Value& value) {
    switch (value.kind) {
      case Kind::kInteger:
        return zonAddInt(handle_, static_cast<int>(value.number));
      case Kind::kReal:
        return zonAddDouble(handle_, value.number);
      case Kind::kBoolean:
        return zonAddBool(handle_, value.number != 0);
      case Kind::kFileName:
        return zonAddFilename(handle_, value.text.c_str());
      default:  // the builder has no date-times
        return zonAddString(handle_, value.text.c_str());
    }
  }

  void* handle_ = nullptr;
};

}  // namespace bench

#endif
