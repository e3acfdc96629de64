// Proves that a pointee is destroyed exactly once, and only by an owner; and that a holder builds
// what it holds before the other bases, and is copied with its object.
#include "core/ownership/Ownership.h"
#include "core/Tracked.h"
#include "core/ownership/Holder.h"

#include <gtest/gtest.h>

#include <utility>

using namespace Lathe::Core;
using Pointer = TOwnership<CTracked>;
using Cloning = TOwnershipWithClone<CTracked>;

TEST(OwnershipTest, DestroysOnlyWhatItOwns) {
    CTracked kept(1);
    {
        Pointer pointer(new CTracked(2));
        pointer.Set(new CTracked(3));
        EXPECT_EQ(CTracked::s_Alive, 2) << "the replaced one is gone";
        pointer.Set(&kept, false);
        EXPECT_EQ(CTracked::s_Alive, 1);
        pointer.Reset();
        EXPECT_TRUE(!pointer && pointer.IsOwned());
        pointer.Set(new CTracked(4));
        pointer.Set(pointer.Get(), true);
        Pointer detached(pointer.Detach());
        EXPECT_TRUE(!pointer && pointer.IsOwned());
        pointer = std::move(detached);
        const Pointer last(std::move(pointer));
        EXPECT_EQ(last->m_Number, 4);
        EXPECT_EQ(CTracked::s_Alive, 2);
    }
    EXPECT_EQ(CTracked::s_Alive, 1);
}

TEST(OwnershipTest, CopiesCloneAndOwn) {
    CTracked shared(5);
    const Cloning unowned(&shared, false), empty;
    Cloning copy(unowned), assigned(new CTracked(1));
    assigned = copy;
    assigned = *&assigned;
    EXPECT_EQ(assigned->m_Number, 5);
    EXPECT_TRUE(copy.IsOwned());
    EXPECT_EQ(CTracked::s_Alive, 3);
    copy = assigned = empty;
    EXPECT_FALSE(copy || assigned || Cloning(empty));
    EXPECT_EQ(CTracked::s_Alive, 1);
}

TEST(HolderTest, TheHeldIsBuiltFirstAndCopiedAlong) {
    struct CReader {
        explicit CReader(const CTracked& source) : m_Seen(source.m_Number) {}
        int m_Seen;
    };
    struct CHolding : THolder<CTracked>, CReader {
        explicit CHolding(int number) : THolder<CTracked>(number), CReader(GetHeld()) {}
        CHolding(const CHolding& other) : THolder<CTracked>(other), CReader(GetHeld()) {}
    };
    CHolding holding(7);
    const CHolding copy(holding);
    holding.GetHeld().m_Number = 8;
    EXPECT_EQ(holding.m_Seen, 7);
    EXPECT_EQ(copy.m_Seen, 7);
    EXPECT_EQ(copy.GetHeld().m_Number, 7);
}
