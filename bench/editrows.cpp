// A million edits of one section: inserts, renames and deletes, each at one place of its children.
#include <zon.h>

#include <string>

#include "rows.h"
#include "zonrows.h"
#include "zonxrows.h"

namespace bench {
namespace {

enum class Child { kKeyword, kSection, kValue };

// Where each edit is.
enum class At { kFirst, kMiddle, kLast };

class Edits {
 public:
  Edits(Child child, bool haveOneName, At at) : child_(child), haveOneName_(haveOneName), at_(at) {
    file_ = zonCreate();
    zonAddTarget(file_, "A");
    owner_ = zonTargetByNum(file_, 1);
    if (child_ == Child::kValue) owner_ = zoneInsertNewKeyword(owner_, "k", 1);
  }
  ~Edits() { zonClose(&file_); }
  Edits(const Edits&) = delete;
  Edits& operator=(const Edits&) = delete;

  void Insert(unsigned count) {
    for (unsigned n = 0; n < count; ++n) {
      const std::string name = Name("k", n);
      void* made = child_ == Child::kValue ? zoneInsertParameterInt(owner_, Place(n + 1), 1)
                   : child_ == Child::kKeyword
                       ? zoneInsertNewKeyword(owner_, name.c_str(), Place(n + 1))
                       : zoneInsertNewSection(owner_, name.c_str(), Place(n + 1));
      Require(made != nullptr, "cannot insert");
    }
  }

  void Rename(unsigned count) {
    for (unsigned n = 0; n < count; ++n) {
      const std::string name = Name("r", n);
      const int code = child_ == Child::kKeyword
                           ? zoneRenameKeyword(zonKeywordByNum(owner_, Place(count)), name.c_str())
                           : zoneRenameSection(zonSectionByNum(owner_, Place(count)), name.c_str());
      Require(code == 0, "cannot rename");
    }
  }

  void Delete(unsigned count) {
    for (unsigned n = count; n > 0; --n) {
      const auto remove = child_ == Child::kKeyword   ? zoneDeleteKeywordByNum
                          : child_ == Child::kSection ? zoneDeleteSectionByNum
                                                      : zoneDeleteParameterByNum;
      Require(remove(owner_, Place(n)) == 0, "cannot delete");
    }
  }

 private:
  unsigned Place(unsigned count) const {
    return at_ == At::kFirst ? 1 : at_ == At::kLast ? count : count / 2 + count % 2;
  }
  std::string Name(const char* begin, unsigned n) const {
    return haveOneName_ ? begin : begin + std::to_string(n);
  }

  Child child_;
  bool haveOneName_;
  At at_;
  void* file_;
  void* owner_;
};

void RunEdits(benchmark::State& state, Child child, bool haveOneName, At at, unsigned count) {
  for (auto _ : state) {
    Edits edits(child, haveOneName, at);
    double start = CpuSeconds();
    const auto note = [&](const char* step) {
      const double now = CpuSeconds();
      state.counters[step] = now - start;
      start = now;
    };
    edits.Insert(count);
    note("insert");
    if (child != Child::kValue) {
      edits.Rename(count);
      note("rename");
    }
    edits.Delete(count);
    note("delete");
  }
}

}  // namespace

void AddEditRows() {
  const char* const kChildren[] = {"keywords", "sections", "values"};
  const char* const kPlaces[] = {"first", "middle", "last"};
  for (int child = 0; child < 3; ++child) {
    for (const bool haveOneName : {true, false}) {
      if (child == 2 && !haveOneName) continue;
      for (int at = 0; at < 3; ++at) {
        const std::string name = std::string(kChildren[child]) +
                                 (child == 2    ? ""
                                  : haveOneName ? " of one name"
                                                : " of many names") +
                                 ", " + kPlaces[at];
        for (const auto& [action, count] : {std::pair("edit", 1000000U), {"edithalf", 500000U}}) {
          const auto run = [child, haveOneName, at, count = count](benchmark::State& state) {
            RunEdits(state, static_cast<Child>(child), haveOneName, static_cast<At>(at), count);
          };
          AddRow(std::string(action) + "/zon/" + name, run)->Iterations(1);
        }
      }
    }
  }
}

}  // namespace bench
