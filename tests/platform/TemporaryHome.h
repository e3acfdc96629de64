// A home that goes away with its test, so that no test reaches the files of whoever runs it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdlib.h>
#include <string>

// No value removes it. For tests while they have one thread.
inline void SetVariable(const char* name, const std::optional<std::string>& value) {
    value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
}

// The preferences lie in its folder "config", the documents in "documents"; neither is there yet.
// The environment goes on naming it when it is gone.
class CTemporaryHome {
public:
    CTemporaryHome() {
        if (!::mkdtemp(m_Folder.data()))
            throw std::filesystem::filesystem_error(m_Folder, {});
        SetVariable("HOME", m_Folder);
        SetVariable("XDG_CONFIG_HOME", In("config"));
        SetVariable("XDG_DOCUMENTS_DIR", In("documents"));
    }
    CTemporaryHome(const CTemporaryHome&) = delete;
    ~CTemporaryHome() { std::filesystem::remove_all(m_Folder); }

    std::string In(const std::string& name) const { return m_Folder + "/" + name; }
    // Makes the folders that are missing.
    void Write(const std::string& name, const std::string& bytes = {}) const {
        std::filesystem::create_directories(std::filesystem::path(In(name)).parent_path());
        std::ofstream(In(name), std::ios::binary) << bytes;
    }

private:
    std::string m_Folder =
        std::filesystem::canonical(std::filesystem::temp_directory_path()) / "home-XXXXXX";
};
