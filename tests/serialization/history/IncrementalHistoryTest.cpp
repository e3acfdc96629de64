// The undo history against a plain list of whole snapshots: what is restored, what is written on
// the way, which events are raised, and what the states cost.
#include "serialization/history/IncrementalHistoryManager.h"

#include "core/Fixtures.h"
#include "serialization/ObjectProbe.h"
#include "serialization/Streams.h"
#include "support/AllocationCounter.h"

#include <algorithm>

namespace Lathe::Serialization::Tests {

namespace {

using Values = std::vector<int>;

struct SState {
    Values m_Values;
    int m_WriteCount = 0;
    bool m_WasIncremental = false;
    std::function<void()> m_OnRead = [] {};
};

// One value, and two nested objects with all that are below it in a binary tree.
struct CNode : ISerializable {
    CNode(SState& state, std::size_t index) : m_State(state), m_Index(index) {}
    bool Serialize(IWriteDataStream& output) const override {
        bool result = WriteValue(output, "value", m_State.m_Values[m_Index]);
        for (const CNode& child : GetChildren())
            result &= output.WriteObject(child.m_Index % 2 ? "left" : "right", child);
        return result;
    }
    bool DeSerialize(const IReadDataStream& input) override {
        int value = -1;
        if (input.ReadInt("value", &value) || !input.IsIncremental()) {
            m_State.m_Values[m_Index] = value;
            ++m_State.m_WriteCount;
        }
        if (m_Index == 0) // The rest is still to be read.
            m_State.m_OnRead();
        for (CNode& child : GetChildren())
            EXPECT_TRUE(ReadObjectOrKeep(input, child.m_Index % 2 ? "left" : "right", child));
        m_State.m_WasIncremental = input.IsIncremental(); // At last that of the outermost.
        return true;
    }
    std::vector<CNode> GetChildren() const {
        const std::size_t left = 2 * m_Index + 1;
        if (left >= m_State.m_Values.size())
            return {};
        return {CNode(m_State, left), CNode(m_State, left + 1)};
    }
    SState& m_State;
    std::size_t m_Index;
};

struct CHistoryTest : testing::Test {
    CHistoryTest() {
        m_History.GetCanUndoChanged().AddCommand(m_OnUndo);
        m_History.GetCanRedoChanged().AddCommand(m_OnRedo);
        m_History.GetStateRecorded().AddCommand(m_OnRecorded);
    }
    void Record(int value) {
        m_State.m_Values[0] = value;
        m_History.RecordState();
    }
    std::string m_Events;
    CActionCommand m_OnUndo{[this] { m_Events += "undo "; }};
    CActionCommand m_OnRedo{[this] { m_Events += "redo "; }};
    CActionCommand m_OnRecorded{[this] { m_Events += "recorded "; }};
    SState m_State{Values(15)};
    CNode m_Target{m_State, 0};
    CIncrementalHistoryManager m_History{&m_Target};
};

} // namespace

TEST_F(CHistoryTest, DoesAsAListOfSnapshotsDoesAndWritesOnlyWhatDiffers) {
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    std::mt19937 random(GetSeed());
    std::vector<Values> snapshots;
    std::size_t current = 0;
    const auto canUndo = [&] { return current > 0; };
    const auto canRedo = [&] { return current + 1 < snapshots.size(); };
    m_History.SetMaxSteps(12);
    for (int round = 0; round < 10'000; ++round) {
        SCOPED_TRACE(round);
        const unsigned action = random() % 64;
        for (int& value : m_State.m_Values)
            if (action % 8 == 0) // A step that changes all is read as a full stream.
                value = (value + 1) % 3;
            else if (action < 24 && random() % 8 == 0)
                value = static_cast<int>(random() % 3);
        Values expected = m_State.m_Values;
        const bool couldUndo = canUndo(), couldRedo = canRedo();
        const bool undo = action<44, incremental = random() % 4> 0;
        std::string events;
        m_State.m_WriteCount = 0;
        if (action < 24) {
            const bool update = action < 4;
            update ? m_History.UpdateCurrentState() : m_History.RecordState();
            if (update && !snapshots.empty())
                snapshots[current] = expected;
            else if (snapshots.empty() || snapshots[current] != expected) {
                snapshots.resize(snapshots.empty() ? 0 : current + 1);
                snapshots.push_back(expected);
                if (snapshots.size() > 12)
                    snapshots.erase(snapshots.begin());
                current = snapshots.size() - 1;
                events = "recorded ";
            }
        } else if (action < 63) {
            m_History.SetIncremental(incremental);
            undo ? m_History.Undo() : m_History.Redo();
            if (undo ? couldUndo : couldRedo) {
                const Values &from = snapshots[current],
                             &to = snapshots[undo ? --current : ++current];
                int writeCount = 0;
                for (std::size_t i = 0; i < to.size(); ++i)
                    if (from[i] != to[i] || !incremental) {
                        expected[i] = to[i];
                        ++writeCount;
                    }
                ASSERT_EQ(m_State.m_WriteCount, writeCount);
                ASSERT_EQ(m_State.m_WasIncremental, writeCount < std::ssize(to));
            }
        } else {
            m_History.Clear();
            snapshots.clear();
            current = 0;
        }
        ASSERT_EQ(m_State.m_Values, expected);
        ASSERT_TRUE(m_History.CanUndo() == canUndo() && m_History.CanRedo() == canRedo());
        const std::string undoEvent = couldUndo != canUndo() ? "undo " : "";
        const std::string redoEvent = couldRedo != canRedo() ? "redo " : "";
        events += undo ? undoEvent + redoEvent : redoEvent + undoEvent;
        ASSERT_EQ(std::exchange(m_Events, ""), events);
    }
}

TEST_F(CHistoryTest, KeepsAsManyStatesAsItIsTold) {
    int value = 0;
    for (const int maxSteps : {128, 3, 1, 0}) { // At last the oldest is the one just recorded.
        m_History.SetMaxSteps(maxSteps);
        for (int step = 0; step < 129; ++step)
            Record(++value);
        for (int step = 1; step < maxSteps; ++step)
            m_History.Undo();
        EXPECT_EQ(m_State.m_Values[0], value - std::max(maxSteps - 1, 0));
        EXPECT_FALSE(m_History.CanUndo());
        m_History.UpdateCurrentState(); // The state before it is gone.
        while (m_History.CanRedo())
            m_History.Redo();
    }
    CIncrementalHistoryManager(nullptr).UpdateCurrentState();
}

// A target whose listeners take a restored value for an edit, and then for the end of all.
TEST_F(CHistoryTest, OutlivesCallsFromWithinARestore) {
    m_History.SetMaxSteps(2);
    for (const bool incremental : {true, false})
        for (const bool clears : {false, true}) {
            m_History.SetIncremental(incremental);
            m_State.m_OnRead = [&] { clears ? m_History.Clear() : (Record(3), Record(4)); };
            Record(1);
            Record(2);
            m_History.Undo();
            EXPECT_EQ(m_State.m_Values[0], clears ? 1 : 4);
            EXPECT_EQ(m_History.CanUndo(), !clears);
            EXPECT_FALSE(m_History.CanRedo());
        }
}

// As many values as the state of a plug-in has, and more objects.
TEST(IncrementalHistory, CostsLittleForSmallSteps) {
    SState state{Values(285)};
    CNode target(state, 0);
    CIncrementalHistoryManager history(&target);
    const CAllocationScope scope;
    for (std::size_t step = 0; step < 129; ++step) {
        ++state.m_Values[step * 7 % 285];
        history.RecordState();
    }
    const long long held = scope.GetHeldBytes();
    EXPECT_LT(held, 400'000);
    history.RecordState();
    EXPECT_EQ(scope.GetHeldBytes(), held);
}

} // namespace Lathe::Serialization::Tests
