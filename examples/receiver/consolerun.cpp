#include "consolerun.h"

#include "measurement.h"

#include "control/vcreporting.h"
#include "events/xmlevent.h"
#include "report/reportoutcome.h"

#include <QDomElement>
#include <QFile>
#include <QTextStream>

namespace {

QTextStream &Out()
{
    static QTextStream out(stdout);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    out.setCodec("UTF-8");
#endif
    return out;
}

/// How deep an element stands in the report.
int Depth(QDomNode node)
{
    int depth = 0;
    for (node = node.parentNode(); node.isElement(); node = node.parentNode()) {
        ++depth;
    }
    return depth;
}

/// A control without a button that tells of each element what became of it.
class TellingControl : public VCReporting
{
public:
    TellingControl(const QString &schema, const QString &reportFolder)
        : VCReporting(schema, reportFolder, nullptr, false, "reporting", false, QPixmap())
    {
    }

    void XmlUpdate(XmlEvent *event) override
    {
        VCReporting::XmlUpdate(event);
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            Tell(static_cast<ElemBeginEvent *>(event)->GetElementNode().toElement());
        }
    }

private:
    static void Tell(const QDomElement &element)
    {
        const QString name = QString(2 * Depth(element), QLatin1Char(' ')) + element.tagName();
        const bool hasValue = element.firstChild().isText();
        const QString value = hasValue ? element.text() : QStringLiteral("-");
        const QString unit = hasValue ? element.attribute(QStringLiteral("Unit")) : QString();
        Out() << "  " << name.leftJustified(28) << value << ' ' << unit << '\n';
    }
};

} // namespace

int RunOnce(Measurement &measurement, const QString &schema, const QString &reportFolder)
{
    TellingControl control(schema, reportFolder);
    measurement.FillControl(control);
    bool isComplete = false;
    QObject::connect(&control, &VCReporting::ReportFinished, [&isComplete](const ReportOutcome &outcome) {
        isComplete = outcome.IsComplete();
        QFile file(outcome.GetPath());
        const bool isOpen = outcome.IsSaved() && file.open(QIODevice::ReadOnly);
        Out() << "\nThe report:\n" << (isOpen ? QString::fromUtf8(file.readAll()) : QString());
        for (const ReportOutcome::RefusedValue &refused : outcome.GetRefusedValues()) {
            Out() << refused.m_sPlace << " takes no \"" << refused.m_sValue << "\": " << refused.m_sReason << '\n';
        }
        for (const QString &place : outcome.GetMissing()) {
            Out() << place << " has no value\n";
        }
        Out() << outcome.GetSchemaError() << '\n'
              << (isOpen ? "Saved as " : "Not saved: ") << outcome.GetPath() << ' ' << outcome.GetSaveError() << '\n';
    });
    Out() << "Schema: " << schema << "\nElements, and the values that they were given:\n";
    control.SlotToReport();
    if (!schema.endsWith(QLatin1String(".xsd"))) {
        Out() << "No report: the schema's name doesn't end in .xsd\n";
    }
    Out().flush();
    return isComplete ? 0 : 1;
}
