#pragma once

#include "host/morrane.h"

#include <QToolButton>

class VCButton : public QToolButton, public IObserver, public UndoRecordingControlBase
{
    Q_OBJECT

public:
    VCButton(QWidget *parent, const QString &text, bool recordUndo);
    void SetDefaultPicture(const char *const xpm[]);
    virtual void setEnabled(bool enabled);

    int m_iStateChanges = 0;
};
