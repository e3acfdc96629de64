// Where the user's own files lie, by the environment and the desktop's base folders, and how
// folders are made there.
#pragma once

#include <string>

namespace Lathe::System {

// Both give an absolute path, whether or not there is such a folder yet, and an empty text for a
// user without a home.

// $XDG_CONFIG_HOME, or else ".config" in the home.
std::string GetUserPreferencesFolder();
// $XDG_DOCUMENTS_DIR, or else the folder of that name in "user-dirs.dirs" among the preferences, or
// else "Documents" in the home.
std::string GetUserDocumentsFolder();

// Who can look into a new folder, as far as the process's mask allows.
enum class EFolderAccess { Owner, Everyone };

// Makes the folder of an absolute path with each level that is missing. True when it is there
// afterwards; what was there before keeps its access.
bool CreateFolder(const std::string& path, EFolderAccess access);

} // namespace Lathe::System
