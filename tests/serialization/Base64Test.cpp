// Base64: the published vectors in both directions, and texts that aren't Base64.
#include "serialization/Base64.h"

#include <gtest/gtest.h>

namespace Lathe::Serialization::Tests {

TEST(Base64, KeepsPublishedVectorsAndRefusesOnlyWrongLengths) {
    const std::pair<std::string, const char*> vectors[] = {
        {"", ""},        {"f", "Zg=="},        {"fo", "Zm8="},
        {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"\xFB\xFF\xBF", "+/+/"}};
    for (const auto& [plain, encoded] : vectors) {
        EXPECT_EQ(EncodeBase64(plain.data(), static_cast<int>(plain.size())), encoded);
        int size = -1;
        const auto decoded = DecodeBase64(encoded, size);
        ASSERT_TRUE(decoded);
        EXPECT_EQ(std::string(decoded.get(), static_cast<std::size_t>(size)), plain);
    }
    const std::pair<const char*, int> sizes[] = {
        {nullptr, -1}, {"a", -1},   {"ab", -1},  {"abcde", -1},      {"Zm9v=", -1},
        {"====", 1},   {"=abc", 3}, {"ab=c", 1}, {"\xFF\x80 \n", 3}, {"====Zm9v", 6}};
    for (const auto& [text, expected] : sizes) {
        int size = -1;
        EXPECT_EQ(DecodeBase64(text, size) != nullptr, expected >= 0);
        EXPECT_EQ(size, expected) << (text ? text : "(null)");
    }
}

} // namespace Lathe::Serialization::Tests
