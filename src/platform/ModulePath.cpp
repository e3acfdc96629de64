#include "platform/ModulePath.h"

#include <dlfcn.h>
#include <link.h>

#include <filesystem>
#include <system_error>

namespace Lathe::System {

namespace {

// Empty when there is no such file.
std::string Resolve(const char* path) {
    std::error_code error;
    return std::filesystem::canonical(path, error).string();
}

} // namespace

std::string GetModulePath(const void* address) {
    Dl_info info;
    void* map = nullptr;
    std::string path;
    // The loader's entry of the executable has no name. The name that dladdr gives instead is the
    // one it was called by, which may be that of another file.
    if (dladdr1(address, &info, &map, RTLD_DL_LINKMAP) && map)
        path = Resolve(static_cast<const link_map*>(map)->l_name);
    return path.empty() ? Resolve("/proc/self/exe") : path;
}

} // namespace Lathe::System
