#pragma once

#include "schema/localdeclaration.h"
#include "schema/namedtype.h"
#include "schema/opentags.h"
#include "schema/schemarun.h"
#include "schema/schematables.h"
#include "schema/templatecontent.h"

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
    ~XmlSchemaHandler() override;
    Q_DISABLE_COPY(XmlSchemaHandler)

    /// For an owner that reads nothing but the template: the root's content is handed over to it instead of copied, and
    /// its entry in the tables is left with an empty fragment. To be called before the run.
    void SetRootMoves();

    /// The template: empty until a run has succeeded, then the instruction and the root element. Never null; the
    /// handler keeps it.
    QDomDocument *GetDocument();

    /// Replaces the four arguments by copies of the tables. What they point to lives as long as the top handler of the
    /// run.
    void GetMaps(MissingMap &missing, OccursMap &occurs, TypeMap &types, ChoiceMap &choices);

    /// Files a reference that waits for the declaration of `name`. `count` is how often the target is to be applied (0
    /// counts as 1). The elements of the record must outlive the run.
    void AddMissingElement(const QString &name, const int &count, MissingElement record);

    void setDocumentLocator(QXmlLocator *locator) override;
    bool startDocument() override;
    /// Resolves what waits, chooses the root and builds the template. False, traced, if a name is declared nowhere, if
    /// names wait for each other in a circle, or if the template breaks a limit.
    bool endDocument() override;
    bool startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                      const QXmlAttributes &atts) override;
    bool endElement(const QString &namespaceURI, const QString &localName, const QString &qName) override;
    bool characters(const QString &text) override;

private:
    using TagReader = void (XmlSchemaHandler::*)(const QXmlAttributes &atts);

    // An element to write to, and the fragment that it stands in. A null element takes nothing.
    struct Target
    {
        QDomElement m_oElement;
        QDomDocumentFragment *m_pFragment = nullptr;
    };

    static TagReader ReaderOf(const QString &tag);
    void ReadInclude(const QXmlAttributes &atts);
    void ReadTypeStart(const QXmlAttributes &atts);
    void ReadElement(const QXmlAttributes &atts);
    void ReadGlobal(const QXmlAttributes &atts);
    void ReadGlobalAttributes(const QXmlAttributes &atts);
    void ReadLocalElement(const QXmlAttributes &atts);
    void ReadAttribute(const QXmlAttributes &atts);
    void ReadRestriction(const QXmlAttributes &atts);
    void ReadExtension(const QXmlAttributes &atts);
    void ReadChoice(const QXmlAttributes &atts);
    void ReadFacet(const QXmlAttributes &atts);

    void EndType(OpenTags::Kind kind);
    void EndRestriction();
    void EndChoice();

    void MoveDown();
    void MoveUp();
    void Place(const QDomNode &node);
    void MakeCopies(const LocalDeclaration &local);
    void MakeLocalElement(const LocalDeclaration &local);
    void MakeReferences(const LocalDeclaration &local);
    void FileLimits(const LocalDeclaration &local);

    bool ApplyType(const QString &type, Target target, int level);
    void ApplyReference(const QDomDocumentFragment &source, Target target);
    void ApplyBase(const QDomDocumentFragment &source, Target target);
    void SetAttribute(Target target, const QString &name, const QString &value);

    void WaitForType(const LocalDeclaration &local);
    void WaitForCopies(const LocalDeclaration &local);
    void MakeModel(const LocalDeclaration &local);
    QDomElement *AppendPlace();
    void WaitForReference(const LocalDeclaration &local);
    void WaitForAttributes(const QString &name, const Target &target, RecordKind kind);
    void RaiseOpenRefs();
    void FileRecord(const QString &name, int count, MissingElement record, RecordNote note);

    Target CurrentTarget() const;
    Target LastTarget() const;
    Target LocalTarget() const;
    Target CarrierTarget();
    Target RestrictionTarget();
    Target AttributeTarget();
    Target ExtensionTarget();

    bool IsReading() const;
    void SkipContent();
    void FileEntry(const QString &name, TypeEntry entry);
    TypeEntry *FindComplete(const QString &name);
    TypeEntry *UseComplete(const QString &name);
    const content::AttributeList &AttributesOf(const QDomDocumentFragment &fragment);
    QDomDocumentFragment *TargetFragment() const;
    int TargetLevel() const;
    bool ResolveReferences();
    bool ChooseRoot();
    void BuildTemplate(bool whole);

    void Join(SchemaRun &run, const QString &filePath);
    QString IncludePath(const QString &location) const;
    void RunInclude(const QString &path);

    bool CheckBudget(bool allowed);
    Extent ExtentOfCopy(const LocalDeclaration &local);
    QString WhereText() const;
    void TraceLimit() const;
    void TracePassedOver() const;
    void TraceRefusedInclude(const QString &path) const;

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
    TypeEntry *m_pTypeEntry = nullptr;
    MissingElement *m_pMissingElement = nullptr;
    QDomElement *m_pLocalElement = nullptr;
    QString m_sGlobalName;
    QString m_sSchemaPath;

    // The run that this handler has begun itself; the handler of an include joins the one that includes it.
    std::unique_ptr<SchemaRun> m_pOwnRun;
    SchemaRun *m_pRun = nullptr;
    bool m_bIsInclude = false;
    // The file that is read here, for traces.
    QString m_sFilePath;
    QXmlLocator *m_pLocator = nullptr;

    OpenTags m_oOpenTags;
    // Tags that are open below one that is passed over with its content, that one included.
    int m_iSkippedTags = 0;
    NamedType m_oNamedType;
    // The entry of m_sGlobalName. Entries keep their place in the table, also when it moves to an include and back.
    TypeEntry *m_pGlobalEntry = nullptr;
    // Where m_pCurrentElement stands: its declaration's fragment, and its level there (1 for the declared element).
    QDomDocumentFragment *m_pGlobalFragment = nullptr;
    int m_iCurrentLevel = 0;
    // The fragment that m_pLocalElement stands in.
    QDomDocumentFragment *m_pLocalFragment = nullptr;
};
