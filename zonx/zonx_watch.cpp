// Exported functions: keywords that nobody read. Tested by tests/zonx_test.cpp.
#include <memory>
#include <string>

#include "api/zonhandleaccess.h"
#include "api/zonhandlecheck.h"
#include "api/zonwatch.h"
#include "api/zonx.h"
#include "base/zonnearest.h"
#include "tree/zonnodeaccess.h"
#include "tree/zontreewalk.h"
#include "zonx/zonnodeplace.h"
#include "zonx/zonreporter.h"
#include "zonx/zonstatus.h"

namespace zon {
namespace {

// Default lines are no keywords of a program.
template <class F>
void VisitKeywords(const CzonNamedNode& root, F&& visit) {
  WalkKeywords(root, [&](CzonNamedNode& keyword) {
    if (!keyword.IsDefaultDef()) visit(keyword);
  });
}

// So many comparisons of names one call makes for hints: some 0.4 seconds.
constexpr std::size_t kMostComparisons = 1000000;

// The missing name that is nearest to a name; empty for none.
std::string_view NearestMissing(std::string_view name, const Watch& watch,
                                std::size_t* comparisons) {
  if (*comparisons + watch.missing.size() > kMostComparisons) return {};
  *comparisons += watch.missing.size();
  NearestName nearest(name);
  for (const std::string& missing : watch.missing) nearest.Offer(missing);
  return nearest.Name();
}

void ReportUnread(const CzonNamedNode& keyword, std::string_view nearest, const NodeFile& file,
                  Reporter& reporter) {
  const std::string_view name = NodeAccess::GetNameView(keyword);
  Finding finding;
  finding.severity = Severity::kWarning;
  finding.rule = "unread-keyword";
  finding.message = "the keyword `" + std::string(name) + "` was not read";
  if (!nearest.empty()) finding.hint = "the program asked for " + std::string(nearest);
  if (file.text != nullptr) finding.place = PlaceOf(keyword, *file.text);
  reporter.Report(file.text, finding);
}

}  // namespace
}  // namespace zon

extern "C" {

int zonxWatch(void* handle, int on) {
  return zon::WithStatus([&]() -> int {
    auto* data = zon::CastHandle<CzonData>(handle);
    if (data == nullptr) return ZONX_BAD_ARGUMENT;
    if (data->GetRoot() == nullptr) return ZONX_MISSING;
    if (on == 0) {
      zon::HandleAccess::SetWatch(*data, nullptr);
      return ZONX_OK;
    }
    zon::HandleAccess::SetWatch(*data, std::make_unique<zon::Watch>());
    zon::VisitKeywords(*data->GetRoot(),
                       [](CzonNamedNode& keyword) { zon::NodeAccess::SetRead(keyword, false); });
    return ZONX_OK;
  });
}

int zonxReportUnread(void* handle, zonxReporter function, void* context, size_t* count) {
  return zon::WithStatus([&]() -> int {
    auto* data = zon::CastHandle<CzonData>(handle);
    if (data == nullptr) return ZONX_BAD_ARGUMENT;
    const zon::Watch* watch = zon::HandleAccess::GetWatch(*data);
    if (data->GetRoot() == nullptr || watch == nullptr) return ZONX_MISSING;
    const zon::NodeFile file = zon::FileOf(*data);
    zon::Reporter reporter(function, context, file.name);
    size_t unread = 0;
    size_t comparisons = 0;
    zon::VisitKeywords(*data->GetRoot(), [&](const CzonNamedNode& keyword) {
      if (zon::NodeAccess::WasRead(keyword)) return;
      ++unread;
      if (!reporter.IsOn()) return;
      const std::string_view name = zon::NodeAccess::GetNameView(keyword);
      zon::ReportUnread(keyword, zon::NearestMissing(name, *watch, &comparisons), file, reporter);
    });
    if (count != nullptr) *count = unread;
    return ZONX_OK;
  });
}

}  // extern "C"
