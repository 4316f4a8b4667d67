// Where the results of a parameter file go.
#ifndef ZON_PATHS_ZONRESULTFOLDER_H
#define ZON_PATHS_ZONRESULTFOLDER_H

#include <string>
#include <string_view>

#include "tree/zonsection.h"

namespace zon {

// Reads the environment variable VXRESULTFOLDERTEMPLATE. Compatibility: it is read for each result
// folder, whichever rule gives it, and its value is not used.
void ReadFolderTemplate();

// The folder that belongs to a parameter file: its name, with a '/' in front if there is none in
// it, and " - Result Files/".
std::string ResultSubFolder(std::string_view anchor);

// The result folder of the file of this root, when the custom folder is not in use: by the result
// root, or else by the place of the parameter file and the working directory.
std::string ResultFolderByRoot(const CzonTargetList& root);
std::string ResultFolderByAnchor(const std::string& anchor);

}  // namespace zon

#endif
