// Writes down events in the order in which they fire.
#pragma once

#include "core/Fixtures.h"
#include "core/events/EventProvider.h"

#include <list>

namespace Lathe::DataModel {

class CJournal {
public:
    // The changed event of a description, as "c".
    explicit CJournal(Core::IEventProvider& changed) { Listen(changed, 'c'); }
    // The events of a capture object: "v" for the value, "b" and "e" for the bracket.
    template <class TObject>
    requires requires(const TObject& object) { object.GetBeginCaptureEvent(); }
    explicit CJournal(const TObject& object) {
        Listen(object.GetValueChangedEvent(), 'v');
        Listen(object.GetBeginCaptureEvent(), 'b');
        Listen(object.GetEndCaptureEvent(), 'e');
    }
    ~CJournal() {
        for (auto& [provider, command] : m_Subscriptions)
            provider->RemoveCommand(command);
    }
    CJournal(const CJournal&) = delete;
    CJournal& operator=(const CJournal&) = delete;

    void Listen(Core::IEventProvider& provider, char letter) {
        m_Subscriptions.emplace_back(&provider, [this, letter] { m_Text += letter; });
        provider.AddCommand(m_Subscriptions.back().second);
    }
    // What fired since the last call.
    std::string Take() { return std::exchange(m_Text, {}); }

private:
    std::list<std::pair<Core::IEventProvider*, CActionCommand>> m_Subscriptions;
    std::string m_Text;
};

} // namespace Lathe::DataModel
