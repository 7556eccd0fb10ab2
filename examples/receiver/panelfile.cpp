#include "panelfile.h"

#include "measurement.h"

#include "events/xmlevent.h"
#include "xml/xmlreader.h"
#include "xml/xmlwriter.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStringList>

namespace {

/// Hears the elements of a file and puts each one's text at its place in the value tree.
class PanelReader : public ITagwright
{
public:
    explicit PanelReader(Measurement &measurement)
        : m_oMeasurement(measurement)
    {
    }

    void XmlUpdate(XmlEvent *event) override
    {
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            auto *begin = static_cast<ElemBeginEvent *>(event);
            m_lNames.append(begin->GetElementName());
            // The root stands for the whole tree.
            m_oMeasurement.Restore(m_lNames.mid(1).join(QLatin1Char('/')), begin->GetElementNode().toElement().text());
        } else if (event->GetType() == XmlEvent::EVENT_ELEM_END) {
            m_lNames.removeLast();
        }
    }

private:
    Measurement &m_oMeasurement;
    QStringList m_lNames;
};

/// Where the settings of this user are kept.
class Settings : public QSettings
{
public:
    Settings()
        : QSettings(QStringLiteral("Tagwright"), QStringLiteral("receiver"))
    {
    }
};

QString FolderKey()
{
    return QStringLiteral("reportFolder");
}

} // namespace

namespace panelfile {

void Save(Measurement &measurement, const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    XMLWriter writer;
    writer.CreateXmlFile(path, QStringLiteral("Panel"));
    for (const char *node : { "Station", "Receiver", "Measurement" }) {
        writer.CreateElementsFromNode(measurement.GetTree().AddNode(QLatin1String(node)));
    }
    writer.SaveXmlFile();
}

void Restore(Measurement &measurement, const QString &path)
{
    PanelReader receiver(measurement);
    XMLReader reader(&receiver, nullptr);
    reader.SetXmlContent(path);
    reader.ParseXml();
}

void SaveReportFolder(const QString &folder)
{
    Settings().setValue(FolderKey(), folder);
}

QString RestoreReportFolder()
{
    return Settings().value(FolderKey()).toString();
}

} // namespace panelfile
