#include "dom/depthprobe.h"

#include <QXmlInputSource>
#include <QXmlLocator>
#include <QXmlSimpleReader>

namespace dom {

DepthProbe::DepthProbe(const ReadingLimits &limits)
    : m_oLimits(limits)
{
}

bool DepthProbe::Run(QIODevice *device)
{
    QXmlSimpleReader reader;
    // The same elements come, without the time that Qt takes to compare prefixes.
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespaces"), false);
    reader.setContentHandler(this);
    QXmlInputSource source(device);
    reader.parse(source);
    return m_sReason.isEmpty();
}

void DepthProbe::setDocumentLocator(QXmlLocator *locator)
{
    m_pLocator = locator;
}

bool DepthProbe::startElement(const QString & /*namespaceURI*/, const QString & /*localName*/,
                              const QString & /*qName*/, const QXmlAttributes &attributes)
{
    if (++m_iDepth > m_oLimits.m_iDepth) {
        return Refuse(QStringLiteral("more than %1 elements lie within each other").arg(m_oLimits.m_iDepth));
    }
    for (int index = 0; index < attributes.count(); ++index) {
        const QString name = attributes.qName(index);
        if (name.startsWith(QLatin1String("xmlns"))) {
            m_oNamespaces.Declare(name.mid(5));
        }
    }
    m_oNamespaces.BeginElement();
    return true;
}

bool DepthProbe::endElement(const QString & /*namespaceURI*/, const QString & /*localName*/, const QString & /*qName*/)
{
    --m_iDepth;
    m_oNamespaces.EndElement();
    return !m_oNamespaces.IsTooMuch()
        || Refuse(QStringLiteral("it has too many namespace prefixes on too many elements"));
}

bool DepthProbe::Refuse(const QString &reason)
{
    m_sReason = reason;
    m_iLine = m_pLocator == nullptr ? 0 : m_pLocator->lineNumber();
    return false;
}

} // namespace dom
