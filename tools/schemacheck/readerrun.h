#pragma once

#include "dom/guardedreader.h"
#include "events/itagwright.h"
#include "schema/xmlschemahandler.h"

#include <set>

/// One run of the library's own schema reader over a file, and all that came out of it.
class ReaderRun final : private ITagwright
{
public:
    enum class Undeclared {
        /// The run fails, as in a report.
        Fail,
        /// Names that are declared nowhere count as types without content, so that there is a template to look at.
        Invent
    };

    ReaderRun(const QString &path, Undeclared undeclared);
    ~ReaderRun();
    Q_DISABLE_COPY(ReaderRun)

    /// "file:line:column: error: why", if the file can't be read to its end; else empty.
    QString GetError(const QString &shownPath) const;
    /// Whether there is a template.
    bool HasTemplate() const { return m_bResolved; }
    /// The template's root element.
    QDomElement GetRoot() { return m_oHandler.GetDocument()->documentElement(); }

    const MissingMap &GetMissing() const { return m_hMissing; }
    const OccursMap &GetOccurs() const { return m_hOccurs; }
    const TypeMap &GetTypes() const { return m_hTypes; }
    const ChoiceMap &GetChoices() const { return m_hChoices; }
    /// Names that something refers to and nothing declares.
    const std::set<QString> &GetUndeclared() const { return m_lUndeclared; }
    /// The declarations among which the root was chosen.
    const std::set<QString> &GetCandidates() const { return m_lCandidates; }
    /// The limit that the reader has met, and where; empty if it has met none.
    QString GetBrokenLimit() const { return m_oHandler.GetBrokenLimit(); }

private:
    class Handler : public XmlSchemaHandler
    {
    public:
        Handler(ReaderRun &run, const QString &path);
        bool endDocument() override;
        bool fatalError(const QXmlParseException &exception) override;

    private:
        ReaderRun &m_oRun;
    };

    void XmlUpdate(XmlEvent *event) override;
    void BeforeResolution();
    void InventDeclarations();

    Undeclared m_eUndeclared;
    Handler m_oHandler;
    dom::GuardedReader m_oReader;
    bool m_bEnded = false;
    bool m_bResolved = false;
    QString m_sFault;
    MissingMap m_hMissing;
    OccursMap m_hOccurs;
    TypeMap m_hTypes;
    ChoiceMap m_hChoices;
    std::set<QString> m_lUndeclared;
    std::set<QString> m_lCandidates;
};
