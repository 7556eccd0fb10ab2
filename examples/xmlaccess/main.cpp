// Writes a file with XMLWriter and reads it back with XMLReader: xmlaccess FILE.xml
#include "events/itagwright.h"
#include "events/xmlevent.h"
#include "host/quilmar.h"
#include "xml/xmlreader.h"
#include "xml/xmlwriter.h"

#include <QTextStream>

namespace {

// Shows each element that a parse announces, with what it holds.
class Outline : public ITagwright
{
public:
    void XmlUpdate(XmlEvent *event) override
    {
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            auto *begin = static_cast<ElemBeginEvent *>(event);
            const QDomElement element = begin->GetElementNode().toElement();
            m_oOut << QString(2 * m_iDepth, QLatin1Char(' ')) << begin->GetElementName() << ": "
                   << element.firstChild().nodeValue() << '\n';
            ++m_iDepth;
        } else if (event->GetType() == XmlEvent::EVENT_ELEM_END) {
            --m_iDepth;
        }
    }

private:
    QTextStream m_oOut { stdout };
    int m_iDepth = 0;
};

void Write(const QString &path, values::Node *receiver)
{
    XMLWriter writer;
    writer.CreateXmlFile(path, "settings");
    writer.CreateXmlElement("window", QString(), true);
    writer.SetXmlAttribute("visible", "true");
    writer.CreateXmlElement("title", "Level & bearing", false);
    writer.GoToXmlParent();
    writer.CreateElementsFromNode(receiver);
    writer.SaveXmlFile();
}

void Read(const QString &path)
{
    Outline outline;
    XMLReader reader(&outline, nullptr);
    reader.SetXmlContent(path);
    if (!reader.ParseXml()) {
        qWarning("%s can't be read", qUtf8Printable(path));
    }
    for (const QDomNode &level : *reader.GetElement("Level", "Receiver")) {
        qInfo("The level was %s", qUtf8Printable(level.toElement().text()));
    }
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        qWarning("usage: xmlaccess FILE.xml");
        return 2;
    }
    values::MemoryTree tree;
    tree.SetNumber("Receiver/Frequency", 98.1, "MHz");
    tree.SetNumber("Receiver/Level", 42.5, "dBµV");
    const QString path = QString::fromLocal8Bit(argv[1]);
    Write(path, tree.AddNode("Receiver"));
    Read(path);
    return 0;
}
