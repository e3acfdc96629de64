#include "serialization/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

namespace Lathe::Serialization {

namespace {

namespace fs = std::filesystem;

// The result of a system call, which is made anew when a signal interrupts it.
template <class TCall>
auto Retry(const TCall& call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

class CDescriptor {
public:
    CDescriptor() = default;
    CDescriptor(const char* path, int flags, mode_t mode = 0)
        : m_Number(Retry([&] { return open(path, flags | O_CLOEXEC, mode); })) {}
    CDescriptor(CDescriptor&& other) noexcept : m_Number(std::exchange(other.m_Number, -1)) {}
    CDescriptor& operator=(CDescriptor&&) = delete;
    ~CDescriptor() { Close(); }

    explicit operator bool() const { return m_Number >= 0; }
    int Get() const { return m_Number; }
    // Some file systems report only now that there was no room. The number is free even after an
    // interruption.
    bool Close() {
        return m_Number < 0 || close(std::exchange(m_Number, -1)) == 0 || errno == EINTR;
    }

private:
    int m_Number = -1;
};

bool WriteAll(CDescriptor& file, std::string_view content) {
    while (!content.empty()) {
        const ssize_t count =
            Retry([&] { return write(file.Get(), content.data(), content.size()); });
        if (count <= 0)
            return false;
        content.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool Resize(CDescriptor& file, off_t size) {
    return Retry([&] { return ftruncate(file.Get(), size); }) == 0;
}

// Whether there is room on the disk for bytes behind the end of a file.
bool Reserve(CDescriptor& file, off_t end, off_t count) {
    int error = EINTR;
    while (error == EINTR)
        error = posix_fallocate(file.Get(), end, count);
    return error == 0;
}

// Into a device or a pipe.
bool WriteStream(const char* path, std::string_view content) {
    CDescriptor file(path, O_WRONLY);
    return file && WriteAll(file, content) && file.Close();
}

// Over the bytes of a file, which are left alone when there is no room for the new ones.
bool WriteInPlace(const char* path, std::string_view content, off_t oldSize) {
    CDescriptor file(path, O_WRONLY);
    const auto size = static_cast<off_t>(content.size());
    if (!file)
        return false;
    if (size > oldSize && !Reserve(file, oldSize, size - oldSize)) {
        Resize(file, oldSize); // There may have been room for a part.
        return false;
    }
    return WriteAll(file, content) && Resize(file, size) && file.Close();
}

// Whether the last error was that the folder takes no other file, or lets none be replaced, or that
// its files can't be given a mode.
bool IsFolderClosed() {
    return errno == EACCES || errno == EPERM || errno == EROFS || errno == EBUSY ||
           errno == ENOTSUP || errno == ENOSYS;
}

// The end of a chain of symbolic links, which need not exist; empty for a ring.
fs::path FollowLinks(fs::path path) {
    constexpr int MaxLinks = 40;
    std::error_code error;
    for (int i = 0; i < MaxLinks; ++i) {
        if (!fs::is_symlink(path, error))
            return path;
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return {};
}

// A file that nobody else has, which is removed unless it is renamed.
class CTemporaryFile {
public:
    explicit CTemporaryFile(const fs::path& folder) : m_File(Open(folder)) {}
    CTemporaryFile(const CTemporaryFile&) = delete;
    CTemporaryFile& operator=(const CTemporaryFile&) = delete;
    ~CTemporaryFile() {
        if (!m_Path.empty())
            unlink(m_Path.c_str());
    }

    explicit operator bool() const { return !m_Path.empty(); }
    bool SetMode(mode_t mode) {
        return Retry([&] { return fchmod(m_File.Get(), mode); }) == 0;
    }
    bool Write(std::string_view content) {
        return WriteAll(m_File, content) && Retry([&] { return fsync(m_File.Get()); }) == 0 &&
               m_File.Close();
    }
    bool Rename(const fs::path& path) {
        if (rename(m_Path.c_str(), path.c_str()) != 0)
            return false;
        m_Path.clear();
        return true;
    }

private:
    // The mode of a new file is left to the user's mask. A name that is taken was left by a process
    // that crashed, or belongs to one on another machine.
    CDescriptor Open(const fs::path& folder) {
        static std::atomic<unsigned> s_Number{0};
        constexpr int MaxAttempts = 1000;
        for (int i = 0; i < MaxAttempts; ++i) {
            const unsigned number = s_Number.fetch_add(1, std::memory_order_relaxed);
            fs::path path = folder / (".save-" + std::to_string(getpid()) + "-" +
                                      std::to_string(number) + ".tmp");
            CDescriptor file(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666);
            if (file)
                m_Path = std::move(path);
            if (file || errno != EEXIST)
                return file;
        }
        return {};
    }

    fs::path m_Path;
    CDescriptor m_File;
};

} // namespace

bool ReadFile(const char* path, std::size_t maxSize, std::string& content) {
    content.clear();
    if (!path)
        return false;
    CDescriptor file(path, O_RDONLY);
    // A device may have no end.
    std::array<char, 65536> block;
    ssize_t count = 1;
    while (count > 0 && content.size() <= maxSize) {
        count = Retry([&] { return read(file.Get(), block.data(), block.size()); });
        content.append(block.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    if (count != 0)
        content.clear();
    return count == 0;
}

bool WriteFile(const char* path, std::string_view content) {
    struct stat status {};
    const bool exists = path && stat(path, &status) == 0;
    if (exists && !S_ISREG(status.st_mode))
        return WriteStream(path, content);
    const fs::path target = path ? FollowLinks(path) : fs::path();
    if (target.empty() || (exists && access(path, W_OK) != 0))
        return false;
    CTemporaryFile temporary(target.parent_path());
    if (temporary && (!exists || temporary.SetMode(status.st_mode & 07777))) {
        if (!temporary.Write(content))
            return false;
        if (temporary.Rename(target))
            return true;
    }
    return exists && IsFolderClosed() && WriteInPlace(path, content, status.st_size);
}

} // namespace Lathe::Serialization
