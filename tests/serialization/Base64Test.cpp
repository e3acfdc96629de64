// Base64: what the alphabet and the padding give, and texts that aren't Base64.
#include "serialization/Base64.h"

#include <gtest/gtest.h>

namespace Lathe::Serialization::Tests {

TEST(Base64, KeepsPublishedVectorsAndRefusesOnlyWrongLengths) {
    EXPECT_EQ(EncodeBase64("foobar", 4), "Zm9vYg==");
    EXPECT_EQ(EncodeBase64("foobar", 5), "Zm9vYmE=");
    EXPECT_EQ(EncodeBase64("\xFB\xFF\xBF", 3), "+/+/");
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
