// What the exported functions do with handles beyond their public operations. Not installed.
#ifndef ZON_API_ZONHANDLEACCESS_H
#define ZON_API_ZONHANDLEACCESS_H

#include <memory>
#include <utility>

#include "api/zonfilehandle.h"
#include "api/zonwatch.h"

namespace zon {

struct HandleAccess {
  // The memory for nodes of the tree. The handle must have a tree.
  static Arena& GetArena(CzonData& data) { return *data.arena_; }

  // Whether a value can be added. Otherwise records a refusal, as AddParam does.
  static bool HasKeyword(CzonData& data) { return data.HasKeyword(); }

  // What is kept while the file is watched; null while it is not.
  static Watch* GetWatch(const CzonData& data) { return data.watch_.get(); }
  static void SetWatch(CzonData& data, std::unique_ptr<Watch> watch) {
    data.watch_ = std::move(watch);
  }

  // Hands over the parser after it read the file.
  static void SetParser(CzonLoad& load, std::unique_ptr<CzonParser> parser) {
    load.SetParser(std::move(parser));
  }
};

// Makes the definition of a code in the arena; null if the code is unknown.
CzonParam* MakeDefinition(char code, Arena& arena);

}  // namespace zon

#endif
