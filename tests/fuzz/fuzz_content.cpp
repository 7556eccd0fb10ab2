/// Feeds the library with any bytes, as a file: as a schema, from which a report is made, and as a reader's content,
/// also as the document that Qt makes of it. The first byte chooses what a receiver does meanwhile.

#include "events/itagwright.h"
#include "events/xmlevent.h"
#include "report/xmlcreatereport.h"
#include "xml/xmlreader.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

namespace {

class Receiver : public ITagwright
{
public:
    void XmlUpdate(XmlEvent *event) override
    {
        ++m_iEvents;
        if (m_pReader == nullptr || event->GetType() != XmlEvent::EVENT_ELEM_BEGIN) {
            return;
        }
        auto *begin = static_cast<ElemBeginEvent *>(event);
        m_pReader->SearchBelowCurrentElement(begin->GetElementName());
        m_pReader->GetElement(begin->GetElementName(), begin->GetElementNode().parentNode().nodeName());
        if (m_bPrunes) {
            QDomNode node = begin->GetElementNode();
            node.parentNode().removeChild(node);
        }
        if (m_iEvents == m_iReplaceAt) {
            m_pReader->SetXmlContent(QDomDocument());
        }
    }

    XMLReader *m_pReader = nullptr;
    bool m_bPrunes = false;
    int m_iReplaceAt = 0;
    int m_iEvents = 0;
};

/// Two runs over a content that nobody changes are alike.
template <typename Content>
void Run(Receiver receiver, Content content)
{
    XMLReader reader(&receiver, nullptr);
    receiver.m_pReader = &reader;
    reader.SetXmlContent(content);
    const bool first = reader.ParseXml();
    const int events = receiver.m_iEvents;
    const bool second = reader.ParseXml();
    const bool isSteady = receiver.m_iReplaceAt == 0 && !receiver.m_bPrunes;
    if (isSteady && (first != second || receiver.m_iEvents != 2 * events)) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("content.xsd"));
    QFile file(path);
    if (size == 0 || !file.open(QIODevice::WriteOnly)
        || file.write(reinterpret_cast<const char *>(data) + 1, qint64(size) - 1) < 0) {
        return 0;
    }
    file.close();
    Receiver receiver;
    receiver.m_bPrunes = (data[0] & 0x80) != 0;
    receiver.m_iReplaceAt = data[0] & 0x0f;
    XmlCreateReport(&receiver).CreateXmlFromSchema(path, dir.filePath(QStringLiteral("report.xml")), false);
    Run(receiver, path);
    Receiver deaf;
    XMLReader reader(&deaf, nullptr);
    reader.SetXmlContent(path);
    for (const QDomNode &node : *reader.GetElement(QStringLiteral("x"), QString())) {
        Run(receiver, node);
        Run(receiver, node.ownerDocument());
    }
    return 0;
}
