// Proves the rounding of a circular buffer's size, and that an index wraps on both sides.
#include "core/containers/CircularBuffer.h"

#include <gtest/gtest.h>

TEST(CircularBufferTest, SizeIsAPowerOfTwoAndIndicesWrap) {
    const int cases[][2] = {{0, 1}, {1, 2}, {2, 2}, {3, 4}, {4, 4}, {100, 128}, {129, 256}};
    for (const auto& [asked, size] : cases) {
        Lathe::Containers::TCircularBuffer<int> buffer;
        buffer.SetSize(asked);
        ASSERT_EQ(buffer.GetSize(), size) << asked;
        EXPECT_EQ(buffer.GetMask(), size - 1) << asked;
        for (int i = 0; i < size; ++i)
            buffer[i] = i;
        buffer.SetSize(size == 1 ? 0 : size); // Rounds to the present size: the block stays.
        for (int i = -2 * size; i < 2 * size; ++i)
            ASSERT_EQ(buffer[i], (i + 2 * size) % size);
    }
}
