#pragma once

#include "support/templates.h"
#include "support/tracecapture.h"

#include "control/vcreporting.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QToolBar>

inline QStringList Texts(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *text : texts) {
        list.append(QString::fromUtf8(text));
    }
    return list;
}

/// A clock that goes on by one millisecond at each look, so that each report gets a file of its own.
/// One at a time.
class StepClock : public IOrvoOS
{
public:
    explicit StepClock(const QDateTime &start = QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9)))
        : m_iTime(static_cast<quint64>(start.toMSecsSinceEpoch()))
    {
        OrvoOS::SetClock(this);
    }
    ~StepClock() override { OrvoOS::SetClock(nullptr); }
    Q_DISABLE_COPY(StepClock)

    quint64 GetTime() override { return m_iTime++; }

private:
    quint64 m_iTime;
};

/// A folder with a schema and a folder for reports, a tool bar, and what stands in the reports.
class ControlRun
{
public:
    /// `content` is what stands in the schema's root element "R".
    explicit ControlRun(const QString &content = QStringLiteral("<xs:element name='A' type='xs:string'/>"))
    {
        QDir(m_oFolder.path()).mkdir(QStringLiteral("reports"));
        WriteSchema(QStringLiteral("<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='R'>"
                                   "<xs:complexType><xs:sequence>%1</xs:sequence></xs:complexType></xs:element>"
                                   "</xs:schema>")
                        .arg(content));
    }

    StepClock m_oClock;

    QString SchemaPath() const { return m_oFolder.filePath(QStringLiteral("schema.xsd")); }
    QString ReportFolder() const { return m_oFolder.filePath(QStringLiteral("reports")); }
    QStringList Reports() const { return QDir(ReportFolder()).entryList(QDir::Files, QDir::Name); }

    void WriteSchema(const QString &text) const
    {
        QFile file(SchemaPath());
        if (file.open(QIODevice::WriteOnly)) {
            file.write(text.toUtf8());
        }
    }

    std::unique_ptr<VCReporting> MakeControl(bool deleteAfterUse = false, QToolBar *toolBar = nullptr) const
    {
        return std::make_unique<VCReporting>(SchemaPath(), ReportFolder(), toolBar, true, "reporting", deleteAfterUse,
                                             QPixmap());
    }

    /// The latest report in one line, without the schema attributes of its root; the present time reads "now".
    QString LatestReport() const
    {
        QFile file(ReportFolder() + QLatin1Char('/') + Reports().value(Reports().size() - 1));
        QDomDocument document;
        if (file.open(QIODevice::ReadOnly)) {
            document.setContent(file.readAll());
        }
        document.documentElement().removeAttribute(QStringLiteral("xsi:noNamespaceSchemaLocation"));
        document.documentElement().removeAttribute(QStringLiteral("xmlns:xsi"));
        return WithoutTimes(ToText(document));
    }

    static QString WithoutTimes(QString text)
    {
        // The rows' own times are of 2024.
        static const QRegularExpression stamp(QStringLiteral("(?!2024)\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d"));
        text.replace(stamp, QStringLiteral("now"));
        return text;
    }

private:
    QTemporaryDir m_oFolder;
};
