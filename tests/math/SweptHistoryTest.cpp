// Proves what the functions over a history answer, against a plain search of all samples; which
// samples they take and keep; and that stored histories come back, and damaged ones do no harm.

#include "core/Fixtures.h"
#include "math/Constant.h"
#include "math/FunctionProxy.h"
#include "math/SweptCurvesFunction.h"
#include "math/SweptValues.h"
#include "serialization/Streams.h"
#include "serialization/TypedObject.h"
#include "support/AllocationCounter.h"

#include <cmath>
#include <limits>
#include <string_view>

namespace Lathe::Math {

namespace {

using namespace Serialization;
using namespace std::string_view_literals;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(SweptValues, AnswerByTheSamplesThatTheyHold) {
    CSweptValues history;
    const auto check = [&](const std::vector<std::pair<double, double>>& cases) {
        for (const auto& [time, value] : cases)
            EXPECT_EQ(history.Evaluate(time), value) << time;
    };
    check({{-1.0, 0.0}, {0.0, 0.0}, {1.0, 0.0}});
    history.SetDefaultValue(7.0);
    EXPECT_FALSE(history.AddPoint(1.0, 10.0)) << "no room";
    history.SetPointsCount(8);
    EXPECT_FALSE(history.AddPoint(Infinity, 10.0) || history.AddPoint(NotANumber, 10.0));
    check({{-Infinity, 7.0}, {0.0, 7.0}, {NotANumber, 7.0}});
    EXPECT_TRUE(history.AddPoint(1.0, 10.0));
    check({{0.0, 10.0}, {-1e-9, 7.0}});
    EXPECT_TRUE(history.AddPoint(2.0, 20.0));
    EXPECT_FALSE(history.AddPoint(2.0, 30.0) || history.AddPoint(1.5, 30.0));
    check({{-0.5, 15.0}, {-1.0, 10.0}, {-1.5, 7.0}, {-1e300, 7.0}, {-Infinity, 7.0}});
    check({{0.5, 20.0}, {0.0, 20.0}, {-1e-300, 20.0}, {NotANumber, 20.0}});
    history.SetPointsCount(std::numeric_limits<unsigned>::max()); // Limited, and all forgotten.
    check({{-0.5, 7.0}, {0.0, 7.0}});
    EXPECT_TRUE(history.AddPoint(0.0, 1.0));
    history.SetPointsCount(0);
    EXPECT_TRUE(history.AddPoint(1.0, 1.0) && history.AddPoint(2.0, 2.0));
    check({{0.0, 2.0}, {-0.5, 7.0}}); // One sample is no line.
}

// The number of points asked for, and how many are then held; their times are uneven.
TEST(SweptValues, AgreeWithAPlainSearchAndAllocateNothing) {
    SCOPED_TRACE(GetSeed());
    std::mt19937 random(GetSeed());
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    const std::pair<unsigned, int> cases[] = {{1, 2}, {2, 2}, {3, 4}, {4, 4}, {33, 64}};
    for (const auto& [count, room] : cases) {
        CSweptValues history;
        history.SetPointsCount(count);
        history.SetDefaultValue(5.0);
        std::vector<std::pair<double, double>> samples;
        double now = 0.0;
        for (int i = 0; i < 200; ++i)
            samples.emplace_back(now += std::exp(6.0 * uniform(random) - 6.0), uniform(random));
        const CAllocationScope scope;
        for (const auto& [time, value] : samples)
            history.AddPoint(time, value);
        samples.erase(samples.begin(), samples.end() - room);
        for (int i = 0; i < 500; ++i) {
            const double time = 1.1 * uniform(random) * (samples.front().first - now);
            double expected = 5.0;
            for (std::size_t k = 1; k < samples.size(); ++k) {
                const auto [t1, v1] = samples[k - 1];
                const auto [t2, v2] = samples[k];
                if (now + time >= t1 && now + time <= t2)
                    expected = std::lerp(v1, v2, (now + time - t1) / (t2 - t1));
            }
            ASSERT_NEAR(history.Evaluate(time), expected, 1e-12) << "rounding alone may differ";
        }
        EXPECT_EQ(scope.GetCount(), 0);
    }
}

// Three samples in a ring of four: 1, 2, 3 at the times 10, 11, 12; the default is 9.
void Fill(CSweptValues& history) {
    history.SetPointsCount(4);
    history.SetDefaultValue(9.0);
    for (int i = 1; i <= 3; ++i)
        history.AddPoint(9.0 + i, i);
}
// The same at x = 1.
void Fill(CSweptCurvesFunction& history) {
    history.SetPointsCount(4);
    history.SetDefaultValue(CConstantFunction(9.0));
    history.AddPoint(10.0, CFunctionProxy());
    history.AddPoint(11.0, CConstantFunction(2.0));
    history.AddPoint(12.0, CConstantFunction(3.0));
}

// Cloned, or written to a stream of each kind and read, the history is the same, and goes on.
template <class T, class I, class... TX>
void CheckSurvives(TX... x) {
    T original;
    Fill(original);
    original.SetDuration(2.5);
    const auto check = [&](const I& copy) {
        for (const auto& [time, value] : {std::pair(-2.0, 1.0), {-1.25, 1.75}, {0.0, 3.0}})
            EXPECT_EQ(copy.Evaluate(time, x...), value);
        EXPECT_EQ(copy.Evaluate(-2.5, x...), 9.0);
        EXPECT_EQ(dynamic_cast<const T&>(copy).GetDuration(), 2.5);
    };
    check(*std::unique_ptr<I>(original.Clone()));
    Tests::ForEachReading<I>(original, check);
    for (const char* key : {"version", "values", "times", "currentIndex", "mask", "pointsCount",
                            "duration", "pointsPerSecond", "defaultValue"}) {
        CMemDataObject stored;
        EXPECT_TRUE(original.Serialize(stored) && stored.HasValue(key)) << key;
        stored.RemoveValue(key);
        T damaged;
        EXPECT_FALSE(damaged.DeSerialize(stored)) << key;
        if (key == "times"sv || key == "values"sv) { // The other ring is longer.
            EXPECT_EQ(damaged.Evaluate(-1.0, x...), 0.0) << key;
        }
    }
    EXPECT_TRUE(original.DeSerialize(Tests::CChanges()));
    check(original);
    EXPECT_FALSE(original.DeSerialize(CMemDataObject()));
    EXPECT_EQ(original.Evaluate(-1.0, x...), 0.0);
}

TEST(SweptHistories, SurviveCloningAndStreams) {
    CheckSurvives<CSweptValues, IFunction>();
    CheckSurvives<CSweptCurvesFunction, IBinaryFunction>(1.0);
}

struct CWriter : ISerialize {
    explicit CWriter(std::function<bool(IWriteDataStream&)> write) : m_Write(std::move(write)) {}
    bool Serialize(IWriteDataStream& output) const override { return m_Write(output); }
    std::function<bool(IWriteDataStream&)> m_Write;
};

// A stored history whose keys say something else, and what it then answers for a second and a half
// before now: nothing of it is left, or it is as sound as it looks. With any times, the look-up
// ends and stays in the ring, which the sanitizers watch.
TEST(SweptValues, AreEmptyWhenTheirIndicesLieAndOutliveAnyTimes) {
    SCOPED_TRACE(GetSeed());
    std::mt19937 random(GetSeed());
    const double numbers[] = {0.0, -1.0, 5.0, 1e300, -1e300, Infinity, -Infinity, NotANumber};
    const auto any = [&] { return numbers[random() % std::size(numbers)]; };
    const CWriter times([&](IWriteDataStream& output) {
        for (const char* name : {"time0", "time1", "time2", "time3"})
            output.WriteObject(name, CConstant(any()));
        return WriteValue(output, "timeCount", 4);
    });
    const struct {
        const char* key;
        int value;
        double found;
    } cases[] = {
        {"mask", 7, 0},           {"mask", -1, 0},         {"currentIndex", 4, 0},
        {"currentIndex", 2, 1.5}, {"currentIndex", -1, 0}, {"pointsCount", 5, 0},
        {"pointsCount", 3, 1.5},  {"pointsCount", -1, 0},  {"pointsCount", 1, 9},
    };
    for (const auto& row : cases) {
        CMemDataObject stored;
        CSweptValues history;
        Fill(history);
        EXPECT_TRUE(history.Serialize(stored) && WriteValue(stored, row.key, row.value));
        EXPECT_TRUE(history.DeSerialize(stored)) << "every key is there";
        EXPECT_EQ(history.Evaluate(-1.5), row.found) << row.key << ' ' << row.value;
        EXPECT_EQ(history.AddPoint(100.0, 1.0), row.found > 0.0);
        for (int round = 0; round < 100; ++round) {
            EXPECT_TRUE(stored.WriteObject("times", times));
            WriteValue(stored, "pointsPerSecond", any());
            EXPECT_TRUE(history.DeSerialize(stored));
            for (const double time : numbers)
                history.Evaluate(time);
        }
        history.SetPointsCount(2);
        EXPECT_TRUE(history.AddPoint(1.0, 1.0));
    }
}

TEST(SweptCurves, TakeTheDefaultForWhatCannotBeRead) {
    const CWriter curves([](IWriteDataStream& output) {
        output.WriteObject("value0", CTypeSerializer(nullptr));
        return WriteValue(output, "valueCount", 4);
    });
    CMemDataObject stored;
    CSweptCurvesFunction history;
    Fill(history);
    EXPECT_TRUE(history.Serialize(stored) && stored.WriteObject("values", curves));
    EXPECT_FALSE(history.DeSerialize(stored));
    for (const double time : {-2.0, -1.5, 0.0})
        EXPECT_EQ(history.Evaluate(time, 1.0), 9.0);
}

} // namespace

} // namespace Lathe::Math
