#include "platform/UserFolders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace Lathe::System {

namespace {

using Path = std::filesystem::path;

constexpr const char* DocumentsVariable = "XDG_DOCUMENTS_DIR";

// Without slashes at the end, but for the root's. Empty for a relative path, which would mean
// another folder in each program.
Path GetAbsolute(const Path& path) {
    if (!path.is_absolute())
        return {};
    return path.has_filename() ? path : path.parent_path();
}

Path GetVariable(const char* name) {
    const char* value = std::getenv(name);
    return value ? GetAbsolute(value) : Path();
}

Path GetHomeOfUserDatabase() {
    std::array<char, 16384> buffer;
    passwd entry;
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return {};
    return GetAbsolute(found->pw_dir);
}

Path GetHome() {
    const Path home = GetVariable("HOME");
    return home.empty() ? GetHomeOfUserDatabase() : home;
}

// The base itself may be missing.
Path GetBelow(const Path& base, const char* name) {
    return base.empty() ? Path() : base / name;
}

Path GetPreferences() {
    const Path folder = GetVariable("XDG_CONFIG_HOME");
    return folder.empty() ? GetBelow(GetHome(), ".config") : folder;
}

// Removes the prefix if it is there.
bool Skip(std::string_view& text, std::string_view prefix) {
    if (!text.starts_with(prefix))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

// The folder that a line such as XDG_DOCUMENTS_DIR="$HOME/Papers" gives. Within the quotes, "\"
// takes the next letter as it is. Empty for any other line.
Path ParseDocumentsLine(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (!Skip(line, DocumentsVariable) || !Skip(line, "=\""))
        return {};
    Path base;
    if (Skip(line, "$HOME"))
        base = GetHome();
    else if (line.starts_with('/'))
        base = "/";
    std::string rest;
    for (std::size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && ++i == line.size())
            break;
        rest += line[i];
    }
    if (base.empty() || (!rest.empty() && rest.front() != '/'))
        return {};
    return GetAbsolute(base / Path(rest).relative_path());
}

Path ReadDocumentsFromFile() {
    Path folder;
    std::ifstream file(GetPreferences() / "user-dirs.dirs");
    for (std::string line; std::getline(file, line);)
        if (const Path found = ParseDocumentsLine(line); !found.empty())
            folder = found;
    return folder;
}

bool IsFolder(const Path& path) {
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

bool CreateLevels(const Path& path, mode_t mode) {
    if (IsFolder(path))
        return true;
    const Path parent = path.parent_path();
    if (parent == path || !CreateLevels(parent, mode))
        return false;
    // Another process may have been faster.
    return mkdir(path.c_str(), mode) == 0 || IsFolder(path);
}

} // namespace

std::string GetUserPreferencesFolder() {
    return GetPreferences().string();
}

std::string GetUserDocumentsFolder() {
    Path folder = GetVariable(DocumentsVariable);
    if (folder.empty())
        folder = ReadDocumentsFromFile();
    return (folder.empty() ? GetBelow(GetHome(), "Documents") : folder).string();
}

bool CreateFolder(const std::string& path, EFolderAccess access) {
    return CreateLevels(path, access == EFolderAccess::Owner ? 0700 : 0755);
}

} // namespace Lathe::System
