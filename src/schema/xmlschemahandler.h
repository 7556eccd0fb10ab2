#pragma once

#include "schema/localdeclaration.h"
#include "schema/opentags.h"
#include "schema/schemarun.h"
#include "schema/schematables.h"

#include <QDomDocument>
#include <QString>
#include <QXmlDefaultHandler>

#include <memory>

class ITagwright;

/// Reads one XSD file in one SAX pass into a template document and four tables: one skeleton of the schema's root
/// element, whose elements carry type, default, facets and schema attributes as plain attributes, and what the schema
/// allows beyond that skeleton.
///
/// To be set as content handler and as error handler of a QXmlSimpleReader with its default features. A handler serves
/// one run over one file; an include is read by a handler of its own on the same stack. It reads a fixed subset of XSD,
/// told by the literal prefix "xs:", and passes over everything else without a word. All callbacks but endDocument()
/// always return true.
class XmlSchemaHandler : public QXmlDefaultHandler
{
public:
    /// The handler of a schema file. `pCallback` is handed on to the handlers of includes and never called; it must not
    /// be null: a null one is traced, and a run of such a handler reads nothing and ends with false. `schemaPath` has
    /// "/" as separator; includes are sought from its directory.
    XmlSchemaHandler(ITagwright *pCallback, QString schemaPath);

    /// A handler that goes on with the tables of another one, whose elements and fragments it borrows.
    XmlSchemaHandler(ITagwright *pCallback, QString schemaPath, MissingMap missing, OccursMap occurs, TypeMap types,
                     ChoiceMap choices);

    /// Ends the template document, and what the tables of the run point to.
    ~XmlSchemaHandler() override = default;
    Q_DISABLE_COPY(XmlSchemaHandler)

    /// For an owner that reads nothing but the template: the root is handed over to it instead of copied, and its entry
    /// in the tables is left with an empty fragment. To be called before the run.
    void SetRootMoves() { m_bRootMoves = true; }

    /// For an owner that wants to know what the schema says of each element of the template. To be called before the
    /// run; complete behind one that has succeeded, by then the template bears the marks.
    std::shared_ptr<const Declarations> CollectDeclarations();

    /// The template: empty until a run has succeeded, then the instruction and the root element. Never null; the
    /// handler keeps it.
    QDomDocument *GetDocument() { return m_pDocument.get(); }

    /// Replaces the four arguments by copies of the tables. What they point to lives as long as the top handler of the
    /// run.
    void GetMaps(MissingMap &missing, OccursMap &occurs, TypeMap &types, ChoiceMap &choices);

    /// The limit that the run has broken, and where, as a sentence without its end; empty if it has broken none.
    QString GetBrokenLimit() const { return m_pRun->GetBrokenLimit(); }

    /// Files a reference that waits for the declaration of `name`. `count` is how often the target is to be applied (0
    /// counts as 1). The elements of the record must outlive the run.
    void AddMissingElement(const QString &name, const int &count, MissingElement record);

    void setDocumentLocator(QXmlLocator *locator) override { m_pLocator = locator; }
    bool startDocument() override { return true; }
    /// Resolves what waits, chooses the root and builds the template. False, traced, if a name is declared nowhere, if
    /// names wait for each other in a circle, or if the template breaks a limit.
    bool endDocument() override;
    bool startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                      const QXmlAttributes &atts) override;
    bool endElement(const QString &namespaceURI, const QString &localName, const QString &qName) override;
    bool characters(const QString & /*text*/) override { return true; }

private:
    using TagReader = void (XmlSchemaHandler::*)(const QXmlAttributes &atts);

    // xmlschemahandler.cpp: dispatch, types and global declarations, includes, the root.
    static TagReader ReaderOf(const QString &tag);
    void ReadTypeStart(const QXmlAttributes &atts);
    void EndType(bool movesUp);
    void MoveDown();
    void StartDeclaration(const QString &name, bool isType);
    void OpenFragment(QDomDocumentFragment *fragment, bool hasPlaceholders);
    void ReadGlobal(const QXmlAttributes &atts);
    void ReadInclude(const QXmlAttributes &atts);
    void RunInclude(const QString &path);
    void ChooseRoot();
    void BuildTemplate();
    bool IsReading() const;
    TypeEntry *FileEntry(const QString &name, TypeEntry entry);
    const QDomDocumentFragment *UseComplete(const QString &name);
    QString WhereText() const;
    void TracePassedOver() const;

    // xmlschemaelements.cpp: local elements and choices.
    void ReadElement(const QXmlAttributes &atts);
    void ReadLocalElement(const QXmlAttributes &atts);
    void ReadChoice(const QXmlAttributes &atts);
    void MakeCopies(const LocalDeclaration &local);
    void MakeReferences(const LocalDeclaration &local);
    void FileLimits(const LocalDeclaration &local);
    bool ApplyType(const QString &type, QDomElement target);
    void WaitForType(const LocalDeclaration &local);
    void WaitForCopies(const LocalDeclaration &local);
    void WaitForReference(const LocalDeclaration &local);
    QDomElement *AppendPlace();
    void RaiseOpenRefs();
    QDomNode ContentParent() const;

    // xmlschemaattributes.cpp: attributes, restrictions and extensions, and the elements that they write to.
    void ReadAttribute(const QXmlAttributes &atts);
    void ReadRestriction(const QXmlAttributes &atts);
    void ReadFacet(const QXmlAttributes &atts);
    void ReadExtension(const QXmlAttributes &atts);
    void WaitForAttributes(const QString &name, const QDomElement &target, bool isBase);
    QDomElement LastElement() const;
    QDomElement LocalTarget() const;
    QDomElement AttributeTarget();
    QDomElement RestrictionTarget();
    QDomElement ExtensionTarget(bool isBuiltIn);
    QDomElement Carrier();
    QDomElement Restriction();

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
    bool m_bRootMoves = false;
    QDomElement *m_pCurrentElement = nullptr;
    std::unique_ptr<QDomDocument> m_pDocument;
    QDomDocumentFragment *m_pFragment = nullptr;
    // The entry of m_sGlobalName. Entries keep their place in the table, also when it moves to an include and back.
    TypeEntry *m_pTypeEntry = nullptr;
    MissingElement *m_pMissingElement = nullptr;
    QDomElement *m_pLocalElement = nullptr;
    int m_iParticle = -1; // of the local element that is read, where declarations are collected
    QString m_sGlobalName;
    QString m_sSchemaPath;

    // The handler of an include shares the run of the handler that has reached the include.
    std::shared_ptr<SchemaRun> m_pRun;
    QXmlLocator *m_pLocator = nullptr;

    OpenTags m_oOpenTags;
    // Whether m_pFragment belongs to a named type: no other declaration takes placeholders.
    bool m_bHasPlaceholders = false;
    // The placeholder that gives its attributes to elements of the named type; null as long as nothing needs it.
    QDomElement m_oCarrier;
    // The placeholder of the restriction that is open; null as long as nothing needs it.
    QDomElement m_oRestriction;
};
