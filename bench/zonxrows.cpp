#include "zonxrows.h"

#include <zon.h>
#include <zonx.h>

#include <algorithm>
#include <random>
#include <vector>

#include "rows.h"
#include "zonrows.h"

namespace bench {
namespace {

void Ignore(const zonxReport*, void* count) {
  ++*static_cast<int*>(count);
}

// A sound file with reports, without, and checked without a tree.
void LoadReported(benchmark::State& state, const char* size, bool reports, bool tree) {
  const Source& source = SourceOf(Format::kZon, size);
  for (auto _ : state) {
    void* handle = nullptr;
    int count = 0;
    const int status = zonxLoadFile(source.files.front().c_str(), tree ? &handle : nullptr,
                                    reports ? Ignore : nullptr, &count);
    Require(status == ZONX_OK && count == 0, "the file has errors");
    if (handle != nullptr) zonClose(&handle);
  }
  Rates(state, source);
}

// A file with a mistake in every n-th line of a keyword.
void Mistakes(benchmark::State& state, const char* size) {
  const Source& source = SourceOf(Format::kZon, size);
  FileText file;
  Require(file.Read(source.files.front()), "cannot read");
  std::string text(file.text.get(), file.size);
  const std::size_t step = 1000;  // 1,000 mistakes in 1 MB
  for (std::size_t at = step; at < text.size(); at += step) {
    const std::size_t equals = text.find(" = ", at);
    if (equals == std::string::npos) break;
    text[equals + 1] = ' ';
    at = equals;
  }
  int count = 0;
  for (auto _ : state) {
    void* handle = nullptr;
    Require(zonxLoadText(text.data(), text.size(), "f", &handle, Ignore, &count) == ZONX_FAULTY,
            "the text has no errors");
    zonClose(&handle);
  }
  Require(count > 0, "nothing is reported");
  Rates(state, source);
}

void Doubles(benchmark::State& state) {
  const std::string file = FileOfLists(false);
  std::vector<std::string> paths;
  for (int list = 0; list < kLists; ++list) paths.push_back("A/k" + std::to_string(list));
  for (auto _ : state) {
    void* handle = nullptr;
    Require(zonxLoadFile(file.c_str(), &handle, nullptr, nullptr) == ZONX_OK, "cannot load");
    double numbers[kNumbersOfList];
    for (const std::string& path : paths) {
      std::size_t count = 0;
      Require(zonxGetDoubles(handle, path.c_str(), numbers, kNumbersOfList, &count) == ZONX_OK,
              "cannot read");
      benchmark::DoNotOptimize(numbers);
    }
    zonClose(&handle);
  }
  PerValue(state, std::size_t{kLists} * kNumbersOfList);
}

// A real by a path of three names, and by the chained calls of zon.h.
void ByPath(benchmark::State& state, bool chained) {
  const std::string text = "[Quay]\n [Berth]\n  Draught = 7.5\n EndSect\nEndSect\n";
  void* handle = nullptr;
  zonxLoadText(text.data(), text.size(), "f", &handle, nullptr, nullptr);
  double sum = 0;
  for (auto _ : state) {
    double value = 0;
    if (chained) {
      void* quay = zonTargetByNameNum(handle, "Quay", 1);
      void* berth = zonSectionByNameNum(quay, "Berth", 1);
      value = zonGetDouble(zonParamByNum(zonKeywordByNameNum(berth, "Draught", 1), 1));
    } else {
      zonxGetDouble(handle, "Quay/Berth/Draught", &value);
    }
    sum += value;
  }
  zonClose(&handle);
  Require(sum > 0, "nothing is found");
  PerValue(state, 1);
}

void AddKeywords(void* section, std::vector<void*>* all) {
  const auto keywords = static_cast<unsigned>(zonGetNoKeywords(section));
  for (unsigned n = 1; n <= keywords; ++n) all->push_back(zonKeywordByNum(section, n));
  const auto sections = static_cast<unsigned>(zonGetNoSections(section));
  for (unsigned n = 1; n <= sections; ++n) AddKeywords(zonSectionByNum(section, n), all);
}

// Keywords of a file, at most `most` of them, spread over the file. No value is read.
std::vector<void*> SomeKeywords(void* handle, std::size_t most) {
  std::vector<void*> all;
  const auto sections = static_cast<unsigned>(zonGetNoTargets(handle));
  for (unsigned n = 1; n <= sections; ++n) AddKeywords(zonTargetByNum(handle, n), &all);
  std::vector<void*> chosen;
  const std::size_t step = std::max<std::size_t>(1, all.size() / most);
  for (std::size_t n = 0; n < all.size() && chosen.size() < most; n += step) {
    chosen.push_back(all[n]);
  }
  return chosen;
}

// Saves a file in which a number of values have changed.
void SaveChanges(benchmark::State& state, const char* size, std::size_t changes) {
  const Source& source = SourceOf(Format::kZon, size);
  FileText file;
  Require(file.Read(source.files.front()), "cannot read");
  const std::string name = TemporaryFile("saved");
  Require(WriteText(name, std::string(file.text.get(), file.size)), "cannot write content");
  void* handle = nullptr;
  Require(zonxLoadFile(name.c_str(), &handle, nullptr, nullptr) == ZONX_OK, "cannot load");
  const std::vector<void*> keywords = SomeKeywords(handle, changes);
  double value = 0.5;
  for (auto _ : state) {
    state.PauseTiming();
    value += 1;
    for (void* keyword : keywords) zonxSetDouble(keyword, "", value);
    state.ResumeTiming();
    Require(zonxSave(handle, nullptr, 0, nullptr, nullptr) == ZONX_OK, "cannot save");
  }
  zonClose(&handle);
  Rates(state, source);
}

// A handle that is closed at the end of the scope.
class Handle {
 public:
  explicit Handle(const std::string& text) {
    const int status =
        zonxLoadText(text.data(), text.size(), "/d/f.zon", &handle_, nullptr, nullptr);
    Require(status == ZONX_OK, "cannot load");
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { zonClose(&handle_); }
  operator void*() const { return handle_; }

 private:
  void* handle_ = nullptr;
};

// A file compared with itself by each section, or by a validation. Its names are unique.
void CompareAll(benchmark::State& state, bool validates) {
  std::string text;
  for (int n = 0; text.size() < 1000000; ++n) {
    const std::string number = std::to_string(n);
    text += "[Quay" + number + "]\n Name = 'North Quay'\n Length {metres} = 240.0 {moored}\n";
    text += " Rails = true\n [Berth]\n  Draught = 7.5, 8.25, 9\n  Plan = |plans\\n.dwg|\n";
    text += " EndSect\nEndSect\n";
  }
  const Handle handle(text);
  bool conforms = true;
  for (auto _ : state) {
    if (validates) {
      conforms = zonxValidate(handle, handle, nullptr, nullptr) == ZONX_OK && conforms;
      continue;
    }
    for (unsigned n = 1; void* section = zonTargetByNum(handle, n); ++n) {
      void* pattern = zonTargetByNameNum(handle, zonGetName(section), 1);
      conforms = zonEquivalentExt(pattern, section, nullptr, 1) != 0 && conforms;
    }
  }
  Require(conforms, "a file differs from itself");
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

// The generated content, in which each name occurs once, or sections of one name.
std::string TextOf(const char* size, bool repeated) {
  if (!repeated) {
    FileText file;
    Require(file.Read(SourceOf(Format::kZon, size).files.front()), "cannot read");
    return {file.text.get(), file.size};
  }
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> numbers(0, 1e6);
  std::string text;
  while (text.size() < 1000000) {
    text += "[Quay]\n";
    for (int keyword = 0; keyword < 6; ++keyword) {
      text += "   Keyword" + std::to_string(keyword) + " = 'text', ";
      for (int n = 0; n < 4; ++n) text += std::to_string(numbers(random)) + ", ";
      text += "true\n";
    }
    text += "EndSect\n";
  }
  return text;
}

// Sets a number of keywords of the handle to another value.
void ChangeSome(void* handle, std::size_t changes) {
  for (void* keyword : SomeKeywords(handle, changes)) zonxSetDouble(keyword, "", 0.5);
}

std::string SavedText(void* handle) {
  char* text = nullptr;
  std::size_t size = 0;
  Require(zonxText(handle, 0, &text, &size, nullptr, nullptr) == ZONX_OK, "cannot save");
  const std::string saved(text, size);
  zonxFree(text);
  return saved;
}

enum class Compared { kLoads, kDiff, kMerge };

// Two texts with a number of differences: loaded, compared or merged. No value was read before.
void CompareTexts(benchmark::State& state, const char* size, bool repeated, Compared action) {
  const std::string text = TextOf(size, repeated);
  std::string changed;
  {
    const Handle handle(text);
    ChangeSome(handle, 100);
    changed = SavedText(handle);
  }
  std::size_t count = 1;
  for (auto _ : state) {
    if (action != Compared::kLoads) state.PauseTiming();
    {
      const Handle before(text);
      const Handle after(changed);
      if (action != Compared::kLoads) state.ResumeTiming();
      if (action == Compared::kDiff) zonxDiff(before, after, nullptr, nullptr, nullptr, &count);
      if (action == Compared::kMerge) zonxMerge(before, after);
      if (action != Compared::kLoads) state.PauseTiming();
    }
    if (action != Compared::kLoads) state.ResumeTiming();
  }
  Require(count > 0, "there are no differences");
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(2 * text.size()));
}

}  // namespace

std::string FileOfLists(bool json) {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> numbers(0, 1e6);
  std::string text = json ? "{\"A\":{" : "[A]\n";
  for (int list = 0; list < kLists; ++list) {
    const std::string name = "k" + std::to_string(list);
    text += json ? (list > 0 ? ",\"" : "\"") + name + "\":[" : name + " = ";
    for (int n = 0; n < kNumbersOfList; ++n) {
      char number[40];
      std::snprintf(number, sizeof number, "%s%.8g", n > 0 ? ", " : "", numbers(random));
      text += number;
    }
    text += json ? "]" : "\n";
  }
  text += json ? "}}" : "EndSect\n";
  const std::string file = TemporaryFile(json ? "lists-json" : "lists");
  Require(WriteText(file, text), "cannot write content");
  return file;
}

void AddZonxRows() {
  for (const char* const size : {"100KB", "1MB", "10MB"}) {
    const std::string suffix = "/zon/" + std::string(size);
    AddRow("loadx" + suffix, [size](auto& s) { LoadReported(s, size, false, true); });
    AddRow("loadx-reporter" + suffix, [size](auto& s) { LoadReported(s, size, true, true); });
    AddRow("check" + suffix, [size](auto& s) { LoadReported(s, size, true, false); });
    AddRow("mistakes" + suffix, [size](auto& s) { Mistakes(s, size); });
  }
  AddRow("save-1/zon/1MB", [](auto& s) { SaveChanges(s, "1MB", 1); });
  AddRow("save-10000/zon/1MB", [](auto& s) { SaveChanges(s, "1MB", 10000); });
  AddRow("save-1/zon/10MB", [](auto& s) { SaveChanges(s, "10MB", 1); });
  for (const bool repeated : {false, true}) {
    const std::string suffix = repeated ? "/zon/repeated" : "/zon/1MB";
    AddRow("load-two" + suffix,
           [=](auto& s) { CompareTexts(s, "1MB", repeated, Compared::kLoads); });
    AddRow("diff-100" + suffix,
           [=](auto& s) { CompareTexts(s, "1MB", repeated, Compared::kDiff); });
    AddRow("merge-100" + suffix,
           [=](auto& s) { CompareTexts(s, "1MB", repeated, Compared::kMerge); });
  }
  AddRow("doubles/zon/10MB", Doubles);
  AddRow("equivalent/zon/1MB", [](auto& s) { CompareAll(s, false); });
  AddRow("validate/zon/1MB", [](auto& s) { CompareAll(s, true); });
  AddRow("path/zon/chained", [](auto& s) { ByPath(s, true); });
  AddRow("path/zon/path", [](auto& s) { ByPath(s, false); });
}

}  // namespace bench
