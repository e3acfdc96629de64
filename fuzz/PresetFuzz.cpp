// Bytes as a preset's file.
#include "FuzzedInstance.h"

#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

namespace {

// A file that lies in memory alone.
class CMemoryFile {
public:
    CMemoryFile() : m_File(::memfd_create("preset", MFD_CLOEXEC)) {}
    ~CMemoryFile() { ::close(m_File); }
    CMemoryFile(const CMemoryFile&) = delete;
    CMemoryFile& operator=(const CMemoryFile&) = delete;

    std::string GetPath() const { return "/proc/self/fd/" + std::to_string(m_File); }
    void Write(const std::uint8_t* data, std::size_t size) const {
        if (::ftruncate(m_File, 0) != 0 ||
            ::pwrite(m_File, data, size, 0) != static_cast<ssize_t>(size))
            std::abort();
    }

private:
    int m_File;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const CMemoryFile file;
    static CairnFuzz::CFuzzedInstance instance;
    file.Write(data, size);
    instance.LoadPreset(file.GetPath());
    instance.Check();
    return 0;
}
