// Files are replaced whole or not at all, and stay what they are: their mode, their links.
#include "serialization/AtomicFile.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <random>
#include <thread>

namespace Lathe::Serialization::Tests {

namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

struct CAtomicFile : testing::Test {
    CAtomicFile() { fs::create_directory(m_Folder); }
    ~CAtomicFile() override {
        fs::permissions(m_Folder, fs::perms::owner_all);
        fs::remove_all(m_Folder);
    }
    std::string Path(const char* name) const { return m_Folder / name; }
    std::string Read(const char* name) const {
        std::string content;
        return ReadFile(Path(name).c_str(), 1 << 30, content) ? content : "(missing)";
    }
    bool Write(const char* name, std::string_view content) const {
        return WriteFile(Path(name).c_str(), content);
    }
    // Temporary files that are left count too.
    auto GetFileCount() const { return std::distance(fs::directory_iterator(m_Folder), {}); }
    fs::path m_Folder =
        fs::path(testing::TempDir()) / ("files " + std::to_string(std::random_device{}()));
};

// Writes more than there is room for on the disk.
bool WriteTooMuch(const std::string& path) {
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{100, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    const bool written = WriteFile(path.c_str(), std::string(101, 'x'));
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    return written;
}

} // namespace

TEST_F(CAtomicFile, IsReplacedAndKeepsItsModeAndItsLinks) {
    EXPECT_TRUE(Write("file", "old") && Read("file") == "old");
    fs::permissions(Path("file"), fs::perms(0640));
    fs::create_symlink("link", Path("first"));
    fs::create_symlink(Path("file"), Path("link"));
    fs::create_symlink("absent", Path("dangling"));
    fs::create_symlink("ring", Path("ring"));
    EXPECT_TRUE(Write("first", "n\0w"sv) && Write("dangling", ""));
    EXPECT_TRUE(Read("file") == "n\0w"sv && Read("absent").empty());
    EXPECT_EQ(fs::status(Path("file")).permissions(), fs::perms(0640));
    EXPECT_TRUE(fs::is_symlink(Path("first")) && fs::is_symlink(Path("dangling")));
    EXPECT_FALSE(Write("ring", "x") || Write(".", "x") || Write("missing/file", "x") ||
                 WriteFile(nullptr, "x") || WriteFile("", "x"));
    std::string content;
    EXPECT_FALSE(ReadFile(m_Folder.c_str(), 9, content) || ReadFile(nullptr, 9, content) ||
                 ReadFile(Path("file").c_str(), 2, content) || !content.empty());
    EXPECT_FALSE(WriteTooMuch(Path("file")) || WriteTooMuch(Path("new")));
    EXPECT_EQ(Read("file"), "n\0w"sv);
    EXPECT_EQ(GetFileCount(), 6);
}

TEST_F(CAtomicFile, IsWrittenDirectlyWhereNothingCanReplaceIt) {
    std::array<int, 2> ends;
    ASSERT_EQ(pipe(ends.data()), 0);
    EXPECT_TRUE(WriteFile(("/dev/fd/" + std::to_string(ends[1])).c_str(), "pipe"));
    close(ends[1]);
    std::array<char, 8> bytes{};
    EXPECT_EQ(read(ends[0], bytes.data(), bytes.size()), 4);
    close(ends[0]);
    if (geteuid() == 0)
        GTEST_SKIP() << "Permissions don't bind this user.";
    ASSERT_TRUE(Write("file", "old") && Write("protected", "old"));
    fs::permissions(Path("protected"), fs::perms::owner_read);
    EXPECT_FALSE(Write("protected", "new"));
    fs::permissions(m_Folder, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_FALSE(WriteTooMuch(Path("file")) || Write("another", "x"));
    EXPECT_EQ(Read("file"), "old");
    EXPECT_TRUE(Write("file", "new, and longer") && Write("file", "new"));
    EXPECT_EQ(Read("file") + Read("protected"), "newold");
}

TEST_F(CAtomicFile, IsWholeForAReaderAmongWriters) {
    const std::string contents[] = {std::string(100'000, 'a'), std::string(200'000, 'b')};
    ASSERT_TRUE(Write("file", contents[0]));
    std::atomic<int> running{2};
    const auto write = [&](int content) {
        for (int i = 0; i < 20; ++i)
            EXPECT_TRUE(Write("file", contents[content]));
        --running;
    };
    const std::jthread first(write, 0), second(write, 1);
    for (std::string content = contents[0]; running > 0; content = Read("file"))
        EXPECT_TRUE(content == contents[0] || content == contents[1]);
    EXPECT_EQ(GetFileCount(), 1);
}

} // namespace Lathe::Serialization::Tests
