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

// One value, and two nested objects with all that are below it in a binary tree.
class CNode : public ISerializable {
public:
    CNode(Values& values, int& writeCount, std::size_t index)
        : m_Values(values), m_WriteCount(writeCount), m_Index(index) {}

    bool Serialize(IWriteDataStream& output) const override {
        bool result = WriteValue(output, "value", m_Values[m_Index]);
        for (std::size_t i = 2 * m_Index + 1; i <= 2 * m_Index + 2 && i < m_Values.size(); ++i)
            result &= output.WriteObject(GetName(i), CNode(m_Values, m_WriteCount, i));
        return result;
    }
    bool DeSerialize(const IReadDataStream& input) override {
        int value = -1;
        if (input.ReadInt("value", &value) || !input.IsIncremental()) {
            m_Values[m_Index] = value;
            ++m_WriteCount;
        }
        bool result = true;
        for (std::size_t i = 2 * m_Index + 1; i <= 2 * m_Index + 2 && i < m_Values.size(); ++i) {
            CNode node(m_Values, m_WriteCount, i);
            result &= ReadObjectOrKeep(input, GetName(i), node);
        }
        return result;
    }

private:
    static const char* GetName(std::size_t index) { return index % 2 ? "left" : "right"; }

    Values& m_Values;
    int& m_WriteCount;
    std::size_t m_Index;
};

struct CTarget : CNode {
    explicit CTarget(std::size_t count) : CNode(m_Values, m_WriteCount, 0), m_Values(count) {}
    bool DeSerialize(const IReadDataStream& input) override {
        m_WasIncremental = input.IsIncremental();
        EXPECT_TRUE(CNode::DeSerialize(input));
        m_OnRead();
        return true;
    }

    Values m_Values;
    int m_WriteCount = 0;
    bool m_WasIncremental = false;
    std::function<void()> m_OnRead = [] {};
};

struct CHistoryTest : testing::Test {
    CHistoryTest() {
        m_History.GetCanUndoChanged().AddCommand(m_OnUndo);
        m_History.GetCanRedoChanged().AddCommand(m_OnRedo);
        m_History.GetStateRecorded().AddCommand(m_OnRecorded);
    }
    void Record(int value) {
        m_Target.m_Values[0] = value;
        m_History.RecordState();
    }
    int UndoAll() {
        int count = 0;
        for (; m_History.CanUndo(); ++count)
            m_History.Undo();
        return count;
    }

    std::string m_Events;
    CActionCommand m_OnUndo{[this] { m_Events += "undo "; }};
    CActionCommand m_OnRedo{[this] { m_Events += "redo "; }};
    CActionCommand m_OnRecorded{[this] { m_Events += "recorded "; }};
    CTarget m_Target{15};
    CIncrementalHistoryManager m_History{&m_Target};
};

// The same operations on whole snapshots.
struct SSnapshots {
    bool CanUndo() const { return m_Current > 0; }
    bool CanRedo() const { return m_Current + 1 < m_All.size(); }
    bool Record(const Values& values) {
        if (!m_All.empty() && m_All[m_Current] == values)
            return false;
        m_All.resize(m_All.empty() ? 0 : m_Current + 1);
        m_All.push_back(values);
        if (m_All.size() > MaxCount)
            m_All.erase(m_All.begin());
        m_Current = m_All.size() - 1;
        return true;
    }
    // Changes the values that differ, or else all, and returns their number.
    int Step(bool undo, bool incremental, Values& values) {
        const Values& from = m_All[m_Current];
        const Values& to = m_All[undo ? --m_Current : ++m_Current];
        int count = 0;
        for (std::size_t i = 0; i < values.size(); ++i)
            if (from[i] != to[i] || !incremental) {
                values[i] = to[i];
                ++count;
            }
        return count;
    }

    static constexpr int MaxCount = 12;
    std::vector<Values> m_All;
    std::size_t m_Current = 0;
};

} // namespace

