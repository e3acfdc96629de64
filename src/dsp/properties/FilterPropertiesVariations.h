// How a filter's inputs move across one block: where they start, where they end, and their rates
// of change per sample.
//
// A block with changes: the owner writes new values into the end state and sets their flags, calls
// ComputeRates, hands this to the filter with the block, and calls Commit.
#pragma once

#include "dsp/properties/FilterProperties.h"

#include <array>

namespace Lathe::Audio::DSP {

// One vector per derivative order, each with one value per input of a kind. No vector at all means
// that nothing of the kind moves.
using IConstRates = Containers::IConstVector<IConstParamsValues>;

class IConstFilterPropertiesVariations {
public:
    virtual const IConstFilterProperties& GetStart() const LATHE_REALTIME = 0;
    virtual const IConstFilterProperties& GetEnd() const LATHE_REALTIME = 0;
    virtual const IConstRates& GetVariations(int kind) const LATHE_REALTIME = 0;
    virtual ~IConstFilterPropertiesVariations() = default;
};

class CFilterPropertiesVariations : public IConstFilterPropertiesVariations {
public:
    using CRates = CoreUtilities::TDynamicCollection<CDynamicParamsValues, IConstParamsValues>;

    CFilterPropertiesVariations() = default;
    // A copy has the other's room too.
    CFilterPropertiesVariations(const CFilterPropertiesVariations& other);
    CFilterPropertiesVariations& operator=(const CFilterPropertiesVariations& other);

    const CFilterProperties& GetStart() const LATHE_REALTIME override { return *m_pStart; }
    const CFilterProperties& GetEnd() const LATHE_REALTIME override { return *m_pEnd; }
    const IConstRates& GetVariations(int kind) const LATHE_REALTIME override {
        return m_Rates[static_cast<std::size_t>(kind)];
    }

    CFilterProperties& GetStart() LATHE_REALTIME { return *m_pStart; }
    CFilterProperties& GetEnd() LATHE_REALTIME { return *m_pEnd; }
    CRates& GetRates(int kind) LATHE_REALTIME { return m_Rates[static_cast<std::size_t>(kind)]; }

    // Sizes everything for the filter's inputs; values that stay keep their contents. From here on
    // nothing allocates, for up to maxOrder orders and at least one.
    void Setup(const IFilter& filter, int maxOrder);
    // From the flags of the end state: a rate of (end - start) / samples for each parameter that
    // changed, the advance 1 / samples of a crossfade for the other kinds, 0 for what did not
    // change and for a block without samples. A kind without any flag gets no vector.
    void ComputeRates(int samples) LATHE_REALTIME;
    // Copies what changed from the end to the start state and clears the end's flags.
    // A text or object that nobody but the start state held is freed here: an owner that may not
    // free holds it elsewhere.
    void Commit() LATHE_REALTIME;

private:
    // Makes all the room that was asked for, whatever part of it is in use.
    void Reserve();
    bool IsAnyDirty(int kind) const LATHE_REALTIME;
    double GetRate(int kind, int index, double perSample) const LATHE_REALTIME;

    CFilterProperties m_Start;
    CFilterProperties m_End;
    // Pointers, so that the two can change places.
    CFilterProperties* m_pStart = &m_Start;
    CFilterProperties* m_pEnd = &m_End;
    std::array<CRates, InputKinds> m_Rates;
    // What Setup was asked for: inputs of each kind, and orders.
    std::array<int, InputKinds> m_Room{};
    int m_MaxOrder = 0;
};

} // namespace Lathe::Audio::DSP
