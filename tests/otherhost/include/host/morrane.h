#pragma once

class IObserver
{
public:
    virtual ~IObserver() = default;
};

class UndoRecordingControlBase
{
public:
    virtual ~UndoRecordingControlBase() = default;
};
