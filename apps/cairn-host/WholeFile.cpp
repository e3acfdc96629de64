#include "cairn-host/WholeFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace CairnHost {
namespace {

constexpr std::size_t s_MaxSize = std::size_t{64} << 20;

} // namespace

TResult<std::string> ReadWholeFile(const std::string& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        return SFault{path + ": is a folder: expected a file"};
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return SFault{path + ": can't be read: " + std::strerror(errno)};
    std::string bytes;
    char piece[4096];
    while (file.read(piece, sizeof piece), file.gcount() > 0) {
        bytes.append(piece, static_cast<std::size_t>(file.gcount()));
        if (bytes.size() > s_MaxSize)
            return SFault{path + ": is larger than 64 MiB"};
    }
    if (file.bad())
        return SFault{path + ": can't be read: " + std::strerror(errno)};
    return bytes;
}

} // namespace CairnHost
