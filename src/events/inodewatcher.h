#pragma once

/// Hears, from an event on its way, that the receiver takes hold of the event's node: from then on the receiver can
/// look at the whole document and change it at any time. A walk that nobody looks into may keep back what it would only
/// have to take out again.
class INodeWatcher
{
public:
    virtual void NodeTaken() = 0;

protected:
    ~INodeWatcher() = default;
};
