// A file that appears under its name only when it is complete.
#pragma once

#include "cairn-host/Result.h"

#include <cstddef>
#include <cstdint>

namespace CairnHost {

// Everything goes to a hidden file beside the target, which takes the target's name at the very
// end; so the target can be a file that is still being read. A target that isn't an ordinary file,
// such as a device, is written to directly. Without Commit the destructor removes what was written.
class COutputFile {
public:
    COutputFile() = default;
    ~COutputFile() { Discard(); }
    COutputFile(const COutputFile&) = delete;
    COutputFile& operator=(const COutputFile&) = delete;

    CStatus Open(const std::string& path);
    // False once a write or a seek has failed; Commit then says why.
    bool Write(const void* data, std::size_t size);
    bool Seek(std::int64_t position);
    std::int64_t GetPosition() const { return m_Position; }
    std::int64_t GetLength() const { return m_Length; }
    bool HasFailed() const { return m_Error != 0; }
    // The first thing that went wrong, by the name that the user gave.
    SFault GetFault() const;
    // Closes the file and gives it its name; on any failure so far the target stays as it was.
    CStatus Commit();
    void Discard();

private:
    CStatus Fail(int error);

    std::string m_Path;
    std::string m_Target;
    // Empty when the target is written to directly.
    std::string m_Temporary;
    int m_Descriptor = -1;
    int m_Error = 0;
    std::int64_t m_Position = 0;
    std::int64_t m_Length = 0;
};

} // namespace CairnHost
