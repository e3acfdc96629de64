// Text of a value by a template, in which "{value}" stands for the number.
#pragma once

#include "core/events/EventProvider.h"
#include "core/text/CharString.h"
#include "datamodel/objects/text/ParamText.h"

#include <string>
#include <string_view>

namespace Lathe::DataModel::Objects {

// In the pattern, "{{" stands for a brace; a placeholder that nobody knows, and a brace without a
// partner, come out as they stand.
class CParamValueToText : public IParamValueToText {
public:
    // The format is printf's, with one conversion of a double.
    CParamValueToText(const char* format, bool metricPrefix, const char* pattern)
        : m_Pattern(pattern), m_Format(format), m_MetricPrefix(metricPrefix) {}

    char* ToText(double value) const override;
    // The number at the start of the text, whatever the pattern is.
    bool FromText(const char* text, double* value) const override;
    CParamValueToText* Clone() const override;

    // Fires after any setter changed a field; setting the present value does nothing.
    Core::IEventProvider& GetChangedEvent() const { return m_Changed; }

    void SetFormat(const char* format) { SetField(m_Format, format); }
    void SetPattern(const char* pattern) { SetField(m_Pattern, pattern); }
    // Prints thousands as "k", thousandths as "m", and so on from "p" to "T".
    void SetMetricPrefix(bool metricPrefix) { SetField(m_MetricPrefix, metricPrefix); }
    // 0 and less: no rounding.
    void SetSignificantDigits(int digits) { SetField(m_SignificantDigits, digits); }
    void SetDropTrailingZeros(bool drop) { SetField(m_DropTrailingZeros, drop); }
    // The blank comes also where the prefix is empty.
    void SetSpaceBeforePrefix(bool space) { SetField(m_SpaceBeforePrefix, space); }

protected:
    // Appends what the placeholder, braces included, stands for; false for an unknown one.
    virtual bool AppendPlaceholder(std::string_view name, double value, std::string& text) const;

    std::string GetNumberText(double value) const;
    void NotifyChanged() { m_Changed.Notify(); }

private:
    template <class T, class TValue>
    void SetField(T& field, TValue value) {
        if (field == value)
            return;
        field = value;
        NotifyChanged();
    }

    Core::CCharString m_Pattern;
    Core::CCharString m_Format;
    bool m_MetricPrefix;
    mutable Core::CEventProvider m_Changed;
    int m_SignificantDigits = -1;
    bool m_DropTrailingZeros = false;
    bool m_SpaceBeforePrefix = false;
};

} // namespace Lathe::DataModel::Objects
