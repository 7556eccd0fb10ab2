#include "subject.h"

#include "schema/schematags.h"
#include "schema/templatemaker.h"

namespace {

const std::vector<int> &Find(const QHash<QString, std::vector<int>> &lists, const QString &name)
{
    static const std::vector<int> none;
    const auto found = lists.constFind(name);
    return found == lists.constEnd() ? none : *found;
}

QString WaitingKey(const QString &type, const QString &owner, const QString &element)
{
    return type + QLatin1Char('\n') + owner + QLatin1Char('\n') + element;
}

} // namespace

Subject::Subject(const SchemaModel &model, ReaderRun &run)
    : m_oModel(model)
    , m_oRun(run)
{
    for (int i = 0; i < model.Count(); ++i) {
        const SchemaNode &node = model.At(i);
        if (node.IsDeclaration()) {
            m_hDeclarations[node.FirstValue()].push_back(i);
        }
        if (node.Is("element") && !node.m_bFacet && node.Has("type")) {
            m_hUsers[node.Get("type")].push_back(i);
        }
    }
    for (const auto &[name, counts] : run.GetMissing()) {
        for (const auto &[count, records] : counts) {
            AddWaiting(name, records);
        }
    }
}

void Subject::AddWaiting(const QString &type, const std::list<MissingElement> &records)
{
    for (const MissingElement &record : records) {
        // The elements of the records outlive the run, and have a name unless they are placeholders.
        if (!record.m_bAttribute && record.m_pParent != nullptr) {
            m_lWaiting.insert(WaitingKey(type, record.m_sOwner, record.m_pParent->tagName()));
        }
    }
}

const std::vector<int> &Subject::Declarations(const QString &name) const
{
    return Find(m_hDeclarations, name);
}

const std::vector<int> &Subject::Users(const QString &type) const
{
    return Find(m_hUsers, type);
}

QString Subject::OwnerOf(int node) const
{
    const int declaration = m_oModel.DeclarationOf(node);
    return declaration < 0 ? QString() : m_oModel.At(declaration).FirstValue();
}

bool Subject::Waits(int node) const
{
    const SchemaNode &tag = m_oModel.At(node);
    return m_lWaiting.contains(WaitingKey(tag.Get("type"), OwnerOf(node), tag.Get("name")));
}

bool Subject::HasContent(const QString &type) const
{
    const auto entry = m_oRun.GetTypes().find(type);
    if (entry == m_oRun.GetTypes().end()) {
        return false;
    }
    for (QDomNode child = entry->second.m_pFragment->firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (!TemplateMaker::IsPlaceholder(child)) {
            return true;
        }
    }
    return false;
}

QString Subject::BuiltIn(const QString &type) const
{
    return schematags::HasPrefix(type) ? schematags::WithoutPrefix(type)
                                       : Carrier(type).attribute(QStringLiteral("type"));
}

QDomElement Subject::Carrier(const QString &name) const
{
    const auto entry = m_oRun.GetTypes().find(name);
    return entry == m_oRun.GetTypes().end() ? QDomElement() : entry->second.m_pFragment->firstChild().toElement();
}
