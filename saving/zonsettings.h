// What a save changes in a tree before it is written: the section with the result settings, and
// file names that go to another folder. Tested by tests/zonsave_test.cpp.
#ifndef ZON_SAVING_ZONSETTINGS_H
#define ZON_SAVING_ZONSETTINGS_H

#include <string>

#include "api/zonloadedfile.h"
#include "saving/zontreechanges.h"

class CzonTargetList;

namespace zon {

// If the host has changed the result settings of the root, which were `former`: brings the section
// SYSTEM to them; adds it if it is missing. `fileName` is the file that relative names are resolved
// against.
void UpdateSettings(CzonTargetList& root, const ResultSettings& former, const std::string& fileName,
                    TreeChanges& changes);

// Rewrites relative file names, which are relative to the folder of `from`, so that in the file
// `to` they have the same target.
void MoveFilenames(CzonTargetList& root, const std::string& from, const std::string& to,
                   TreeChanges& changes);

}  // namespace zon

#endif
