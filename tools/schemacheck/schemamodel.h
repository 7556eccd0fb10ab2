#pragma once

#include "schema/openfiles.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <utility>
#include <vector>

class QXmlStreamReader;

/// A start tag of a schema or of one of its includes, with its place.
struct SchemaNode
{
    /// The tag without the prefix "xs:"; empty for any other tag, which the schema reader passes over.
    QString m_sTag;
    QString m_sQualifiedName;
    /// In their order, without namespace declarations.
    std::vector<std::pair<QString, QString>> m_lAttributes;
    int m_iFile = 0;
    int m_iLine = 1;
    int m_iColumn = 1;
    /// -1 for the first tag of the top schema; the include for the first tag of an included file.
    int m_iParent = -1;
    /// The number behind that of the last tag inside this one.
    int m_iEnd = 0;
    /// An element or attribute outside all types, which declares a name.
    bool m_bGlobal = false;
    bool m_bInType = false;
    /// A tag inside a restriction, which counts as a facet whatever it is.
    bool m_bFacet = false;

    bool Is(const char *tag) const { return m_sTag == QLatin1String(tag); }
    bool IsType() const { return Is("complexType") || Is("simpleType"); }
    /// Whether the tag makes an entry among the names: a global declaration, or a type with any attribute.
    bool IsDeclaration() const { return !m_bFacet && !m_lAttributes.empty() && (m_bGlobal || IsType()); }
    /// An element inside a type.
    bool IsLocalElement() const { return Is("element") && !m_bGlobal && !m_bFacet; }
    bool Has(const char *name) const;
    QString Get(const char *name) const;
    /// The name, else the reference.
    QString Key() const { return Get("name").isEmpty() ? Get("ref") : Get("name"); }
    /// The declaration that an element needs: what it refers to in place of a name of its own, else its type.
    QString Needed() const { return Get("name").isEmpty() ? Get("ref") : Get("type"); }
    QString FirstValue() const { return m_lAttributes.empty() ? QString() : m_lAttributes.front().second; }
    /// The limits as the schema reader takes them; -1 stands for "unbounded".
    int MinOccurs() const;
    int MaxOccurs() const;
};

/// The name without any prefix.
inline QString LocalName(const QString &name)
{
    return name.section(QLatin1Char(':'), -1);
}

/// A schema and its includes as one list of tags, in the order in which the schema reader meets them.
class SchemaModel
{
public:
    /// Why an include brings nothing, or not all of its file.
    struct LostInclude
    {
        int m_iNode = 0;
        QString m_sReason;
        /// The schema reader doesn't open the file at all.
        bool m_bRefused = false;
    };

    explicit SchemaModel(const QString &path);
    Q_DISABLE_COPY(SchemaModel)

    const std::vector<SchemaNode> &GetNodes() const { return m_lNodes; }
    const SchemaNode &At(int node) const { return m_lNodes[static_cast<std::size_t>(node)]; }
    int Count() const { return static_cast<int>(m_lNodes.size()); }
    /// As they are to be shown: the top schema first, and each file as often as it is read.
    const QStringList &GetFiles() const { return m_lFiles; }
    const std::vector<LostInclude> &GetLostIncludes() const { return m_lLostIncludes; }
    /// Why the top schema itself can't be read, with line and column; empty if it can.
    const QString &GetError() const { return m_sError; }

    /// Calls for each child tag, in order.
    void ForChildren(int node, const std::function<void(int)> &call) const;
    /// The first child of one of these tags, -1 if there is none.
    int Child(int node, std::initializer_list<const char *> tags) const;
    /// The innermost tag around this one, in the same file, that the test accepts; -1 if there is none.
    int Around(int node, const std::function<bool(const SchemaNode &)> &test) const;
    /// The element around the tag that the schema reader takes for its parent; -1 directly in a type.
    int ElementAround(int node) const;
    /// The global declaration or named type around the tag, or the tag itself.
    int DeclarationOf(int node) const;

    /// Whether a name leads to the namespace of schemas by a prefix other than "xs", or by none.
    bool IsOfForeignPrefix(int file, const QString &name) const;
    /// "file:line".
    QString Place(int node) const;
    /// Whether two tags are one, in a file that is read twice.
    bool AreOnePlace(int one, int other) const;

private:
    QString ReadFile(const QString &path, const QString &shown, int parent);
    void ReadTags(QXmlStreamReader &reader, int file, int parent);
    void AddNode(const QXmlStreamReader &reader, SchemaNode node);
    void ReadInclude(int node);

    QString m_sShownDirectory;
    OpenFiles m_oOpenFiles;
    std::vector<SchemaNode> m_lNodes;
    QStringList m_lFiles;
    std::vector<QHash<QString, QString>> m_lNamespaces;
    std::vector<LostInclude> m_lLostIncludes;
    QString m_sError;
};
