// The undo history against a plain list of whole snapshots: what is restored, what is written on
// the way, which events are raised, and what the states cost.
#include "serialization/history/IncrementalHistoryManager.h"

#include "core/Fixtures.h"
#include "serialization/ObjectProbe.h"
#include "serialization/StreamValue.h"
#include "support/AllocationCounter.h"

#include <algorithm>

namespace Lathe::Serialization::Tests {

namespace {

constexpr int Default = -1;

// What is saved, and what a restore has done.
struct SModel {
    std::vector<int> m_Values;
    int m_WriteCount = 0;
    std::function<void()> m_OnRead = [] {};
};

// A range of the values: two are its own, the others are those of two nested objects.
class CPart : public ISerializable {
public:
    CPart(SModel& model, std::size_t begin, std::size_t end)
        : m_Model(model), m_Begin(begin), m_Own(std::min(end, begin + 2)), m_End(end) {}

    bool Serialize(IWriteDataStream& output) const override {
        for (std::size_t i = m_Begin; i < m_Own; ++i)
            WriteValue(output, ("value" + std::to_string(i)).c_str(), m_Model.m_Values[i]);
        if (m_Own < m_End)
            for (const bool right : {false, true})
                output.WriteObject(right ? "right" : "left", GetNested(right));
        return true;
    }
    bool DeSerialize(const IReadDataStream& input) override {
        for (std::size_t i = m_Begin; i < m_Own; ++i) {
            int value = Default;
            if (!input.ReadInt(("value" + std::to_string(i)).c_str(), &value) &&
                input.IsIncremental())
                continue;
            m_Model.m_Values[i] = value;
            ++m_Model.m_WriteCount;
        }
        if (m_Own < m_End)
            for (const bool right : {false, true}) {
                CPart nested = GetNested(right);
                EXPECT_TRUE(ReadObjectOrKeep(input, right ? "right" : "left", nested));
            }
        return true;
    }

private:
    CPart GetNested(bool right) const {
        const std::size_t middle = (m_Own + m_End) / 2;
        return right ? CPart(m_Model, middle, m_End) : CPart(m_Model, m_Own, middle);
    }

    SModel& m_Model;
    std::size_t m_Begin, m_Own, m_End;
};

class CTarget : public SModel, public CPart {
public:
    explicit CTarget(std::size_t count) : CPart(*this, 0, count) { m_Values.assign(count, 0); }
    bool DeSerialize(const IReadDataStream& input) override {
        m_WasIncremental = input.IsIncremental();
        CPart::DeSerialize(input);
        m_OnRead();
        return true;
    }
    bool m_WasIncremental = false;
};

struct CHistoryTest : testing::Test {
    CHistoryTest() {
        m_History.GetCanUndoChanged().AddCommand(m_OnUndo);
        m_History.GetCanRedoChanged().AddCommand(m_OnRedo);
        m_History.GetStateRecorded().AddCommand(m_OnRecorded);
    }
    // The events since the last call, in their order.
    std::string TakeEvents() { return std::exchange(m_Events, ""); }
    void Record(int value, std::size_t index = 0) {
        m_Target.m_Values[index] = value;
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
    CTarget m_Target{25};
    CIncrementalHistoryManager m_History{&m_Target};
};

// A list of whole snapshots, with the same operations.
struct SSnapshots {
    using Values = std::vector<int>;

    bool CanUndo() const { return m_Current > 0; }
    bool CanRedo() const { return m_Current + 1 < m_All.size(); }
    bool Record(const Values& values) {
        if (!m_All.empty() && m_All[m_Current] == values)
            return false;
        m_All.resize(m_All.empty() ? 0 : m_Current + 1);
        m_All.push_back(values);
        if (m_All.size() > m_MaxCount)
            m_All.erase(m_All.begin());
        m_Current = m_All.size() - 1;
        return true;
    }
    // Changes the values that differ, and returns their number.
    int Step(int by, Values& values) {
        const Values& from = m_All[m_Current];
        m_Current += static_cast<std::size_t>(by);
        int count = 0;
        for (std::size_t i = 0; i < values.size(); ++i)
            if (from[i] != m_All[m_Current][i]) {
                values[i] = m_All[m_Current][i];
                ++count;
            }
        return count;
    }

