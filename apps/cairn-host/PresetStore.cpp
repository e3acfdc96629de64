#include "cairn-host/PresetStore.h"

#include "cairn-host/HostInstance.h"
#include "cairn-host/WholeFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdlib.h>

namespace CairnHost {
namespace {

namespace fs = std::filesystem;

// A new folder that goes away with all in it.
class CScratchFolder {
public:
    CScratchFolder() {
        std::error_code ignored;
        std::string name = (fs::temp_directory_path(ignored) / "cairn-host-XXXXXX").string();
        if (::mkdtemp(name.data()))
            m_Path = name;
    }
    ~CScratchFolder() {
        std::error_code ignored;
        if (!m_Path.empty())
            fs::remove_all(m_Path, ignored);
    }
    CScratchFolder(const CScratchFolder&) = delete;
    CScratchFolder& operator=(const CScratchFolder&) = delete;

    // Empty when it couldn't be made; errno tells why.
    const fs::path& GetPath() const { return m_Path; }

private:
    fs::path m_Path;
};

// The plug-in takes absolute paths: its current folder need not be the host's.
std::string MakeAbsolute(const std::string& path) {
    std::error_code ignored;
    return fs::absolute(path, ignored).string();
}

} // namespace

CStatus LoadPreset(CHostInstance& instance, const std::string& path) {
    std::error_code ignored;
    if (fs::exists(path, ignored) && !fs::is_directory(path, ignored) &&
        !fs::is_regular_file(path, ignored))
        return SFault{path + ": is a device or a pipe: expected a file"};
    // Only what can be read as a file reaches the plug-in, whose message can't tell as much.
    if (const TResult<std::string> bytes = ReadWholeFile(path); !bytes)
        return bytes.GetFault();
    const std::string absolute = MakeAbsolute(path);
    const TResult<std::string> loaded = instance.Command("load-preset", absolute);
    if (loaded)
        return {};
    std::string why = loaded.GetFault().m_Text;
    if (why.starts_with(absolute + ": "))
        why.erase(0, absolute.size() + 2);
    return SFault{path + ": can't be loaded: " + why};
}

TResult<std::string> StorePreset(CHostInstance& instance, const std::string& path) {
    const CScratchFolder folder;
    if (folder.GetPath().empty())
        return SFault{path + ": no temporary folder: " + std::strerror(errno)};
    const std::string scratch = (folder.GetPath() / fs::path(path).filename()).string();
    const TResult<std::string> saved = instance.Command("save-preset", scratch);
    if (!saved)
        return SFault{path + ": can't be saved: " + saved.GetFault().m_Text};
    return ReadWholeFile(scratch);
}

} // namespace CairnHost
