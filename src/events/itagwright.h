#pragma once

#include "tagwright_export.h"

class XmlEvent;

/// The callback through which the walk of a report and the parse of an XML content speak to their user.
///
/// The library stores a pointer to it and never owns or destroys it: the implementer must outlive whatever it was
/// handed to. All calls come on the thread of the operation that causes them.
class TAGWRIGHT_EXPORT ITagwright
{
public:
    /// What an ErrorEvent says. The numbers are fixed; 0 to 6 are not in use. No number stops a walk.
    enum ErrorID : int {
        /// A structural operation on the document failed, or a choice alternative can't be given up.
        GENERAL_ERROR = -1,
        /// A value was to be set and there is no current element.
        CURRENT_ELEMENT_IS_NULL = 7,
        /// The current element has no "type" or an empty one; the number of the value's own type follows.
        CURRENT_ELEMENT_HAS_NO_TYPE = 8,
        /// The type takes no string.
        CURRENT_TYPE_IS_NOT_STRING = 9,
        /// The type takes no floating-point value.
        CURRENT_TYPE_IS_NOT_DOUBLE = 10,
        /// The type takes no integer.
        CURRENT_TYPE_IS_NOT_INTEGER = 11,
        /// The type takes no date and time.
        CURRENT_TYPE_IS_NOT_DATETIME = 12,
        /// The type takes no time.
        CURRENT_TYPE_IS_NOT_TIME = 13,
        /// The type takes no boolean.
        CURRENT_TYPE_IS_NOT_BOOL = 14,
        /// The value breaks a bound or is not in the enumeration; from the walk: the name has no occurrence row.
        CURRENT_VALUE_IS_NOT_VALID = 15,
        /// An element without a value may not be left out, or a repetition is not allowed.
        CURRENT_OCCURRENCE_IS_NOT_VALID = 16
    };

    /// Called for each event. `event` is never null and belongs to the sender, which destroys it when the call has
    /// returned: copy what is to be kept. The call is entered again, on the same thread, from inside a setter that
    /// the receiver has called. It must not throw: an exception ends the walk or the parse, and may not pass the frames
    /// of Qt below.
    virtual void XmlUpdate(XmlEvent *event) = 0;
};