    std::vector<Values> m_All;
    std::size_t m_Current = 0;
    std::size_t m_MaxCount = 12;
};

} // namespace

TEST_F(CHistoryTest, DoesAsAListOfSnapshotsDoesAndWritesOnlyWhatDiffers) {
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    std::mt19937 random(GetSeed());
    SSnapshots snapshots;
    m_History.SetMaxSteps(static_cast<int>(snapshots.m_MaxCount));
    for (int round = 0; round < 5000; ++round) {
        const bool couldUndo = snapshots.CanUndo(), couldRedo = snapshots.CanRedo();
        bool recorded = false;
        int writeCount = m_Target.m_WriteCount = 0;
        SSnapshots::Values expected = m_Target.m_Values;
        const unsigned action = random() % 64;
        if (action < 24) {
            for (unsigned k = random() % 4; k > 0; --k)
                m_Target.m_Values[random() % 25] = static_cast<int>(random() % 3);
            expected = m_Target.m_Values;
            if (action < 18) {
                m_History.RecordState();
                recorded = snapshots.Record(expected);
            } else if (action < 20) {
                m_History.UpdateCurrentState();
                if (snapshots.m_All.empty())
                    recorded = snapshots.Record(expected);
                else
                    snapshots.m_All[snapshots.m_Current] = expected;
            }
        } else if (action < 63) {
            const bool undo = action < 44;
            undo ? m_History.Undo() : m_History.Redo();
            if (undo ? couldUndo : couldRedo)
                writeCount = snapshots.Step(undo ? -1 : 1, expected);
        } else if (random() % 4 == 0) {
            m_History.Clear();
            snapshots = SSnapshots();
        }
        ASSERT_EQ(m_Target.m_Values, expected) << round;
        ASSERT_EQ(m_Target.m_WriteCount, writeCount) << round;
        ASSERT_EQ(m_History.CanUndo(), snapshots.CanUndo()) << round;
        ASSERT_EQ(m_History.CanRedo(), snapshots.CanRedo()) << round;
        const std::string events = TakeEvents();
        const auto count = [&](char first) { return std::ranges::count(events, first); };
        ASSERT_EQ(count('c'), recorded ? 1 : 0) << round; // Of "recorded".
        ASSERT_EQ(count('n'), couldUndo != snapshots.CanUndo() ? 1 : 0) << round;
        ASSERT_EQ(count('r') - 2 * count('c'), couldRedo != snapshots.CanRedo() ? 1 : 0) << round;
    }
}

TEST_F(CHistoryTest, RaisesEventsInOrder) {
    m_History.UpdateCurrentState();
    m_History.RecordState();
    EXPECT_EQ(TakeEvents(), "recorded "); // Once for the same state.
    Record(1);
    Record(2);
    EXPECT_EQ(TakeEvents(), "recorded undo recorded ");
    EXPECT_EQ(UndoAll(), 2);
    EXPECT_EQ(TakeEvents(), "redo undo ");
    m_History.Redo();
    m_History.Redo();
    EXPECT_EQ(TakeEvents(), "undo redo ");
    m_History.Undo();
    m_History.Undo();
    Record(3); // Instead of those that could be redone.
    EXPECT_EQ(TakeEvents(), "redo undo recorded undo redo ");
    Record(4);
    m_History.Undo();
    TakeEvents();
    m_History.Clear();
    EXPECT_EQ(TakeEvents(), "redo undo ");
}

TEST_F(CHistoryTest, ReadsAFullStreamWhereEverythingChangedOrWhenToldTo) {
    Record(0);
    std::ranges::fill(m_Target.m_Values, 5);
    m_History.RecordState();
    Record(6);
    m_History.Undo();
    EXPECT_TRUE(m_Target.m_WasIncremental);
    m_History.Undo();
    EXPECT_FALSE(m_Target.m_WasIncremental);
    m_History.SetIncremental(false);
    m_History.Redo();
    m_Target.m_WriteCount = 0;
    m_History.Redo();
    EXPECT_FALSE(m_Target.m_WasIncremental);
    EXPECT_EQ(m_Target.m_WriteCount, 25);
}

TEST_F(CHistoryTest, KeepsAsManyStatesAsItIsTold) {
    m_History.SetMaxSteps(128);
    for (int value = 1; value <= 129; ++value)
        Record(value);
    EXPECT_EQ(UndoAll(), 127);
    EXPECT_EQ(m_Target.m_Values[0], 2);
    m_History.SetMaxSteps(3);
    Record(-1);
    Record(-2);
    Record(-3);
    EXPECT_EQ(UndoAll(), 2);
    m_History.SetMaxSteps(0); // The oldest is the one just recorded.
    Record(8);
    Record(9);
    EXPECT_FALSE(m_History.CanUndo() || m_History.CanRedo());
    CIncrementalHistoryManager idle(nullptr);
    idle.RecordState();
    idle.UpdateCurrentState();
    idle.Undo();
    EXPECT_FALSE(idle.CanUndo());
}

// A target whose listeners take a restored value for an edit.
TEST_F(CHistoryTest, OutlivesCallsFromWithinARestore) {
    m_History.SetMaxSteps(2);
    for (const bool incremental : {true, false}) {
        m_History.SetIncremental(incremental);
        Record(1);
        Record(2);
        m_Target.m_OnRead = [&] {
            Record(3);
            Record(4);
        };
        m_History.Undo();
        m_Target.m_OnRead = [&] { m_History.Clear(); };
        m_History.Undo();
        EXPECT_EQ(m_Target.m_Values[0], 3);
        EXPECT_FALSE(m_History.CanUndo() || m_History.CanRedo());
    }
}

// As many values as the state of a plug-in, flat and nested.
TEST(IncrementalHistory, CostsLittleForSmallSteps) {
    CTarget target(284);
    CIncrementalHistoryManager history(&target);
    const CAllocationScope scope;
    for (int step = 0; step < 129; ++step) {
        target.m_Values[static_cast<std::size_t>(step * 7 % 284)] = step + 1;
        history.RecordState();
    }
    const long long held = scope.GetHeldBytes();
    EXPECT_LT(held, 400'000);
    history.RecordState();
    EXPECT_EQ(scope.GetHeldBytes(), held);
    history.Clear();
    EXPECT_LT(scope.GetHeldBytes(), 1000);

    struct CFlat : CTarget {
        using CTarget::CTarget;
        bool Serialize(IWriteDataStream& output) const override {
            for (std::size_t i = 0; i < m_Values.size(); ++i)
                WriteValue(output, ("value" + std::to_string(i)).c_str(), m_Values[i]);
            return true;
        }
    };
    CFlat flat(284);
    CIncrementalHistoryManager flatHistory(&flat);
    const CAllocationScope flatScope;
    for (int step = 0; step < 129; ++step) {
        ++flat.m_Values[static_cast<std::size_t>(step)];
        flatHistory.RecordState();
    }
    EXPECT_LT(flatScope.GetHeldBytes(), 500'000);
}

// Nested as deep as a document may be.
TEST(IncrementalHistory, TakesDeepObjects) {
    struct CDeep : ISerializable {
        CDeep(int& value, int depth) : m_Value(value), m_Depth(depth) {}
        bool Serialize(IWriteDataStream& output) const override {
            return m_Depth > 0 ? output.WriteObject("deeper", CDeep(m_Value, m_Depth - 1))
                               : WriteValue(output, "value", m_Value);
        }
        bool DeSerialize(const IReadDataStream& input) override {
            CDeep deeper(m_Value, m_Depth - 1);
            return m_Depth > 0 ? input.ReadObject("deeper", deeper)
                               : ReadValue(input, "value", m_Value);
        }
        int& m_Value;
        int m_Depth;
    };
    int value = 1;
    CDeep target(value, 1000);
    CIncrementalHistoryManager history(&target);
    history.SetMaxSteps(2);
    for (; value < 5; ++value)
        history.RecordState();
    history.Undo();
    EXPECT_EQ(value, 3);
    history.Redo();
    EXPECT_EQ(value, 4);
}

TEST(IncrementalMemDataObject, RefusesTheDifferenceOfStrangers) {
    CIncrementalMemDataObject first, second, changes;
    WriteValue(second, "v", 1);
    EXPECT_FALSE(changes.SetDifference(first, second));
    EXPECT_EQ(changes.GetCount(), 0);
}

} // namespace Lathe::Serialization::Tests
