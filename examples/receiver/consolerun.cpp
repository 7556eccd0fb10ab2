#include "consolerun.h"

#include "measurement.h"

#include "control/vcreporting.h"
#include "events/xmlevent.h"

#include <QDir>
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

/// The path of the only report that was not there before.
QString NewReport(const QDir &folder, const QStringList &before)
{
    for (const QString &file : folder.entryList(QDir::Files)) {
        if (!before.contains(file)) {
            return folder.filePath(file);
        }
    }
    return QString();
}

} // namespace

int RunOnce(Measurement &measurement, const QString &schema, const QString &reportFolder)
{
    const QDir folder(reportFolder);
    const QStringList before = folder.entryList(QDir::Files);
    TellingControl control(schema, reportFolder);
    measurement.FillControl(control);
    Out() << "Schema: " << schema << "\nElements, and the values that they were given:\n";
    const bool isSuccessful = control.SlotToReport();
    const QString path = NewReport(folder, before);
    if (!isSuccessful || path.isEmpty()) {
        Out() << (isSuccessful ? "The report could not be saved in " : "The schema could not be read; folder: ")
              << reportFolder << '\n';
        Out().flush();
        return 1;
    }
    QFile file(path);
    const bool isOpen = file.open(QIODevice::ReadOnly);
    Out() << "\nThe report:\n"
          << (isOpen ? QString::fromUtf8(file.readAll()) : QString()) << "\nSaved as " << path << '\n';
    Out().flush();
    return isOpen ? 0 : 1;
}
