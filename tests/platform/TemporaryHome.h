// A home that goes away with its test, so that no test reaches the files of whoever runs it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdlib.h>
#include <string>

// Sets an environment variable, or removes it, and puts back what it was. For tests while they have
// one thread.
class CEnvironmentVariable {
public:
    CEnvironmentVariable(const char* name, std::optional<std::string> value) : m_Name(name) {
        if (const char* before = ::getenv(name))
            m_Before = before;
        Set(value);
    }
    ~CEnvironmentVariable() { Set(m_Before); }
    CEnvironmentVariable(const CEnvironmentVariable&) = delete;
    CEnvironmentVariable& operator=(const CEnvironmentVariable&) = delete;

private:
    void Set(const std::optional<std::string>& value) const {
        value ? ::setenv(m_Name, value->c_str(), 1) : ::unsetenv(m_Name);
    }

    const char* m_Name;
    std::optional<std::string> m_Before;
};

// The preferences lie in its folder "config", the documents in "documents"; neither is there yet.
class CTemporaryHome {
public:
    ~CTemporaryHome() { std::filesystem::remove_all(m_Folder); }

    std::string In(const std::string& name) const { return m_Folder + "/" + name; }
    // Makes the folders that are missing.
    void Write(const std::string& name, const std::string& bytes) const {
        std::filesystem::create_directories(std::filesystem::path(In(name)).parent_path());
        std::ofstream(In(name), std::ios::binary) << bytes;
    }
    std::string Read(const std::string& name) const {
        std::ifstream file(In(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    static std::string MakeFolder() {
        const auto base = std::filesystem::canonical(std::filesystem::temp_directory_path());
        std::string name = (base / "home-XXXXXX").string();
        return ::mkdtemp(name.data()) ? name : throw std::filesystem::filesystem_error(name, {});
    }

    std::string m_Folder = MakeFolder();
    CEnvironmentVariable m_Home{"HOME", m_Folder};
    CEnvironmentVariable m_Preferences{"XDG_CONFIG_HOME", In("config")};
    CEnvironmentVariable m_Documents{"XDG_DOCUMENTS_DIR", In("documents")};
};
