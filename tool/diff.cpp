// The command diff.
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <memory>

#include <zon.h>
#include <zonx.h>

#include "tool/changewriter.h"
#include "tool/commands.h"
#include "tool/jsonwriter.h"
#include "tool/loadedfile.h"
#include "tool/paths.h"
#include "tool/values.h"

namespace tool {
namespace {

// Receives the differences.
class DiffPrinter {
 public:
  DiffPrinter() = default;
  DiffPrinter(const DiffPrinter&) = delete;
  DiffPrinter& operator=(const DiffPrinter&) = delete;
  virtual ~DiffPrinter() = default;

  virtual void Add(const zonxDifference& difference) = 0;
  virtual Status End() { return kFine; }
};

bool IsSection(void* node) {
  return zonxGetKind(node) == ZONX_SECTION;
}

bool IsValue(void* node) {
  return zonxGetKind(node) > ZONX_DEFINITION;
}

// A value, or the values of a keyword; nothing of a section.
std::string TextOf(void* node) {
  if (IsSection(node)) return {};
  return IsValue(node) ? LoadedForm(node) : LoadedValues(node);
}

// Texts with their control characters as "\n", "\t" or "\x1B", which differ from each other.
std::string Visible(const std::string& text) {
  std::string shown;
  for (const char c : text) {
    if (!IsControl(c)) {
      shown += c;
    } else if (c == '\n' || c == '\t' || c == '\r') {
      shown += c == '\n' ? "\\n" : c == '\t' ? "\\t" : "\\r";
    } else {
      constexpr const char* kDigits = "0123456789ABCDEF";
      const auto byte = static_cast<unsigned char>(c);
      shown += std::string("\\x") + kDigits[byte / 16] + kDigits[byte % 16];
    }
  }
  return shown;
}

// One line for each difference, beginning with its sign.
class TextPrinter : public DiffPrinter {
 public:
  TextPrinter(const Input& before, const Input& after) : before_(before), after_(after) {}

  void Add(const zonxDifference& difference) override {
    if (!hasHead_) {
      Print("--- " + before_.Name());
      Print("+++ " + after_.Name());
      hasHead_ = true;
    }
    Print(LineOf(difference));
  }

 private:
  static void Print(const std::string& line) {
    std::cout << ColoredChange(Visible(line), STDOUT_FILENO) << '\n';
  }

  // The path without the number of the only value of a keyword.
  static std::string PathIn(const zonxDifference& difference) {
    void* const node = difference.after != nullptr ? difference.after : difference.before;
    const bool isOnly = difference.change == ZONX_DIFFERENT && IsValue(node) &&
                        zonGetNoParams(OwnerOf(difference.before)) == 1 &&
                        zonGetNoParams(OwnerOf(difference.after)) == 1;
    return PathOf(isOnly ? OwnerOf(node) : node);
  }

  static std::string LineOf(const zonxDifference& difference) {
    const std::string path = PathIn(difference);
    switch (difference.change) {
      case ZONX_ADDED:
        return "+ " + path + Values(difference.after);
      case ZONX_REMOVED:
        return "- " + path + Values(difference.before);
      case ZONX_MOVED: {
        const std::string former = PathOf(difference.before);
        return "> " + path + (former == path ? "  (moved)" : "  (was " + former + ")");
      }
      default:
        return "~ " + path + Change(difference);
    }
  }

  static std::string Values(void* node) { return IsSection(node) ? "" : " = " + TextOf(node); }

  static std::string Change(const zonxDifference& difference) {
    if (!IsValue(difference.after)) return "  (its flags)";
    std::string before = TextOf(difference.before);
    std::string after = TextOf(difference.after);
    if (before == after && zonxGetKind(difference.after) == ZONX_FILENAME) {  // of another folder
      before = ResolvedName(difference.before);
      after = ResolvedName(difference.after);
    }
    return ": " + before + " -> " + after;
  }

  static std::string ResolvedName(void* value) {
    const char* name = "";
    CheckMemory(zonxGetFilename(value, "", &name));
    return name;
  }

  const Input& before_;
  const Input& after_;
  bool hasHead_ = false;
};

class JsonPrinter : public DiffPrinter {
 public:
  JsonPrinter(const Input& before, const Input& after) {
    json_.Open('{');
    json_.PutText("before", before.Name());
    json_.PutText("after", after.Name());
    json_.Key("differences");
    json_.Open('[');
  }

  void Add(const zonxDifference& difference) override {
    constexpr const char* kChanges[] = {"added", "removed", "different", "moved"};
    json_.Open('{');
    json_.Put("change", kChanges[difference.change]);
    json_.Put("path", difference.path);
    PutNode("before", difference.before);
    PutNode("after", difference.after);
    json_.Close('}');
  }

  Status End() override {
    json_.Close(']');
    json_.Close('}');
    std::cout << '\n';
    return kFine;
  }

 private:
  void PutNode(const char* key, void* node) {
    if (node == nullptr) return;
    json_.Key(key);
    json_.Open('{', true);
    json_.Put("kind", IsValue(node) ? KindOf(node) : IsSection(node) ? "section" : "keyword");
    json_.Put("path", PathOf(node));
    const zonxPlace place = PlaceOf(node);
    json_.Put("line", place.line);
    json_.Put("column", place.column);
    if (!IsSection(node)) json_.PutText("text", TextOf(node));
    json_.Close('}');
  }

  JsonWriter json_;
};

class ChangePrinter : public DiffPrinter {
 public:
  ChangePrinter(const LoadedFile& before, const LoadedFile& after) : writer_(before, after) {}
  void Add(const zonxDifference& difference) override { writer_.Add(difference); }
  Status End() override { return writer_.Print(); }

 private:
  ChangeWriter writer_;
};

std::unique_ptr<DiffPrinter> MakePrinter(const DiffOptions& options, const LoadedFile& before,
                                         const LoadedFile& after) {
  if (options.json) return std::make_unique<JsonPrinter>(before.GetInput(), after.GetInput());
  if (options.changes) return std::make_unique<ChangePrinter>(before, after);
  return std::make_unique<TextPrinter>(before.GetInput(), after.GetInput());
}

extern "C" void AddDifference(const zonxDifference* difference, void* context) {
  static_cast<DiffPrinter*>(context)->Add(*difference);
}

}  // namespace

Status Diff(const DiffOptions& options) {
  const LoadedFile before(options.before);
  const LoadedFile after(options.after);
  if (!before.IsSound() || !after.IsSound()) return kTrouble;
  const std::unique_ptr<DiffPrinter> printer = MakePrinter(options, before, after);
  zonxCompare compare{};
  compare.relative = options.relative;
  compare.absolute = options.absolute;
  std::size_t count = 0;
  const char* key = options.key.empty() ? nullptr : options.key.c_str();
  const int status = zonxDiffByKey(before.File(), after.File(), key, &compare, AddDifference,
                                   printer.get(), &count);
  CheckMemory(status);
  return std::max(printer->End(), count > 0 ? kFindings : kFine);
}

}  // namespace tool
