#pragma once

#include "schema/localelement.h"
#include "schema/opentags.h"
#include "schema/schemaarena.h"
#include "schema/schematables.h"

#include <QDomDocument>
#include <QString>
#include <QXmlDefaultHandler>

#include <memory>

class ITagwright;

/// Reads one XSD file in one SAX pass into a template document and four tables.
class XmlSchemaHandler : public QXmlDefaultHandler
{
public:
    XmlSchemaHandler(ITagwright *pCallback, QString schemaPath);
    ~XmlSchemaHandler() override;
    Q_DISABLE_COPY(XmlSchemaHandler)

    QDomDocument *GetDocument();
    void GetMaps(MissingMap &missing, OccursMap &occurs, TypeMap &types, ChoiceMap &choices);
    void AddMissingElement(const QString &name, const int &count, MissingElement record);

    void setDocumentLocator(QXmlLocator *locator) override;
    bool startDocument() override;
    bool endDocument() override;
    bool startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                      const QXmlAttributes &atts) override;
    bool endElement(const QString &namespaceURI, const QString &localName, const QString &qName) override;
    bool characters(const QString &text) override;

private:
    void ReadTag(const QXmlAttributes &atts);
    void ReadTypeStart(const QXmlAttributes &atts);
    void ReadGlobal(const QXmlAttributes &atts);
    void ReadGlobalAttributes(const QXmlAttributes &atts);
    void ReadLocalElement(const QXmlAttributes &atts);
    void ReadRestriction(const QXmlAttributes &atts);
    void ReadFacet(const QXmlAttributes &atts);

    void EndType(OpenTags::Kind kind);
    void EndRestriction();

    void MoveDown();
    void MoveUp();
    void MakeCopies(const LocalElement &local);
    QDomElement MakeLocalElement(const LocalElement &local);
    bool ApplyType(const QString &type, QDomElement &element);
    QDomElement RestrictionTarget();
    QDomElement GlobalTarget() const;
    QDomElement LocalTarget() const;
    QDomElement RestrictionPlaceholder();

    bool IsReading() const;
    void SkipContent();
    void FileEntry(const QString &name, TypeEntry entry);
    TypeEntry *UseComplete(const QString &name);
    bool ChooseRoot();
    void BuildTemplate(bool whole);
    void TracePassedOver() const;

    QString m_sTag;
    ITagwright *m_pCallback = nullptr;
    MissingMap m_MissingMap;
    OccursMap m_OccursMap;
    TypeMap m_TypeMap;
    ChoiceMap m_ChoiceMap;
    int m_iTypeDepth = 0;
    int m_iEnumerationIndex = 1;
    int m_iChoiceKey = 0;
    bool m_bInRestriction = false;
    bool m_bInChoice = false;
    bool m_bInGlobal = false;
    bool m_bInGlobalAttribute = false;
    bool m_bHasInclude = false;
    QDomElement *m_pCurrentElement = nullptr;
    std::unique_ptr<QDomDocument> m_pDocument;
    QDomDocumentFragment *m_pFragment = nullptr;
    TypeEntry *m_pTypeEntry = nullptr;
    MissingElement *m_pMissingElement = nullptr;
    QDomElement *m_pLocalElement = nullptr;
    QString m_sGlobalName;
    QString m_sSchemaPath;

    std::unique_ptr<SchemaArena> m_pArena;
    OpenTags m_oOpenTags;
    // Tags that are open below one that is passed over with its content, that one included.
    int m_iSkippedTags = 0;
    // m_pFragment belongs to a named type; a global declaration's fragment takes no placeholder.
    bool m_bNamedFragment = false;
    // What a named type gives to an element that refers to it. Null until it is needed.
    QDomElement m_oCarrier;
    // The placeholder of the restriction that is open in a named type.
    QDomElement m_oRestriction;
    QXmlLocator *m_pLocator = nullptr;
};
