#include "schemamodel.h"

#include "dom/guardedreader.h"
#include "schema/localdeclaration.h"
#include "schema/schematags.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

// Without namespaces the reader leaves prefixes alone, as the schema reader does.
QString SchemaTag(const QString &tag)
{
    return tag.startsWith(schematags::kPrefix) ? schematags::WithoutPrefix(tag) : QString();
}

// Qt's reader doesn't tell where a prolog ends. A file whose bytes aren't its characters keeps what it tells.
void PlaceFirstTag(const QByteArray &content, SchemaNode &node)
{
    const int position = content.indexOf('<' + node.m_sQualifiedName.toUtf8());
    if (position >= 0) {
        node.m_iLine = content.left(position).count('\n') + 1;
        node.m_iColumn = position - content.left(position).lastIndexOf('\n');
    }
}

} // namespace

bool SchemaNode::Has(const char *name) const
{
    return std::any_of(m_lAttributes.begin(), m_lAttributes.end(),
                       [name](const auto &attribute) { return attribute.first == QLatin1String(name); });
}

QString SchemaNode::Get(const char *name) const
{
    // Of an attribute that stands twice nothing can be read at all.
    const auto found = std::find_if(m_lAttributes.begin(), m_lAttributes.end(),
                                    [name](const auto &attribute) { return attribute.first == QLatin1String(name); });
    return found == m_lAttributes.end() ? QString() : found->second;
}

int SchemaNode::MinOccurs() const
{
    return Has("minOccurs") ? Get("minOccurs").toInt() : 1;
}

int SchemaNode::MaxOccurs() const
{
    const QString text = Get("maxOccurs");
    if (text.isNull()) {
        return std::max(MinOccurs(), 1);
    }
    return text == QLatin1String("unbounded") ? LocalDeclaration::kUnbounded : text.toInt();
}

SchemaModel::SchemaModel(const QString &path)
    : m_sShownDirectory(path.contains(QLatin1Char('/')) ? path.section(QLatin1Char('/'), 0, -2) + QLatin1Char('/')
                                                        : QString())
    , m_oOpenFiles(QFileInfo(path).absoluteFilePath())
{
    if (!path.isEmpty()) {
        m_sError = ReadFile(QFileInfo(path).absoluteFilePath(), path, -1);
    }
}

QString SchemaModel::ReadFile(const QString &path, const QString &shown, int parent)
{
    const int number = m_lFiles.size();
    m_lFiles.append(shown);
    m_lNamespaces.emplace_back();
    QFile file(path);
    // A pipe or a device may block, or never end.
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile()) {
        return shown + QLatin1String(":1:1: error: no regular file");
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return QStringLiteral("%1:1:1: error: %2").arg(shown, file.errorString());
    }
    const QByteArray content = file.readAll();
    const int first = Count();
    QXmlStreamReader reader(content);
    reader.setNamespaceProcessing(false);
    ReadTags(reader, number, parent);
    if (Count() > first) {
        PlaceFirstTag(content, m_lNodes[static_cast<std::size_t>(first)]);
    }
    return reader.hasError() ? QStringLiteral("%1:%2:%3: error: %4")
                                   .arg(shown)
                                   .arg(reader.lineNumber())
                                   .arg(reader.columnNumber() + 1)
                                   .arg(reader.errorString())
                             : QString();
}

void SchemaModel::ReadTags(QXmlStreamReader &reader, int file, int parent)
{
    int open = parent;
    while (!reader.atEnd()) {
        SchemaNode node;
        node.m_iFile = file;
        node.m_iLine = static_cast<int>(reader.lineNumber());
        // Text is known to end by the next tag's first character.
        node.m_iColumn = static_cast<int>(reader.columnNumber()) + (reader.isCharacters() && !reader.isCDATA() ? 0 : 1);
        node.m_iParent = open;
        reader.readNext();
        if (reader.isStartElement()) {
            open = Count();
            AddNode(reader, std::move(node));
            ReadInclude(open);
        } else if (reader.isEndElement()) {
            m_lNodes[static_cast<std::size_t>(open)].m_iEnd = Count();
            open = At(open).m_iParent;
        }
    }
    for (; open != parent; open = At(open).m_iParent) {
        m_lNodes[static_cast<std::size_t>(open)].m_iEnd = Count();
    }
}

