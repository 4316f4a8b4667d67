// Tested by tests/reports_test.cpp.
#include "reader/zoncheck.h"

#include <utility>

#include "base/zonfiletext.h"
#include "reader/zonchecker.h"
#include "reader/zonengine.h"

namespace zon {
namespace {

void Run(Checker& checker) {
  Engine<Checker>(checker.GetParser(), checker.GetLexer(), checker, true).Run();
}

}  // namespace

CheckResult CheckText(const std::shared_ptr<FileText>& text) {
  // What a mistake is depends on the lines after it, so they must not end where a piece of the file
  // ends.
  text->ReadAll();
  Checker checker(text);
  Run(checker);
  if (checker.HasCandidates()) {
    Checker counter(text);
    counter.CountFor(checker);
    Run(counter);
    checker.WarnOfCandidates();
  }
  return {checker.HasErrors(), checker.First(), std::move(checker.Findings())};
}

}  // namespace zon