TEST_F(CHistoryTest, DoesAsAListOfSnapshotsDoesAndWritesOnlyWhatDiffers) {
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    std::mt19937 random(GetSeed());
    SSnapshots snapshots;
    m_History.SetMaxSteps(SSnapshots::MaxCount);
    for (int round = 0; round < 10'000; ++round) {
        SCOPED_TRACE(round);
        Values& values = m_Target.m_Values;
        const unsigned action = random() % 64;
        if (action % 8 == 0) // A step that changes all is read as a full stream.
            std::ranges::for_each(values, [](int& value) { value = (value + 1) % 3; });
        for (unsigned k = action < 24 ? random() % 4 : 0; k > 0; --k)
            values[random() % values.size()] = static_cast<int>(random() % 3);
        Values expected = values;
        const bool couldUndo = snapshots.CanUndo(), couldRedo = snapshots.CanRedo();
        bool recorded = false, undoFirst = true;
        m_Target.m_WriteCount = 0;
        if (action < 20) {
            m_History.RecordState();
            recorded = snapshots.Record(values);
        } else if (action < 24) {
            m_History.UpdateCurrentState();
            recorded = snapshots.m_All.empty() && snapshots.Record(values);
            snapshots.m_All[snapshots.m_Current] = values;
        } else if (action < 63) {
            const bool undo = undoFirst = action<44, incremental = random() % 4> 0;
            m_History.SetIncremental(incremental);
            undo ? m_History.Undo() : m_History.Redo();
            if (undo ? couldUndo : couldRedo) {
                const int writeCount = snapshots.Step(undo, incremental, expected);
                ASSERT_EQ(m_Target.m_WriteCount, writeCount);
                ASSERT_EQ(m_Target.m_WasIncremental, writeCount < std::ssize(values));
            }
        } else {
            m_History.Clear();
            snapshots = SSnapshots();
            undoFirst = false;
        }
        ASSERT_EQ(values, expected);
        ASSERT_EQ(m_History.CanUndo(), snapshots.CanUndo());
        ASSERT_EQ(m_History.CanRedo(), snapshots.CanRedo());
        const std::string undoEvent = couldUndo != snapshots.CanUndo() ? "undo " : "";
        const std::string redoEvent = couldRedo != snapshots.CanRedo() ? "redo " : "";
        const std::string events = undoFirst ? undoEvent + redoEvent : redoEvent + undoEvent;
        ASSERT_EQ(std::exchange(m_Events, ""), (recorded ? "recorded " : "") + events);
    }
}

TEST_F(CHistoryTest, KeepsAsManyStatesAsItIsTold) {
    m_History.SetMaxSteps(128);
    for (int value = 1; value <= 129; ++value)
        Record(value);
    EXPECT_EQ(UndoAll(), 127);
    EXPECT_EQ(m_Target.m_Values[0], 2);
    for (int value = 3; value < 8; ++value)
        Record(value);
    m_History.SetMaxSteps(3);
    Record(8);
    EXPECT_EQ(UndoAll(), 2);
    m_History.SetMaxSteps(0); // The oldest is the one just recorded.
    Record(9);
    EXPECT_FALSE(m_History.CanUndo() || m_History.CanRedo());
    CIncrementalHistoryManager idle(nullptr);
    idle.RecordState();
    idle.UpdateCurrentState();
    EXPECT_FALSE(idle.CanUndo());
}

// A target whose listeners take a restored value for an edit.
TEST_F(CHistoryTest, OutlivesCallsFromWithinARestore) {
    m_History.SetMaxSteps(2);
    for (const bool incremental : {true, false}) {
        m_History.SetIncremental(incremental);
        m_Target.m_OnRead = [&] {
            Record(3);
            Record(4);
        };
        Record(1);
        Record(2);
        m_History.Undo();
        m_Target.m_OnRead = [&] { m_History.Clear(); };
        m_History.Undo();
        EXPECT_EQ(m_Target.m_Values[0], 3);
        EXPECT_FALSE(m_History.CanUndo() || m_History.CanRedo());
    }
}

// As many values as the state of a plug-in has, and more objects.
TEST(IncrementalHistory, CostsLittleForSmallSteps) {
    CTarget target(284);
    CIncrementalHistoryManager history(&target);
    const CAllocationScope scope;
    for (std::size_t step = 0; step < 129; ++step) {
        ++target.m_Values[step * 7 % 284];
        history.RecordState();
    }
    const long long held = scope.GetHeldBytes();
    EXPECT_LT(held, 400'000);
    history.RecordState();
    EXPECT_EQ(scope.GetHeldBytes(), held);
}

TEST(IncrementalMemDataObject, HasOneValueForAName) {
    CIncrementalMemDataObject object, stranger;
    CIntObject nested;
    EXPECT_TRUE(object.WriteObject("v", CIntObject(2)) && object.ReadObject("v", nested));
    EXPECT_TRUE(WriteValue(object, "v", 3) && nested.m_Value == 2);
    EXPECT_TRUE(ReadInt(object, "v") == 3 && object.GetCount() == 1);
    EXPECT_FALSE(object.ReadObject("v", nested) || object.WriteObject(nullptr, nested));
    EXPECT_FALSE(stranger.SetDifference(CIncrementalMemDataObject(), object));
}

} // namespace Lathe::Serialization::Tests
