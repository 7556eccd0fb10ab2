/// Feeds the reader with any bytes: the first chooses what a receiver does during the parse, the rest is the content,
/// as a file and, where Qt makes a document of it, as each other kind.

#include "dom/fileguard.h"
#include "events/itagwright.h"
#include "events/xmlevent.h"
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
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            auto *begin = static_cast<ElemBeginEvent *>(event);
            m_pReader->SearchBelowCurrentElement(begin->GetElementName());
            m_pReader->GetElement(begin->GetElementName(), begin->GetElementNode().parentNode().nodeName());
            if (m_bPrunes) {
                QDomNode node = begin->GetElementNode();
                node.parentNode().removeChild(node);
            }
        }
        if (m_iEvents == m_iReplaceAt) {
            m_pReader->SetXmlContent(m_oOther);
            m_pReader->ParseXml();
        }
    }

    XMLReader *m_pReader = nullptr;
    QDomDocument m_oOther;
    bool m_bPrunes = false;
    int m_iReplaceAt = 0;
    int m_iEvents = 0;
};

QString WriteContent(const uint8_t *data, size_t size)
{
    static const QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("content.xml")));
    if (!file.open(QIODevice::WriteOnly) || file.write(reinterpret_cast<const char *>(data), int(size)) != int(size)) {
        std::abort();
    }
    return file.fileName();
}

/// Two runs over a content that nobody changes are alike.
template <typename Content>
void Run(Receiver &receiver, Content content)
{
    XMLReader reader(&receiver, nullptr);
    receiver.m_pReader = &reader;
    receiver.m_iEvents = 0;
    reader.SetXmlContent(content);
    const bool first = reader.ParseXml();
    const int events = receiver.m_iEvents;
    const bool second = reader.ParseXml();
    const bool isSteady = receiver.m_iReplaceAt == 0 && !receiver.m_bPrunes;
    if (isSteady && (first != second || receiver.m_iEvents != 2 * events)) {
        std::abort();
    }
    // Deletes a document that was handed over.
    reader.SetXmlContent(QDomDocument());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0) {
        return 0;
    }
    Receiver receiver;
    receiver.m_bPrunes = (data[0] & 0x80) != 0;
    receiver.m_iReplaceAt = data[0] & 0x0f;
    const QString path = WriteContent(data + 1, size - 1);
    Run(receiver, path);
    QFile file(path);
    QDomDocument document;
    if (!dom::CheckXmlFile(path).isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    document.setContent(&file, (data[0] & 0x40) != 0);
    receiver.m_oOther = document.cloneNode().toDocument();
    const QDomNode root = document.documentElement();
    QDomDocumentFragment fragment = document.createDocumentFragment();
    fragment.appendChild(root.cloneNode());
    Run(receiver, document);
    Run(receiver, new QDomDocument(document));
    Run(receiver, root);
    Run(receiver, root.firstChild());
    Run(receiver, static_cast<const QDomNode &>(document));
    Run(receiver, fragment);
    return 0;
}
