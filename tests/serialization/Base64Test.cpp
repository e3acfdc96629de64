// Base64: the published vectors, the inverse, and the texts that aren't Base64.
#include "serialization/Base64.h"

#include <gtest/gtest.h>

#include <cstring>

namespace Lathe::Serialization::Tests {

TEST(Base64, EncodesPublishedVectorsAndDecodesThem) {
    const char* const vectors[][2] = {{"", ""},
                                      {"f", "Zg=="},
                                      {"fo", "Zm8="},
                                      {"foo", "Zm9v"},
                                      {"foob", "Zm9vYg=="},
                                      {"fooba", "Zm9vYmE="},
                                      {"foobar", "Zm9vYmFy"}};
    for (const auto& [plain, encoded] : vectors) {
        EXPECT_EQ(EncodeBase64(plain, static_cast<int>(std::strlen(plain))), encoded);
        int size = -1;
        const auto decoded = DecodeBase64(encoded, size);
        ASSERT_TRUE(decoded);
        EXPECT_EQ(std::string(decoded.get(), static_cast<std::size_t>(size)), plain);
    }
}

TEST(Base64, DecodesEveryByteAtEveryPlace) {
    std::string bytes;
    for (int i = 0; i < 256 * 3; ++i)
        bytes += static_cast<char>(i * 7 + i / 256);
    for (std::size_t n = bytes.size() - 3; n <= bytes.size(); ++n) {
        const std::string text = EncodeBase64(bytes.data(), static_cast<int>(n));
        EXPECT_EQ(text.size(), (n + 2) / 3 * 4);
        int size = 0;
        const auto decoded = DecodeBase64(text.c_str(), size);
        EXPECT_EQ(std::string(decoded.get(), static_cast<std::size_t>(size)), bytes.substr(0, n));
    }
}

TEST(Base64, RefusesOnlyWrongLengths) {
    int size = 7;
    EXPECT_FALSE(DecodeBase64(nullptr, size));
    for (const char* text : {"a", "ab", "abc", "abcde", "Zm9v="})
        EXPECT_FALSE(DecodeBase64(text, size)) << text;
    EXPECT_EQ(size, 7);
    const struct {
        const char* m_Text;
        int m_Size;
    } odd[] = {{"====", 1}, {"=abc", 3}, {"ab=c", 1}, {"\xFF\x80 \n", 3}, {"====Zm9v", 6}};
    for (const auto& [text, expected] : odd) {
        EXPECT_TRUE(DecodeBase64(text, size)) << text;
        EXPECT_EQ(size, expected) << text;
    }
}

} // namespace Lathe::Serialization::Tests
