#include "saving/zonsave.h"

#include <utility>

#include "api/zonx.h"
#include "reader/zonload.h"
#include "saving/zonrewriter.h"
#include "saving/zonsavedtree.h"
#include "saving/zonunwritable.h"
#include "tree/zonsection.h"
#include "zonx/zoncheckreport.h"

namespace zon {
namespace {

// Loads a text without an error, also one behind a complete section; else null.
std::unique_ptr<CzonParser> LoadSound(const std::shared_ptr<FileText>& text) {
  Loading loading = Load(text, "");
  const bool isSound = loading.status == LoadStatus::kLoaded && !loading.parser->HasError();
  return isSound ? std::move(loading.parser) : nullptr;
}

// Whether the text gives the tree; then it is the saved text.
bool IsProved(const CzonTargetList& root, std::shared_ptr<FileText> text, SavedText* saved) {
  saved->parser = LoadSound(text);
  saved->text = std::move(text);
  const CzonNamedNode* different = nullptr;
  return saved->parser != nullptr && IsSameTree(root, *saved->parser->GetRoot(), &different);
}

std::shared_ptr<FileText> TextOfPieces(const std::vector<std::string_view>& pieces) {
  auto text = std::make_shared<FileText>();
  text->Assign(pieces);
  return text;
}

// Changes the present text into that of the tree.
bool Rewrite(const CzonTargetList& root, const std::shared_ptr<FileText>& present,
             std::unique_ptr<CzonParser> before, SavedText* saved) {
  Rewriter rewriter(*present);
  rewriter.Rewrite(*before->GetRoot(), root);
  TextEdits& edits = rewriter.Edits();
  if (edits.IsEmpty()) {
    const CzonNamedNode* different = nullptr;
    *saved = {present, std::move(before), false};
    return IsSameTree(root, *saved->parser->GetRoot(), &different);
  }
  std::shared_ptr<FileText> text = TextOfPieces(edits.Apply(ViewOf(*present)));
  before = nullptr;  // its memory is needed for the tree of the new text
  saved->isChanged = true;
  return IsProved(root, std::move(text), saved);
}

}  // namespace

int MakeSavedText(const CzonTargetList& root, const std::shared_ptr<FileText>& present,
                  Reporter& reporter, SavedText* saved) {
  if (present != nullptr) {
    std::unique_ptr<CzonParser> before = LoadSound(present);
    if (before == nullptr) {
      CheckAndReport(present, reporter);
      return ZONX_FAULTY;
    }
    if (Rewrite(root, present, std::move(before), saved)) return ZONX_OK;
  }
  *saved = SavedText();
  const std::string plain = PlainForm(root);
  saved->isChanged = present == nullptr || ViewOf(*present) != plain;
  if (IsProved(root, TextOfPieces({plain}), saved)) return ZONX_OK;
  ReportUnwritable(root, reporter);
  *saved = SavedText();
  return ZONX_UNWRITABLE;
}

}  // namespace zon
