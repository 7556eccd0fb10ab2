/// Feeds the library with any bytes, as a file: as a schema, from which a report is made, and as a reader's content,
/// also as the document that Qt makes of it. The size chooses what a receiver does meanwhile.

#include "support/files.h"

#include "events/itagwright.h"
#include "events/xmlevent.h"
#include "report/xmlcreatereport.h"
#include "xml/xmlreader.h"

#include <QTemporaryDir>

namespace {

class Receiver : public ITagwright
{
public:
    void XmlUpdate(XmlEvent *event) override
    {
        if (m_pReader == nullptr || event->GetType() != XmlEvent::EVENT_ELEM_BEGIN) {
            return;
        }
        auto *begin = static_cast<ElemBeginEvent *>(event);
        QDomNode parent = begin->GetElementNode().parentNode();
        m_pReader->SearchBelowCurrentElement(begin->GetElementName());
        m_pReader->GetElement(begin->GetElementName(), parent.nodeName());
        if (m_iChoice == 1) {
            parent.removeChild(begin->GetElementNode());
        } else if (--m_iChoice == 1) {
            m_pReader->SetXmlContent(QDomDocument());
        }
    }

    XMLReader *m_pReader = nullptr;
    int m_iChoice = 0;
};

template <typename Content>
void Run(Receiver receiver, Content content)
{
    XMLReader reader(&receiver, nullptr);
    receiver.m_pReader = &reader;
    reader.SetXmlContent(content);
    reader.ParseXml();
    reader.ParseXml();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QTemporaryDir dir;
    const QString path = WriteFile(dir.filePath(QStringLiteral("content.xsd")),
                                   QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    Receiver receiver;
    XmlCreateReport(&receiver).CreateXmlFromSchema(path, dir.filePath(QStringLiteral("report.xml")), false);
    XMLReader reader(&receiver, nullptr);
    reader.SetXmlContent(path);
    receiver.m_iChoice = static_cast<int>(size % 8);
    Run(receiver, path);
    for (const QDomNode &node : *reader.GetElement(QStringLiteral("x"), QString())) {
        Run(receiver, node);
        Run(receiver, node.ownerDocument());
    }
    return 0;
}
