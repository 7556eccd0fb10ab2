#pragma once

#include "support/files.h"
#include "support/rows.h"
#include "support/schematext.h"
#include "support/templates.h"
#include "support/tracecapture.h"

#include "control/vcreporting.h"

#include <QDateTime>
#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

/// A clock that goes on by one millisecond at each look, so that each report gets a file of its own.
/// One at a time.
class StepClock : public IOrvoOS
{
public:
    StepClock() { OrvoOS::SetClock(this); }
    ~StepClock() override { OrvoOS::SetClock(nullptr); }
    Q_DISABLE_COPY(StepClock)
    quint64 GetTime() override { return m_iTime++; }

private:
    quint64 m_iTime = static_cast<quint64>(QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9)).toMSecsSinceEpoch());
};

/// A folder with a schema and a folder for reports, and what stands in the reports.
class ControlRun
{
public:
    /// `content`, as Expanded() takes it, is what stands in the schema's root element "R".
    explicit ControlRun(const QString &content = QStringLiteral("<t A/>"))
    {
        QDir(m_oFolder.path()).mkdir(QStringLiteral("reports"));
        WriteFile(SchemaPath(), SchemaText(RootElement(content)));
    }

    QString SchemaPath() const { return m_oFolder.filePath(QStringLiteral("schema.xsd")); }
    QString ReportFolder() const { return m_oFolder.filePath(QStringLiteral("reports")); }
    QStringList Reports() const { return QDir(ReportFolder()).entryList(QDir::Files, QDir::Name); }

    std::unique_ptr<VCReporting> MakeControl(bool deleteAfterUse = false, QToolBar *toolBar = nullptr) const
    {
        return std::make_unique<VCReporting>(SchemaPath(), ReportFolder(), toolBar, true, "reporting", deleteAfterUse,
                                             QPixmap());
    }

    /// The latest report in one line, without the schema attributes of its root. The present time reads "now": the
    /// rows' own times are of 2024.
    QString LatestReport() const
    {
        static const QRegularExpression stamp(QStringLiteral("(?!2024)\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d"));
        const QByteArray bytes = FileBytes(ReportFolder() + QLatin1Char('/') + Reports().value(Reports().size() - 1));
        return bytes.isEmpty() ? QString() : ReportText(bytes).replace(stamp, QStringLiteral("now"));
    }

private:
    StepClock m_oClock;
    QTemporaryDir m_oFolder;
};
