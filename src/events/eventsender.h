#pragma once

#include "events/xmlevent.h"

#include <memory>
#include <utility>

/// Makes an event on the heap, delivers it to the callback on this stack and destroys it: the one way in which the
/// library sends. A null callback hears nothing.
template <typename Event, typename... Arguments>
void SendEvent(ITagwright *callback, Arguments &&...arguments)
{
    if (callback != nullptr) {
        const std::unique_ptr<XmlEvent> event = std::make_unique<Event>(std::forward<Arguments>(arguments)...);
        callback->XmlUpdate(event.get());
    }
}
