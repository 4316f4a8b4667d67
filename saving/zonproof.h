// Proves that a text gives a tree, and notes where the names and values of the tree are in it.
//
// The text is read item by item beside the tree, without a tree of its own. Most texts of the tree
// are in the former text, outside of what was edited, so their new places follow from the edits;
// places are noted only for the others. Move changes pointers alone: it cannot fail after the file
// was replaced.
// Tested by tests/zonsave_test.cpp and fuzz/save_fuzz.cpp.
#ifndef ZON_SAVING_ZONPROOF_H
#define ZON_SAVING_ZONPROOF_H

#include <memory>
#include <string_view>
#include <vector>

#include "api/zonloadedfile.h"
#include "base/zonfiletext.h"
#include "reader/zonitembuilder.h"
#include "saving/zonplainlist.h"
#include "saving/zonsavedtree.h"
#include "saving/zontextedits.h"

class CzonParam;

namespace zon {

class Arena;

class Proof : public ItemVisitor {
 public:
  // `former`: the text that the tree was loaded from, null for none. `edits`: those that made
  // `text` of it, applied; null if the text was made otherwise.
  Proof(const CzonTargetList& root, std::shared_ptr<FileText> former, const TextEdits* edits,
        std::shared_ptr<FileText> text);

  // Whether the text gives the tree. `file`: what is known of the former text, null for nothing.
  // Throws std::bad_alloc; the tree is the same in any case.
  bool Run(const LoadedFile* file);

  // Moves the tree to the new text, after Run has succeeded. Cannot fail. `file` then has the text,
  // and the former one if the host may have a pointer into it.
  void Move(LoadedFile& file);

  const std::shared_ptr<FileText>& GetText() const { return text_; }

  void OpenSection(const CzonNamedNode& header) override;
  void VisitLine(const CzonNamedNode& line, const char* end) override;
  void CloseSection(const char* begin, const char* end) override;

 private:
  // A section that is open, and the next of its parts.
  struct Level {
    SectionParts parts;
    std::size_t line = 0;
    std::size_t section = 0;
  };
  struct NewPlace {
    Text* text;
    const char* origin;
    std::size_t lead;
  };
  struct NewDeferral {
    CzonNamedNode* keyword;
    std::uint32_t begin;
  };
  struct Position {
    const CzonNamedNode* node;
    std::uint32_t next;
  };

  void NoteNames(const CzonNamedNode& node, const CzonNamedNode& loaded);
  void NoteValues(const CzonNamedNode& keyword, const CzonNamedNode& loaded);
  bool NotePlainList(const CzonNamedNode& keyword, const CzonNamedNode& loaded);
  bool NoteDeferred(const CzonNamedNode& keyword, const CzonNamedNode& loaded);
  void NotePlace(Text& text, const char* origin, std::size_t lead, Arena* arena);
  const char* MovedPlace(const char* place) const;
  void MoveAll();
  void MoveNode(CzonNamedNode& node);
  void MoveText(Text& text, std::size_t lead);

  const CzonTargetList& root_;
  std::shared_ptr<FileText> former_;
  const TextEdits* edits_;
  std::shared_ptr<FileText> text_;
  std::string_view oldView_;
  std::string_view newView_;
  std::vector<Level> levels_;
  std::size_t deepest_ = 1;
  bool isSame_ = true;
  bool hasRepeated_ = false;
  bool hasDeclared_ = false;
  bool isInUse_ = false;  // the host may have a pointer to characters of the former text
  std::vector<NewPlace> places_;
  PlainListMatch listMatch_;  // of the present line
  std::vector<NewDeferral> deferrals_;
  std::vector<Position> path_;
  std::vector<std::shared_ptr<FileText>> retired_;
  DeferralSource* deferral_ = nullptr;
  MakeValuesFunction make_ = nullptr;
};

}  // namespace zon

#endif
