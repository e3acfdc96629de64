// Proves which events each capture object fires and in which order, what it keeps of what it is
// given, and that each can be used through any of its interfaces.

#include "datamodel/EventCounter.h"
#include "datamodel/objects/Action.h"
#include "datamodel/objects/capture/CaptureCurve.h"
#include "datamodel/objects/capture/CaptureCustomProperty.h"
#include "datamodel/objects/capture/CaptureParam.h"
#include "datamodel/objects/capture/CaptureString.h"
#include "datamodel/objects/capture/CaptureSurface.h"
#include "datamodel/objects/capture/CaptureText.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

// Stands in for the pictures of the drawing library, which this library only names.
namespace Lathe::Graphics {
class I2DGraphics {
public:
    explicit I2DGraphics(int& alive) : m_Alive(alive) { ++m_Alive; }
    virtual ~I2DGraphics() { --m_Alive; }

private:
    int& m_Alive;
};
} // namespace Lathe::Graphics

namespace Lathe::DataModel::Objects {

namespace {

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

// Writes down the events of a capture object: "v" for the value, "b" and "e" for the bracket.
class CJournal {
public:
    template <class TObject>
    explicit CJournal(const TObject& object)
        : m_Value(object.GetValueChangedEvent(), &m_Text, "v"),
          m_Begin(object.GetBeginCaptureEvent(), &m_Text, "b"),
          m_End(object.GetEndCaptureEvent(), &m_Text, "e") {}

