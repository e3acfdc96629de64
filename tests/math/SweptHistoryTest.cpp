// Proves what the functions over a history answer, against a plain search of all samples; which
// samples they take and keep; and that stored histories come back, and damaged ones do no harm.

#include "core/Fixtures.h"
#include "core/runtime/ObjectsFactory.h"
#include "math/Constant.h"
#include "math/FunctionProxy.h"
#include "math/SweptCurvesFunction.h"
#include "math/SweptValues.h"
#include "serialization/Streams.h"
#include "serialization/TypedObject.h"
#include "support/AllocationCounter.h"

#include <cmath>
#include <deque>
#include <limits>

namespace Lathe::Math {

namespace {

using namespace Serialization;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

// The same calls for both: a curve is the constant that the number would be.
bool Add(CSweptValues& history, double time, double value) {
    return history.AddPoint(time, value);
}
bool Add(CSweptCurvesFunction& history, double time, double value) {
    return history.AddPoint(time, CConstantFunction(value));
}
void SetDefault(CSweptValues& history, double value) {
    history.SetDefaultValue(value);
}
void SetDefault(CSweptCurvesFunction& history, double value) {
    history.SetDefaultValue(CConstantFunction(value));
}
double Ask(const IFunction& history, double time) {
    return history.Evaluate(time);
}
double Ask(const IBinaryFunction& history, double time) {
    return history.Evaluate(time, 0.3);
}

// The interface by which each is made and stored.
template <class T>
using TInterface = std::conditional_t<std::is_base_of_v<IFunction, T>, IFunction, IBinaryFunction>;

template <class T>
class SweptHistory : public testing::Test {};
using Kinds = testing::Types<CSweptValues, CSweptCurvesFunction>;
TYPED_TEST_SUITE(SweptHistory, Kinds);

TYPED_TEST(SweptHistory, AnswersByTheSamplesThatItHolds) {
    TypeParam history;
    const auto check = [&](std::vector<std::pair<double, double>> cases) {
        for (const auto& [time, value] : cases)
            EXPECT_EQ(Ask(history, time), value) << time;
    };
    check({{-1.0, 0.0}, {0.0, 0.0}, {1.0, 0.0}});
    SetDefault(history, 7.0);
    EXPECT_FALSE(Add(history, 1.0, 10.0)) << "no room";
    history.SetPointsCount(8);
    check({{-Infinity, 7.0}, {0.0, 7.0}, {NotANumber, 7.0}});
    EXPECT_TRUE(Add(history, 1.0, 10.0));
    check({{0.0, 10.0}, {-1e-9, 7.0}});
    EXPECT_TRUE(Add(history, 2.0, 20.0));
    for (const double refused : {2.0, 1.5, NotANumber, Infinity})
        EXPECT_FALSE(Add(history, refused, 30.0));
    check({{-0.5, 15.0}, {-1.0, 10.0}, {-1.5, 7.0}, {-1e300, 7.0}, {-Infinity, 7.0}});
    check({{0.5, 20.0}, {0.0, 20.0}, {-1e-300, 20.0}, {NotANumber, 20.0}});
    const std::unique_ptr<TypeParam> clone(history.Clone());
    history.SetPointsCount(8);
    check({{-0.5, 7.0}, {0.0, 7.0}});
    EXPECT_EQ(Ask(*clone, -0.5), 15.0);
    EXPECT_TRUE(Add(*clone, 4.0, 0.0));
    EXPECT_EQ(Ask(*clone, -1.0), 10.0);
}

// The number of points asked for, and how many there is room for.
TYPED_TEST(SweptHistory, HoldsThePowerOfTwoAbove) {
    const std::pair<unsigned, int> cases[] = {{1, 2}, {2, 2}, {3, 4}, {4, 4}, {5, 8}, {200, 256}};
    for (const auto& [count, room] : cases) {
        TypeParam history;
        SetDefault(history, -1.0);
        history.SetPointsCount(count);
        for (int i = 0; i < 600; ++i)
            Add(history, i, i);
        EXPECT_EQ(Ask(history, 1.0 - room), 600.0 - room) << count;
        EXPECT_EQ(Ask(history, 0.999 - room), -1.0) << count;
    }
    TypeParam history;
    history.SetPointsCount(0);
    EXPECT_TRUE(Add(history, 1.0, 1.0) && Add(history, 2.0, 2.0));
    EXPECT_EQ(Ask(history, -0.5), 0.0) << "one sample is no line";
    history.SetPointsCount(std::numeric_limits<unsigned>::max());
    EXPECT_TRUE(Add(history, 0.0, 1.0)) << "absurd counts are limited";
}

// Samples at random distances, all of them searched.
TYPED_TEST(SweptHistory, AgreesWithAPlainSearch) {
    SCOPED_TRACE(GetSeed());
    std::mt19937 random(GetSeed());
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    TypeParam history;
    history.SetPointsCount(32);
    SetDefault(history, 5.0);
    std::deque<std::pair<double, double>> samples;
    double now = 0.0;
    for (int round = 0; round < 300; ++round) {
        now += std::exp(6.0 * uniform(random) - 6.0);
        samples.emplace_back(now, uniform(random));
        Add(history, now, samples.back().second);
        if (samples.size() > 32)
            samples.pop_front();
        for (int i = 0; i < 50 && round > 0; ++i) {
            const double time = 1.1 * uniform(random) * (samples.front().first - now);
            double expected = 5.0;
            for (std::size_t k = 1; k < samples.size(); ++k) {
                const auto [t1, v1] = samples[k - 1];
                const auto [t2, v2] = samples[k];
                if (now + time >= t1 && now + time <= t2)
                    expected = std::lerp(v1, v2, (now + time - t1) / (t2 - t1));
            }
            ASSERT_NEAR(Ask(history, time), expected, 1e-12) << "rounding alone may differ";
        }
    }
}

TEST(SweptCurves, InterpolateAtX) {
    const CFunctionProxy identity; // The value at x is x.
    CSweptCurvesFunction history;
    history.SetPointsCount(4);
    history.AddPoint(0.0, identity);
    history.AddPoint(1.0, CConstantFunction(10.0));
    EXPECT_EQ(history.Evaluate(-1.0, 4.0), 4.0);
    EXPECT_EQ(history.Evaluate(-0.5, 4.0), 7.0);
}

TEST(SweptValues, AllocateNothingAtWork) {
    CSweptValues history;
    history.SetPointsCount(64);
    const CAllocationScope scope;
    for (int i = 0; i < 200; ++i)
        history.AddPoint(i, history.Evaluate(-0.3 * i) + i);
    EXPECT_EQ(scope.GetCount(), 0);
}

// Writes what it is told to.
struct CWriter : ISerialize {
    explicit CWriter(std::function<void(IWriteDataStream&)> write) : m_Write(std::move(write)) {}
    bool Serialize(IWriteDataStream& output) const override {
        m_Write(output);
        return true;
    }
    std::function<void(IWriteDataStream&)> m_Write;
};

// Three samples in a ring of four: 1, 2, 3 at the times 10, 11, 12; the default is 9.
template <class T>
std::unique_ptr<T> MakeSample() {
    auto history = std::make_unique<T>();
    history->SetPointsCount(4);
    SetDefault(*history, 9.0);
    for (int i = 1; i <= 3; ++i)
        Add(*history, 9.0 + i, i);
    return history;
}

TYPED_TEST(SweptHistory, SurvivesStreams) {
    Tests::ForEachStream([](auto& stream, const auto& reload) {
        const auto original = MakeSample<TypeParam>();
        original->SetDuration(2.5);
        ASSERT_TRUE(stream.WriteObject("function", CTypeSerializer(original.get())));
        reload();
        Core::TOwnership<TInterface<TypeParam>> read;
        TRuntimeDeSerializer<TInterface<TypeParam>> reader(read);
        ASSERT_TRUE(stream.ReadObject("function", reader) && read);
        auto& history = dynamic_cast<TypeParam&>(*read);
        EXPECT_EQ(history.GetDuration(), 2.5);
        for (int more = 0; more < 3; ++more) {
            for (const double time : {-3.0, -2.0, -1.25, -0.5, 0.0})
                EXPECT_EQ(Ask(history, time), Ask(*original, time)) << more << ' ' << time;
            EXPECT_TRUE(Add(history, 20.0 + more, more));
            EXPECT_TRUE(Add(*original, 20.0 + more, more));
        }
    });
}

// A key of a stored history in another's place, and what is then found a second and a half before
// now. 0 stands for a history that is empty, and stays so until there is room again.
TYPED_TEST(SweptHistory, DamageDoesNoHarm) {
    const struct {
        const char* key;
        double value, found;
    } cases[] = {
        {"mask", 7, 0},
        {"mask", -1, 0},
        {"mask", 2147483647, 0},
        {"currentIndex", 4, 0},
        {"currentIndex", -1, 0},
        {"currentIndex", -2147483648.0, 0},
        {"pointsCount", 5, 0},
        {"pointsCount", -1, 0},
        {"pointsCount", 2147483647, 0},
        {"pointsCount", 1, 9},
        {"pointsPerSecond", 0, 1.5},
        {"pointsPerSecond", 1e300, 1.5},
        {"pointsPerSecond", -1e300, 1.5},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.key + (' ' + std::to_string(row.value)));
        CMemDataObject stored;
        EXPECT_TRUE(MakeSample<TypeParam>()->Serialize(stored));
        if (row.key == std::string("pointsPerSecond"))
            WriteValue(stored, row.key, row.value);
        else
            WriteValue(stored, row.key, static_cast<int>(row.value));
        TypeParam read;
        EXPECT_TRUE(read.DeSerialize(stored)) << "every key is there";
        EXPECT_EQ(Ask(read, -1.5), row.found);
        EXPECT_EQ(Add(read, 100.0, 1.0), row.found > 0.0);
        read.SetPointsCount(2);
        EXPECT_TRUE(Add(read, 1.0, 1.0));
    }
}

// Any times: the look-up ends, and stays in the ring, which the sanitizers watch.
TYPED_TEST(SweptHistory, AnyStoredTimesEndTheLookUp) {
    std::mt19937 random(GetSeed());
    const double times[] = {0.0, -1.0, 5.0, 1e300, -1e300, Infinity, -Infinity, NotANumber, 1e-320};
    for (int round = 0; round < 200; ++round) {
        CMemDataObject stored;
        EXPECT_TRUE(MakeSample<TypeParam>()->Serialize(stored));
        const CWriter list([&](IWriteDataStream& output) {
            WriteValue(output, "timeCount", 4);
            for (const char* name : {"time0", "time1", "time2", "time3"})
                output.WriteObject(name, CConstant(times[random() % std::size(times)]));
        });
        stored.WriteObject("times", list);
        WriteValue(stored, "pointsPerSecond", times[random() % std::size(times)]);
        TypeParam read;
        EXPECT_TRUE(read.DeSerialize(stored));
        for (const double time : times)
            Ask(read, time);
        Add(read, 6.0, 1.0);
        Ask(read, -1.0);
    }
}

// Each key left out: a whole stream reports it, one of changes keeps what was there.
TYPED_TEST(SweptHistory, MissingKeysAreDefaultsOrNoChange) {
    CMemDataObject whole;
    EXPECT_TRUE(MakeSample<TypeParam>()->Serialize(whole));
    for (const char* key : {"version", "values", "times", "currentIndex", "mask", "pointsCount",
                            "duration", "pointsPerSecond", "defaultValue"}) {
        CMemDataObject stored;
        EXPECT_TRUE(MakeSample<TypeParam>()->Serialize(stored) && stored.HasValue(key)) << key;
        stored.RemoveValue(key);
        EXPECT_FALSE(MakeSample<TypeParam>()->DeSerialize(stored)) << key;
    }
    const auto present = MakeSample<TypeParam>();
    EXPECT_TRUE(present->DeSerialize(Tests::CChanges()));
    EXPECT_EQ(Ask(*present, -1.5), 1.5);
    EXPECT_EQ(Ask(*present, -2.5), 9.0);
    EXPECT_FALSE(present->DeSerialize(CMemDataObject()));
    EXPECT_EQ(Ask(*present, -1.5), 0.0);
}

TEST(SweptCurves, ReadNullsAndTreesThatAreTooDeep) {
    std::unique_ptr<IFunction> tree(new CConstantFunction(3.0));
    for (int i = 0; i <= 300; ++i)
        tree = std::make_unique<CFunctionProxy>(tree.release());
    CMemDataObject stored;
    MakeSample<CSweptCurvesFunction>()->Serialize(stored);
    const CWriter list([&](IWriteDataStream& output) {
        WriteValue(output, "valueCount", 4);
        output.WriteObject("value0", CTypeSerializer(nullptr));
        output.WriteObject("value1", CTypeSerializer(tree.get()));
    });
    stored.WriteObject("values", list);
    CSweptCurvesFunction read;
    EXPECT_FALSE(read.DeSerialize(stored));
    for (const double time : {-2.0, -1.5, -1.0, 0.0})
        EXPECT_EQ(read.Evaluate(time, 1.0), 9.0) << "the default stands in for what is missing";
    stored.WriteObject("defaultValue", CTypeSerializer(nullptr));
    read.DeSerialize(stored);
    EXPECT_EQ(read.Evaluate(0.0, 1.0), 0.0);
}

} // namespace

} // namespace Lathe::Math
