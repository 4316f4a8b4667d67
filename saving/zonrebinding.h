// After a save, the nodes of a tree have their places in the new text, and the old one can be freed.
//
// The new text was loaded, so for each name and value of the tree there is one of the loaded tree that knows
// its place. Prepare notes all of them and does what can fail; Commit only moves pointers.
// Tested by tests/zonsave_test.cpp and fuzz/save_fuzz.cpp.
#ifndef ZON_SAVING_ZONREBINDING_H
#define ZON_SAVING_ZONREBINDING_H

#include <memory>
#include <string_view>
#include <vector>

#include "api/zonloadedfile.h"
#include "base/zonfiletext.h"

class CzonNamedNode;
class CzonParam;
class CzonTargetList;

namespace zon {

class Arena;

class Rebinding {
 public:
  // `former` is null for a tree that was built.
  Rebinding(std::shared_ptr<FileText> former, std::shared_ptr<FileText> text);

  // `loaded` is what the new text gives: the same as the tree. `file` is what the handle has so far, null
  // for nothing. Throws std::bad_alloc.
  void Prepare(const CzonTargetList& tree, const CzonTargetList& loaded, const LoadedFile* file);

  // Moves the tree to the new text and notes the text in `file`. Cannot fail.
  void Commit(LoadedFile& file);

 private:
  struct Move {
    Text* text;
    const char* origin;
    std::size_t lead;
  };
  struct DeferredMove {
    CzonNamedNode* keyword;
    std::uint32_t begin;
  };

  void AddName(const CzonNamedNode& node, const CzonNamedNode& loaded);
  void AddValues(const CzonNamedNode& keyword, const CzonNamedNode& loaded);
  void AddValue(const CzonParam& value, const CzonParam& loaded);
  void Add(Text& text, const char* origin, std::size_t lead, Arena* arena);
  bool AddDeferred(const CzonNamedNode& keyword, const CzonNamedNode& loaded);

  std::shared_ptr<FileText> former_;
  std::shared_ptr<FileText> text_;
  std::string_view view_;
  const char* oldBegin_ = nullptr;
  const char* oldEnd_ = nullptr;
  std::vector<Move> moves_;
  std::vector<DeferredMove> deferred_;
  std::vector<std::shared_ptr<FileText>> retired_;
  bool isInUse_ = false;  // the host may have a pointer to characters of the former text
  MakeValuesFunction make_ = nullptr;
};

}  // namespace zon

#endif
