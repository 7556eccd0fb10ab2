#pragma once

#include "events/xmlevent.h"

#include <memory>
#include <utility>

/// Makes an event on the heap, delivers it to the callback on this stack and destroys it. All events of the library are
/// sent by this function. With a null callback nothing is sent.
template <typename Event, typename... Arguments>
void SendEvent(ITagwright *callback, Arguments &&...arguments)
{
    if (callback != nullptr) {
        const std::unique_ptr<XmlEvent> event = std::make_unique<Event>(std::forward<Arguments>(arguments)...);
        callback->XmlUpdate(event.get());
    }
}
