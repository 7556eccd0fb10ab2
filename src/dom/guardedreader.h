#pragma once

#include <QString>
#include <QXmlDefaultHandler>
#include <QXmlSimpleReader>

#include <memory>

class QDomDocument;

namespace dom {

/// Qt's SAX reader for what a stranger may have written. It stops, as at a fault, where elements or content models nest
/// too deep for Qt's recursion on the caller's stack, and where entities or namespaces would keep Qt too busy; see
/// dom/limits.h. Up to there the handlers hear what Qt's own reader would tell them. A reader reads once.
class GuardedReader : public QXmlSimpleReader
{
public:
    GuardedReader();
    ~GuardedReader() override;
    Q_DISABLE_COPY(GuardedReader)

    /// Reads a file, which is opened once. False if it is faulty, or refused: what exists and is neither a regular file
    /// nor a Qt resource isn't opened, since it may block or never end. With a document this is filled, with the nodes
    /// that its setContent makes, and nobody else hears of anything; up to a fault they stay.
    bool ReadFile(const QString &path, QDomDocument *document = nullptr);
    bool ReadText(const QString &text, QDomDocument *document = nullptr);

    /// Why the input wasn't read, or no further: a sentence, with file and line. Empty if it was merely faulty, or
    /// fine.
    const QString &GetRefusal() const { return m_sRefusal; }

    void setContentHandler(QXmlContentHandler *handler) override { m_pContent = handler; }
    void setLexicalHandler(QXmlLexicalHandler *handler) override { m_pLexical = handler; }
    void setDeclHandler(QXmlDeclHandler *handler) override { m_pDeclarations = handler; }

private:
    class Guard;
    class Source;

    bool Read(Source &source, QDomDocument *document);

    std::unique_ptr<Guard> m_pGuard;
    /// The character that Qt's reader has taken last.
    QChar m_oTaken;
    // Where calls go. Not owned, but for m_oNobody.
    QXmlDefaultHandler m_oNobody;
    QXmlContentHandler *m_pContent = &m_oNobody;
    QXmlLexicalHandler *m_pLexical = &m_oNobody;
    QXmlDeclHandler *m_pDeclarations = &m_oNobody;
    QString m_sRefusal;
    /// The file, with which the sentence of a refusal begins.
    QString m_sName;
};

} // namespace dom
