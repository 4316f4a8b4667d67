// What the exported functions do with handles beyond their public operations. Not installed.
#ifndef ZON_API_ZONHANDLEACCESS_H
#define ZON_API_ZONHANDLEACCESS_H

#include <memory>
#include <utility>

#include "api/zonfilehandle.h"
#include "api/zonloadedfile.h"
#include "api/zonwatch.h"

namespace zon {

struct HandleAccess {
  // The handle of the tree that the node is in; null if the tree has none.
  static CzonData* OfTree(const CzonNode& node);

  // The memory for nodes of the tree. The handle must have a tree.
  static Arena& GetArena(CzonData& data) { return *data.arena_; }

  // Whether a value can be added. Otherwise records a refusal, as AddParam does.
  static bool HasKeyword(CzonData& data) { return data.HasKeyword(); }

  // Whether the handle has a tree, and its load has met no error.
  static bool IsSound(const CzonData& data);

  // What is kept while the file is watched; null while it is not.
  static Watch* GetWatch(const CzonData& data) { return data.watch_.get(); }
  static void SetWatch(CzonData& data, std::unique_ptr<Watch> watch) {
    data.watch_ = std::move(watch);
  }

  // The file of the tree; null for a tree that was built. SetFile notes the file that is loaded.
  static LoadedFile* GetFile(const CzonData& data) { return data.file_.get(); }
  static void SetFile(CzonData& data, std::unique_ptr<LoadedFile> file) {
    data.file_ = std::move(file);
  }
  static void SetFile(CzonData& data, const char* fileName, bool isInMemory);

  // The text that was loaded or last saved; null if there is none.
  static std::shared_ptr<FileText> GetText(const CzonData& data);

  // The handle has a new text, so the parser lets go of the one that it has read.
  static void ReplaceText(CzonData& data, std::shared_ptr<FileText> empty);

  // Hands over the parser after it read the file.
  static void SetParser(CzonLoad& load, std::unique_ptr<CzonParser> parser);
};

// Makes the definition of a code in the arena; null if the code is unknown.
CzonParam* MakeDefinition(char code, Arena& arena);

}  // namespace zon

#endif
