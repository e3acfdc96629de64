#include "cairn-host/OutputFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace CairnHost {
namespace {

constexpr int s_MaxAttempts = 100;
constexpr int s_NewFileMode = 0666; // The user's mask takes away from it.

} // namespace

CStatus COutputFile::Open(const std::string& path) {
    Discard();
    m_Path = path;
    m_Error = 0;
    m_Position = 0;
    m_Length = 0;
    if (path.empty())
        return Fail(ENOENT);

    namespace fs = std::filesystem;
    std::error_code error; // Not finding the path is no failure.
    const fs::file_status status = fs::status(path, error);
    if (fs::is_directory(status))
        return Fail(EISDIR);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        m_Descriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
        return m_Descriptor >= 0 ? CStatus() : Fail(errno);
    }
    if (fs::exists(status) && ::access(path.c_str(), W_OK) != 0)
        return Fail(errno); // The folder would let a write-protected file be replaced.

    // What a link points to is replaced, not the link.
    fs::path target = path;
    if (fs::exists(status)) {
        target = fs::canonical(path, error);
        if (error)
            return Fail(error.value());
    }
    m_Target = target.string();
    for (int attempt = 0; attempt < s_MaxAttempts; ++attempt) {
        const fs::path temporary = target.parent_path() / (".cairn-" + std::to_string(::getpid()) +
                                                           "-" + std::to_string(attempt) + ".part");
        m_Descriptor =
            ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, s_NewFileMode);
        if (m_Descriptor >= 0) {
            m_Temporary = temporary.string();
            // As far as the file system keeps permissions, those of the old file stay.
            if (fs::exists(status))
                fs::permissions(temporary, status.permissions(), error);
            return {};
        }
        if (errno != EEXIST)
            break;
    }
    return Fail(errno);
}

bool COutputFile::Write(const void* data, std::size_t size) {
    const char* bytes = static_cast<const char*>(data);
    while (size > 0 && m_Error == 0) {
        const ssize_t written = ::write(m_Descriptor, bytes, size);
        if (written < 0) {
            if (errno != EINTR)
                m_Error = errno;
            continue;
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
        m_Position += written;
        m_Length = std::max(m_Length, m_Position);
    }
    return m_Error == 0;
}

bool COutputFile::Seek(std::int64_t position) {
    if (m_Error != 0)
        return false;
    if (::lseek(m_Descriptor, position, SEEK_SET) < 0)
        m_Error = errno;
    else
        m_Position = position;
    return m_Error == 0;
}

SFault COutputFile::GetFault() const {
    return SFault{m_Path + ": can't be written: " + std::strerror(m_Error)};
}

CStatus COutputFile::Commit() {
    if (m_Error == 0 && ::close(std::exchange(m_Descriptor, -1)) != 0)
        m_Error = errno;
    if (m_Error == 0 && !m_Temporary.empty()) {
        if (std::rename(m_Temporary.c_str(), m_Target.c_str()) != 0)
            m_Error = errno;
        else
            m_Temporary.clear();
    }
    Discard();
    return m_Error == 0 ? CStatus() : CStatus(GetFault());
}

void COutputFile::Discard() {
    if (m_Descriptor >= 0)
        ::close(std::exchange(m_Descriptor, -1));
    if (!m_Temporary.empty())
        ::unlink(m_Temporary.c_str());
    m_Temporary.clear();
}

CStatus COutputFile::Fail(int error) {
    m_Error = error;
    return GetFault();
}

} // namespace CairnHost
