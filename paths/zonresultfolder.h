// The folder for the results of a parameter file, and where the file has its settings.
#ifndef ZON_PATHS_ZONRESULTFOLDER_H
#define ZON_PATHS_ZONRESULTFOLDER_H

#include <string>
#include <string_view>

#include "tree/zonsection.h"

namespace zon {

// The section of a file that has its result settings, and the keywords in it.
constexpr char kSettingsSection[] = "SYSTEM";
constexpr char kResultRootSetting[] = "ResultRootFolder";
constexpr char kUseCustomSetting[] = "UseCustomResultFolder";
constexpr char kCustomFolderSetting[] = "CustomResultFolder";

// Returns the first value of the first keyword of that name; null if there is none, or no section.
CzonParam* FindSetting(const CzonSection* settings, const char* name);

// Reads the environment variable VXRESULTFOLDERTEMPLATE. Compatibility: it is read for each result
// folder, whichever rule determines it, and its value is not used.
void ReadFolderTemplate();

// Returns the name of the parameter file and " - Result Files/", with a '/' before it if the name
// has none.
std::string ResultSubFolder(std::string_view anchor);

// Return the result folder of a file without a custom folder: by its result root, and if it has
// none, by the name of the parameter file and the working directory.
std::string ResultFolderByRoot(const CzonTargetList& root);
std::string ResultFolderByAnchor(const std::string& anchor);

}  // namespace zon

#endif
