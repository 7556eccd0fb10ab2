#include "host/tessaly.h"

#include <QIcon>
#include <QPixmap>

IObserver::~IObserver() = default;

UndoRecordingControlBase::~UndoRecordingControlBase() = default;

VCButton::VCButton(QWidget *parent, const QString &text, bool /*recordUndo*/)
    : QToolButton(parent)
{
    setText(text);
    setToolTip(text);
}

VCButton::~VCButton() = default;

void VCButton::SetDefaultPicture(const char *const xpm[])
{
    setIcon(QIcon(QPixmap(xpm)));
}

void VCButton::setEnabled(bool enabled)
{
    QToolButton::setEnabled(enabled);
}
