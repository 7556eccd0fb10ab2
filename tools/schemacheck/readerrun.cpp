#include "readerrun.h"

#include <QFileInfo>

ReaderRun::Handler::Handler(ReaderRun &run, const QString &path)
    : XmlSchemaHandler(&run, path)
    , m_oRun(run)
{
}

bool ReaderRun::Handler::endDocument()
{
    m_oRun.BeforeResolution();
    m_oRun.m_bEnded = true;
    m_oRun.m_bResolved = XmlSchemaHandler::endDocument();
    return m_oRun.m_bResolved;
}

bool ReaderRun::Handler::fatalError(const QXmlParseException &exception)
{
    if (m_oRun.m_sFault.isEmpty()) {
        m_oRun.m_sFault = QStringLiteral("%1:%2: error: %3")
                              .arg(exception.lineNumber())
                              .arg(exception.columnNumber())
                              .arg(exception.message());
    }
    return XmlSchemaHandler::fatalError(exception);
}

ReaderRun::ReaderRun(const QString &path, Undeclared undeclared)
    : m_eUndeclared(undeclared)
    , m_oHandler(*this, QFileInfo(path).absoluteFilePath())
{
    m_oReader.setContentHandler(&m_oHandler);
    m_oReader.setErrorHandler(&m_oHandler);
    m_oReader.ReadFile(path);
    m_oHandler.GetMaps(m_hMissing, m_hOccurs, m_hTypes, m_hChoices);
}

ReaderRun::~ReaderRun() = default;

void ReaderRun::XmlUpdate(XmlEvent *)
{
}

QString ReaderRun::GetError(const QString &shownPath) const
{
    if (m_bEnded) {
        return QString();
    }
    if (!m_oReader.GetRefusal().isEmpty()) {
        return QStringLiteral("%1:1:1: error: %2").arg(shownPath, m_oReader.GetRefusal());
    }
    return shownPath + QLatin1Char(':') + (m_sFault.isEmpty() ? QStringLiteral("1:1: error: no XML") : m_sFault);
}

void ReaderRun::BeforeResolution()
{
    m_oHandler.GetMaps(m_hMissing, m_hOccurs, m_hTypes, m_hChoices);
    for (const auto &[name, counts] : m_hMissing) {
        if (!name.isEmpty() && m_hTypes.count(name) == 0) {
            m_lUndeclared.insert(name);
        }
    }
    for (const auto &[name, entry] : m_hTypes) {
        if (!entry.m_bUsed && entry.m_pFragment->hasChildNodes() && m_hMissing.count(name) == 0) {
            m_lCandidates.insert(name);
        }
    }
    if (m_eUndeclared == Undeclared::Invent) {
        InventDeclarations();
    }
}

void ReaderRun::InventDeclarations()
{
    const QString tag = QStringLiteral("xs:complexType");
    for (const QString &name : m_lUndeclared) {
        QXmlAttributes attributes;
        attributes.append(QStringLiteral("name"), QString(), QString(), name);
        m_oHandler.startElement(QString(), QString(), tag, attributes);
        m_oHandler.endElement(QString(), QString(), tag);
    }
}