    std::string Take() { return std::exchange(m_Text, {}); }
    std::string* GetText() { return &m_Text; }

private:
    std::string m_Text;
    CEventCounter m_Value;
    CEventCounter m_Begin;
    CEventCounter m_End;
};

// The bracket is the same for all: nothing counts, nothing nests.
template <class T>
void CheckBracket(TICaptureValue<T>& object) {
    CJournal journal(object);
    object.Release();
    EXPECT_EQ(journal.Take(), "");
    object.Capture();
    object.Capture();
    EXPECT_EQ(journal.Take(), "b");
    EXPECT_TRUE(object.IsCaptured());
    object.Release();
    object.Release();
    EXPECT_EQ(journal.Take(), "e");
    EXPECT_FALSE(object.IsCaptured());
}

TEST(CaptureObjects, BracketTheirGestures) {
    CCaptureParam param;
    CCaptureCurve curve;
    CCaptureSurface surface;
    CCaptureCustomProperty property;
    CCaptureString string;
    CCaptureText text;
    CheckBracket<double>(param);
    CheckBracket<const Math::IFunction&>(curve);
    CheckBracket<const Math::IBinaryFunction&>(surface);
    CheckBracket<const IDynamicPropertyValue&>(property);
    CheckBracket<const char*>(string);
    CheckBracket<const char*>(text);
}

TEST(CaptureParam, ClampsAndFiresInOrder) {
    CCaptureParam param;
    param.GetInfo().SetMax(1.0);
    CJournal journal(param);
    const CEventCounter set(param.GetValueSetEvent(), journal.GetText(), "s");
    struct {
        double m_Set, m_Value;
        const char* m_Events;
    } const cases[] = {
        {0.0, 0.0, "s"},         {2.0, 1.0, "vs"},       {3.0, 1.0, "s"},    {-1.0, 0.0, "vs"},
        {NotANumber, 1.0, "vs"}, {NotANumber, 1.0, "s"}, {0.25, 0.25, "vs"}, {0.25, 0.25, "s"},
    };
    for (const auto& row : cases) {
        param.SetValue(row.m_Set);
        EXPECT_EQ(param.GetValue(), row.m_Value) << row.m_Set;
        EXPECT_EQ(journal.Take(), row.m_Events) << row.m_Set;
    }
    param.GetInfo().SetType(EParamType::Integer);
    param.SetValue(0.75);
    EXPECT_EQ(param.GetValue(), 0.75) << "the type does not round";
}

TEST(CaptureParam, FollowsItsRange) {
    CCaptureParam param;
    param.GetInfo().SetMax(10.0);
    param.SetValue(8.0);
    CJournal journal(param);
    const CEventCounter set(param.GetValueSetEvent(), journal.GetText(), "s");
    param.GetInfo().SetMax(5.0);
    EXPECT_EQ(param.GetValue(), 5.0);
    EXPECT_EQ(journal.Take(), "v") << "once, and not as a set";
    param.GetInfo().SetMax(7.0);
    param.GetInfo().SetName("n");
    EXPECT_EQ(journal.Take(), "");
    param.GetInfo().SetMin(9.0);
    EXPECT_EQ(param.GetValue(), 7.0) << "of an upside-down range, the maximum wins";
    EXPECT_EQ(journal.Take(), "v");

    const ICaptureParam& writable = param;
    const IConstCaptureParam& readable = param;
    EXPECT_EQ(&writable.GetInfo(), &readable.GetInfo());
}

// Counts its kind, and tells clones from originals.
template <class TBase>
class TCounted : public TBase {
public:
    template <class... TArguments>
    explicit TCounted(int& alive, TArguments... arguments) : TBase(arguments...), m_Alive(alive) {
        ++m_Alive;
    }
    TCounted(const TCounted& other) : TBase(other), m_Alive(other.m_Alive) { ++m_Alive; }
    ~TCounted() override { --m_Alive; }
    TCounted* Clone() const override { return new TCounted(*this); }

private:
    int& m_Alive;
};

template <class TObject, class TValue>
void CheckCloning() {
    int alive = 0;
    const TCounted<TValue> original(alive);
    {
        TObject object(&original, false);
        EXPECT_EQ(&object.GetValue(), &original);
        CJournal journal(object);
        object.SetValue(original);
        EXPECT_NE(&object.GetValue(), &original) << "a clone, not what it was handed";
        EXPECT_EQ(alive, 2);
        object.SetValue(object.GetValue());
        EXPECT_EQ(alive, 2);
        EXPECT_EQ(journal.Take(), "vv") << "an equal value fires as well";
        const TObject owner(new TCounted<TValue>(alive), true);
        EXPECT_STREQ(owner.GetInfo().GetName(), "");
        EXPECT_EQ(alive, 3);
    }
    EXPECT_EQ(alive, 1) << "only the borrowed original is left";
}

TEST(CaptureClones, KeepFreshClones) {
    CheckCloning<CCaptureCurve, Math::CConstantFunction>();
    CheckCloning<CCaptureSurface, Math::CConstantBinaryFunction>();
    CheckCloning<CCaptureCustomProperty, CEmptyDynamicPropertyValue>();
}

TEST(CaptureClones, AlwaysHaveAValue) {
    EXPECT_EQ(CConstCaptureCurve(nullptr, false).GetValue().Evaluate(0.3), 0.3);
    EXPECT_EQ(CConstCaptureSurface(nullptr, false).GetValue().Evaluate(0.3, 0.7), 0.3);
    const CCaptureCustomProperty property(nullptr, false);
    EXPECT_TRUE(property.GetValue().IsSameType(CEmptyDynamicPropertyValue()));
}

TEST(CaptureString, FiresForOtherLettersOnly) {
    CCaptureString string;
    CJournal journal(string);
    string.SetValue(nullptr);
    string.SetValue("");
    EXPECT_EQ(journal.Take(), "");
    string.SetValue("abc");
    string.SetValue(std::string("abc").c_str());
    EXPECT_EQ(journal.Take(), "v");
    string.SetValue(string.GetValue() + 1);
    EXPECT_STREQ(string.GetValue(), "bc");
    string.SetValue(nullptr);
    EXPECT_STREQ(string.GetValue(), "");
    EXPECT_EQ(journal.Take(), "vv");
}

TEST(CaptureText, FiresAlways) {
    CCaptureText text("a");
    CJournal journal(text);
    text.SetValue("a");
    text.SetValue(nullptr);
    EXPECT_STREQ(text.GetValue(), "");
    EXPECT_EQ(journal.Take(), "vv");
}

class CCountingCommand : public Core::ICommand {
public:
    CCountingCommand(int& runs, int& alive) : m_Runs(runs), m_Alive(alive) { ++m_Alive; }
    ~CCountingCommand() override { --m_Alive; }
    void Execute() override { ++m_Runs; }

private:
    int& m_Runs;
    int& m_Alive;
};

TEST(Action, RunsItsCommandWhileEnabled) {
    int runs = 0;
    int alive = 0;
    CAction action(new CCountingCommand(runs, alive), true);
    CEventCounter enableChanged(action.GetEnableChangedEvent());
    action.Execute();
    action.SetEnable(true);
    EXPECT_EQ(enableChanged.Take(), 0);
    action.SetEnable(false);
    action.Execute();
    EXPECT_EQ(enableChanged.Take(), 1);
    EXPECT_EQ(runs, 1);
    action.SetEnable(true);
    action.Disconnect();
    EXPECT_EQ(alive, 0);
    action.Execute();
    action.Disconnect();
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(static_cast<IConstActionWrapper&>(action).GetEnabled());
}

TEST(ActionInfo, DestroysOwnedPictures) {
    int alive = 0;
    const Graphics::I2DGraphics borrowed(alive);
    {
        CActionInfo info("n", "d", new Graphics::I2DGraphics(alive), true);
        CEventCounter changed(info.GetChangedEvent());
        EXPECT_EQ(alive, 2);
        info.SetGraphics(&borrowed, false);
        EXPECT_EQ(alive, 1);
        info.SetGraphics(new Graphics::I2DGraphics(alive), true);
        info.SetGraphics(info.GetGraphics(), true);
        EXPECT_EQ(alive, 2) << "the same picture stays";
        EXPECT_EQ(changed.Take(), 3);
    }
    EXPECT_EQ(alive, 1);
}

} // namespace

} // namespace Lathe::DataModel::Objects
