#pragma once

#include "tagwright_host_export.h"

#include <QtGlobal>

/// The interface by which a control hears that a value it shows has changed. The library calls nothing of it.
class TAGWRIGHT_HOST_EXPORT IObserver
{
public:
    IObserver() = default;
    virtual ~IObserver();
    Q_DISABLE_COPY(IObserver)
};

/// The base of controls whose changes the host can undo. The library calls nothing of it.
class TAGWRIGHT_HOST_EXPORT UndoRecordingControlBase
{
public:
    UndoRecordingControlBase() = default;
    virtual ~UndoRecordingControlBase();
    Q_DISABLE_COPY(UndoRecordingControlBase)
};
