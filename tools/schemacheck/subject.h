#pragma once

#include "readerrun.h"
#include "rules.h"
#include "schemamodel.h"

#include <QHash>
#include <QSet>

/// What the checks look at: the tags of a schema, and what the library's reader has made of them.
class Subject
{
public:
    Subject(const SchemaModel &model, ReaderRun &run);

    /// The tags that declare a name, as the reader takes it.
    const std::vector<int> &Declarations(const QString &name) const;
    /// The elements that refer to a type by this name.
    const std::vector<int> &Users(const QString &type) const;
    const QHash<QString, std::vector<int>> &AllDeclarations() const { return m_hDeclarations; }
    /// The name under which the tag's declaration is filed.
    QString OwnerOf(int node) const;
    /// Whether the element or global declaration had to wait for its type, since that wasn't complete yet.
    bool Waits(int node) const;
    /// Whether the declaration of a type brings elements.
    bool HasContent(const QString &type) const;
    /// The built-in type behind a type's name as the schema writes it, without "xs:"; empty if there is none.
    QString BuiltIn(const QString &type) const;
    /// The carrier of a type or a global attribute: the first element of its declaration, which holds type and facets.
    QDomElement Carrier(const QString &name) const;

    const SchemaModel &m_oModel;
    ReaderRun &m_oRun;

private:
    void AddWaiting(const QString &type, const std::list<MissingElement> &records);

    QHash<QString, std::vector<int>> m_hDeclarations;
    QHash<QString, std::vector<int>> m_hUsers;
    QSet<QString> m_lWaiting;
};

// Each adds what it finds.
void CheckTags(const Subject &subject, Findings &findings);
void CheckNames(const Subject &subject, Findings &findings);
void CheckTypes(const Subject &subject, Findings &findings);
void CheckValues(const Subject &subject, Findings &findings);
void CheckOccurrences(const Subject &subject, Findings &findings);
void CheckTemplate(const Subject &subject, Findings &findings);