void SchemaModel::AddNode(const QXmlStreamReader &reader, SchemaNode node)
{
    node.m_sQualifiedName = reader.qualifiedName().toString();
    node.m_sTag = SchemaTag(node.m_sQualifiedName);
    node.m_iEnd = Count() + 1;
    for (const QXmlStreamAttribute &attribute : reader.attributes()) {
        const QString name = attribute.qualifiedName().toString();
        if (name == QLatin1String("xmlns") || name.startsWith(QLatin1String("xmlns:"))) {
            m_lNamespaces[static_cast<std::size_t>(node.m_iFile)].insert(name.mid(6), attribute.value().toString());
        } else {
            node.m_lAttributes.emplace_back(name, attribute.value().toString());
        }
    }
    if (node.m_iParent >= 0 && At(node.m_iParent).m_iFile == node.m_iFile) {
        const SchemaNode &parent = At(node.m_iParent);
        node.m_bFacet = parent.m_bFacet || parent.Is("restriction");
        node.m_bInType = parent.m_bInType || parent.IsType();
    }
    node.m_bGlobal = !node.m_bInType && (node.Is("element") || node.Is("attribute"));
    m_lNodes.push_back(std::move(node));
}

void SchemaModel::ReadInclude(int node)
{
    const QString location = At(node).FirstValue();
    if (!At(node).Is("include") || At(node).m_bFacet || At(node).m_lAttributes.empty()) {
        return;
    }
    std::size_t openTags = 1;
    const int file = At(node).m_iFile;
    for (int parent = At(node).m_iParent; parent >= 0 && At(parent).m_iFile == file; parent = At(parent).m_iParent) {
        ++openTags;
    }
    const QString path = m_oOpenFiles.PathOf(location);
    const QString refusal = m_oOpenFiles.Enter(path, openTags);
    if (!refusal.isEmpty()) {
        m_lLostIncludes.push_back({ node, refusal, true });
        return;
    }
    const QString error = ReadFile(path, m_sShownDirectory + location, node);
    // The library guards itself against files that the model can read.
    dom::GuardedReader reader;
    if (!reader.ReadFile(path) || !error.isEmpty()) {
        const QString reason = error.section(QLatin1String(": error: "), 1);
        m_lLostIncludes.push_back({ node, reason.isEmpty() ? reader.GetRefusal() : reason, false });
    }
    m_oOpenFiles.Leave();
}

void SchemaModel::ForChildren(int node, const std::function<void(int)> &call) const
{
    for (int child = node + 1; child < At(node).m_iEnd; child = At(child).m_iEnd) {
        call(child);
    }
}

int SchemaModel::Child(int node, std::initializer_list<const char *> tags) const
{
    for (int child = node + 1; child < At(node).m_iEnd; child = At(child).m_iEnd) {
        if (std::any_of(tags.begin(), tags.end(), [&](const char *tag) { return At(child).Is(tag); })) {
            return child;
        }
    }
    return -1;
}

int SchemaModel::Around(int node, const std::function<bool(const SchemaNode &)> &test) const
{
    const int file = At(node).m_iFile;
    for (int outer = At(node).m_iParent; outer >= 0 && At(outer).m_iFile == file; outer = At(outer).m_iParent) {
        if (test(At(outer))) {
            return outer;
        }
    }
    return -1;
}

int SchemaModel::ElementAround(int node) const
{
    return Around(node, [](const SchemaNode &outer) { return outer.Is("element"); });
}

int SchemaModel::DeclarationOf(int node) const
{
    const auto declares = [](const SchemaNode &outer) {
        return outer.IsDeclaration() && (outer.m_bGlobal || outer.Has("name"));
    };
    return declares(At(node)) ? node : Around(node, declares);
}

bool SchemaModel::IsOfForeignPrefix(int file, const QString &name) const
{
    const QString prefix = name.contains(QLatin1Char(':')) ? name.section(QLatin1Char(':'), 0, 0) : QString();
    return prefix != QLatin1String("xs")
        && m_lNamespaces[static_cast<std::size_t>(file)].value(prefix)
        == QLatin1String("http://www.w3.org/2001/XMLSchema");
}

QString SchemaModel::Place(int node) const
{
    return QStringLiteral("%1:%2").arg(m_lFiles.at(At(node).m_iFile)).arg(At(node).m_iLine);
}

bool SchemaModel::AreOnePlace(int one, int other) const
{
    return Place(one) == Place(other) && At(one).m_iColumn == At(other).m_iColumn;
}
