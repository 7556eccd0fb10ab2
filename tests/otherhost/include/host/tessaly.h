#pragma once

#include <QToolButton>

/// This host's buttons count what is done to them.
class VCButton : public QToolButton
{
public:
    VCButton(QWidget *parent, const QString &text, bool)
        : QToolButton(parent)
    {
        setText(text);
    }
    void SetDefaultPicture(const char *const xpm[]) { setIcon(QIcon(QPixmap(xpm))); }
    void setEnabled(bool enabled)
    {
        ++m_iStateChanges;
        QToolButton::setEnabled(enabled);
    }

    int m_iStateChanges = 0;
};
