#pragma once

#include "tagwright_host_export.h"

#include "host/morrane.h"

#include <QToolButton>

/// The host's tool-bar button.
class TAGWRIGHT_HOST_EXPORT VCButton : public QToolButton, public IObserver, public UndoRecordingControlBase
{
    Q_OBJECT

public:
    /// A child of `parent` that carries `text`, as its text and as its tool tip. `recordUndo` asks the host to record
    /// presses for undoing; this stand-in records none.
    VCButton(QWidget *parent, const QString &text, bool recordUndo);
    ~VCButton() override;

    /// Shows an XPM picture.
    void SetDefaultPicture(const char *const xpm[]);

    /// As QWidget::setEnabled, but a host's button may override it.
    virtual void setEnabled(bool enabled);
};
