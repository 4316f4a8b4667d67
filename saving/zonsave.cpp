#include "saving/zonsave.h"

#include <string>
#include <utility>
#include <vector>

#include "api/zonx.h"
#include "saving/zonrewriter.h"
#include "saving/zonsavedtree.h"
#include "saving/zonunwritable.h"
#include "tree/zonsection.h"
#include "zonx/zoncheckreport.h"

namespace zon {
namespace {

std::shared_ptr<FileText> TextOfPieces(const std::vector<std::string_view>& pieces) {
  auto text = std::make_shared<FileText>();
  text->Assign(pieces);
  return text;
}

bool Prove(const CzonTargetList& root, const SaveSources& sources, SavedText* saved) {
  saved->proof = std::make_unique<Proof>(root, sources.loaded, saved->edits.get(), saved->text);
  return saved->proof->Run(sources.file);
}

// Changes the present text into that of the tree. `isSound` tells whether the present text loads.
bool Rewrite(const CzonTargetList& root, const SaveSources& sources, SavedText* saved,
             bool* isSound) {
  const bool knowsPlaces = sources.present == sources.loaded;
  saved->edits = std::make_unique<TextEdits>();
  *isSound =
      Rewriter::Rewrite(sources.present, knowsPlaces, SectionParts(root), saved->edits.get());
  if (!*isSound) return false;
  saved->isChanged = !saved->edits->IsEmpty();
  saved->text = sources.present;
  if (saved->isChanged) saved->text = TextOfPieces(saved->edits->Apply(sources.present->View()));
  if (!knowsPlaces) saved->edits = nullptr;
  return Prove(root, sources, saved);
}

}  // namespace

int MakeSavedText(const CzonTargetList& root, const SaveSources& sources, Reporter& reporter,
                  SavedText* saved) {
  if (sources.present != nullptr) {
    bool isSound = true;
    if (Rewrite(root, sources, saved, &isSound)) return ZONX_OK;
    if (!isSound) {
      CheckAndReport(sources.present, reporter);
      return ZONX_FAULTY;
    }
  }
  *saved = SavedText();
  const std::string plain = PlainForm(root);
  saved->isChanged = sources.present == nullptr || sources.present->View() != plain;
  saved->text = TextOfPieces({plain});
  if (Prove(root, sources, saved)) return ZONX_OK;
  ReportUnwritable(root, reporter);
  *saved = SavedText();
  return ZONX_UNWRITABLE;
}

}  // namespace zon
