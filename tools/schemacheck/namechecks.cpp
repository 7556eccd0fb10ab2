// Names: what is declared, what refers to it, and which of it is the root.

#include "subject.h"

#include "schema/schematags.h"

#include <algorithm>

namespace {

// How many characters have to change to make one name of the other.
int Distance(const QString &from, const QString &to)
{
    std::vector<int> row(static_cast<std::size_t>(to.size()) + 1);
    for (std::size_t i = 0; i < row.size(); ++i) {
        row[i] = static_cast<int>(i);
    }
    for (int i = 0; i < from.size(); ++i) {
        int diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 1; j < row.size(); ++j) {
            const bool isEqual = from.at(i).toLower() == to.at(static_cast<int>(j) - 1).toLower();
            const int changed = std::min({ diagonal + (isEqual ? 0 : 1), row[j - 1] + 1, row[j] + 1 });
            diagonal = row[j];
            row[j] = changed;
        }
    }
    return row.back();
}

QString NearestName(const Subject &subject, const QString &name)
{
    constexpr int kMostNames = 20000;
    QString nearest;
    int least = std::max(2, int(name.size()) / 3) + 1;
    const auto &all = subject.AllDeclarations();
    for (auto other = all.begin(); other != all.end() && all.size() < kMostNames; ++other) {
        const bool isNear = std::abs(other.key().size() - name.size()) < least && name.size() < 200;
        const int distance = isNear ? Distance(name, other.key()) : least;
        if (distance < least || (distance == least && !nearest.isEmpty() && other.key() < nearest)) {
            least = distance;
            nearest = other.key();
        }
    }
    return nearest;
}

// The attribute by which a tag refers to a name, if the reader looks that name up.
QString Reference(const SchemaNode &node)
{
    if (node.m_bFacet) {
        return QString();
    }
    if (node.Is("element")) {
        return node.IsLocalElement() ? node.Needed() : node.Get("type");
    }
    if (node.Is("attribute")) {
        return node.m_bGlobal ? node.Get("type") : node.Get("name").isEmpty() ? node.Get("ref") : QString();
    }
    return node.Is("extension") && node.Has("base") ? node.Get("base") : QString();
}

void CheckReference(const Subject &subject, int number, Findings &findings, int &searches)
{
    const SchemaNode &node = subject.m_oModel.At(number);
    const bool isRestriction = node.Is("restriction") && !node.m_bFacet;
    const QString name = isRestriction ? node.Get("base") : Reference(node);
    const QString local = LocalName(name);
    const bool isMissing = isRestriction || subject.m_oRun.GetUndeclared().count(name) > 0;
    if (name.isEmpty() || schematags::HasPrefix(name) || !isMissing) {
        return;
    }
    if (subject.m_oModel.IsOfForeignPrefix(node.m_iFile, name)
        && (!isRestriction || subject.Declarations(name).empty())) {
        findings.Add("builtin-prefix", number, { name, local });
    } else if (isRestriction) {
        findings.Add("user-restriction", number, { name });
    } else if (name != local && !subject.Declarations(local).empty()) {
        findings.Add("name-prefix", number, { name, local });
    } else {
        constexpr int kMostSearches = 200;
        const QString nearest = ++searches > kMostSearches ? QString() : NearestName(subject, local);
        findings.Add("undeclared", number,
                     { name,
                       nearest.isEmpty() ? QStringLiteral("declare it")
                                         : QStringLiteral("write \"%1\", or declare it").arg(nearest) });
    }
}

// The second of two declarations, unless it is the first one in a file that is included twice.
void CheckPair(const SchemaModel &model, int first, int second, Findings &findings)
{
    const SchemaNode &node = model.At(second);
    if ((node.m_bGlobal || node.Has("name")) && !model.AreOnePlace(first, second)) {
        findings.Add("declared-twice", second, { node.FirstValue(), model.Place(first) });
    }
}

void CheckDeclaredTwice(const Subject &subject, Findings &findings)
{
    for (const std::vector<int> &nodes : subject.AllDeclarations()) {
        for (std::size_t i = 1; i < nodes.size(); ++i) {
            CheckPair(subject.m_oModel, nodes[i - 1], nodes[i], findings);
        }
    }
}

void CheckRoot(const Subject &subject, Findings &findings)
{
    const auto &candidates = subject.m_oRun.GetCandidates();
    const QString root = candidates.empty() ? QString() : *candidates.rbegin();
    for (const QString &name : candidates) {
        const std::vector<int> &nodes = subject.Declarations(name);
        const bool isElement = !nodes.empty() && subject.m_oModel.At(nodes.back()).Is("element");
        if (!nodes.empty() && !isElement) {
            findings.Add("root-attribute", nodes.back(), { name });
        } else if (!nodes.empty() && name != root) {
            findings.Add("root-left-out", nodes.back(), { name, root });
        }
    }
    if (candidates.empty() && subject.m_oModel.Count() > 0 && !findings.Has("prefix")) {
        findings.Add("no-root", 0);
    }
}

void CheckLimit(const Subject &subject, Findings &findings)
{
    const QString limit = subject.m_oRun.GetBrokenLimit();
    if (!limit.isEmpty()) {
        findings.Add("limit", 0, { limit });
    }
}

// A run that has failed leaves open what waits for itself.
void CheckCircle(const Subject &subject, Findings &findings)
{
    for (const auto &[name, counts] : subject.m_oRun.GetMissing()) {
        const auto entry = subject.m_oRun.GetTypes().find(name);
        const bool isOpen = entry != subject.m_oRun.GetTypes().end() && entry->second.m_iOpenRefs > 0;
        if (isOpen && !subject.Declarations(name).empty()) {
            findings.Add("circle", subject.Declarations(name).back(), { name });
        }
    }
}

} // namespace

void CheckNames(const Subject &subject, Findings &findings)
{
    int searches = 0;
    for (int number = 0; number < subject.m_oModel.Count(); ++number) {
        CheckReference(subject, number, findings, searches);
    }
    CheckDeclaredTwice(subject, findings);
    CheckRoot(subject, findings);
    CheckLimit(subject, findings);
    if (!subject.m_oRun.HasTemplate() && !findings.Has("limit")) {
        CheckCircle(subject, findings);
    }
}
