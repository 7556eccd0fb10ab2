#include "host/ostrel.h"
#include "host/quilmar.h"
#include "host/tessaly.h"
#include "host/veldra.h"

#include <QDateTime>

ErrorHandler &ErrorHandler::Instance()
{
    static ErrorHandler handler;
    return handler;
}

int ErrorHandler::GetTraceMask()
{
    return m_iMask;
}

void _Q_Trace(const QString &message, const QString &sourceFile, unsigned short)
{
    ErrorHandler::Instance().m_lTraces += sourceFile + QStringLiteral(": ") + message;
}

void _Q_TraceOld(QString format, ...)
{
    ErrorHandler::Instance().m_lTraces += format;
}

quint64 IOrvoOS::GetTime()
{
    return 86400;
}

IOrvoOS &OrvoOS::Create()
{
    static IOrvoOS clock;
    return clock;
}

Orvo::DateTime::DateTime(const quint64 &time)
    : m_iTime(time)
{
}

// This host counts seconds and thinks in UTC.
QString Orvo::DateTime::toString(const QString &format) const
{
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(m_iTime), Qt::UTC).toString(format);
}

TranslationCenter &TranslationCenter::Instance()
{
    static TranslationCenter center;
    return center;
}

void TranslationCenter::Register(const QString &name)
{
    m_lNames += name;
}

void TranslationCenter::Unregister(const QString &name)
{
    m_lNames.removeAll(name);
}

namespace values {

namespace {

class Level : public ValueBase, public IValueNumeric
{
public:
    QString GetText() override { return QStringLiteral("42.5 dB"); }
    double GetNumber() override { return 42.5; }
};

Level theLevel;

} // namespace

QString ValueBase::GetName() const
{
    return QStringLiteral("Level");
}

QString ValueBase::GetPathName() const
{
    return QStringLiteral("Sensor/Level");
}

std::vector<TreeItem *> Node::GetTreeItems() const
{
    return {};
}

Tree *Tree::Instance()
{
    static Tree tree;
    return &tree;
}

ValueBase *Tree::FindValue(QString path)
{
    ++m_iQuestions;
    return path == theLevel.GetPathName() ? &theLevel : nullptr;
}

TreeItem *Tree::FindItem(QString)
{
    ++m_iQuestions;
    return nullptr;
}

} // namespace values

VCButton::VCButton(QWidget *parent, const QString &text, bool)
    : QToolButton(parent)
{
    setText(text);
}

void VCButton::SetDefaultPicture(const char *const xpm[])
{
    setIcon(QIcon(QPixmap(xpm)));
}

void VCButton::setEnabled(bool enabled)
{
    ++m_iStateChanges;
    QToolButton::setEnabled(enabled);
}
