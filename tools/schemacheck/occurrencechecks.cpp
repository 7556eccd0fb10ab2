// Occurrences and choices: what the tables of the reader don't say as the schema does.

#include "subject.h"

#include <algorithm>

namespace {

// The names that may stand at several places of a report: repeated, or inside what is repeated.
class SeveralNames
{
public:
    explicit SeveralNames(ReaderRun &run)
    {
        if (run.HasTemplate()) {
            AddBelow(run, run.GetRoot(), false);
        }
    }

    bool Has(const QString &name) const { return m_hCounts.value(name) > 1; }

private:
    static bool MayRepeat(ReaderRun &run, const QDomElement &element)
    {
        const auto keys = run.GetOccurs().find(element.tagName());
        const QString parent = element.parentNode().nodeName();
        return keys != run.GetOccurs().end()
            && std::any_of(keys->second.begin(), keys->second.end(), [&](const auto &key) {
                   const bool isMany = key.first < 0 || (key.first > 1 && key.first != 100);
                   return isMany && std::find(key.second.begin(), key.second.end(), parent) != key.second.end();
               });
    }

    // The recursion ends at the greatest depth of a template.
    void AddBelow(ReaderRun &run, const QDomElement &element, bool isRepeated)
    {
        const bool isHere = isRepeated || MayRepeat(run, element);
        m_hCounts[element.tagName()] += isHere ? 2 : 1;
        for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
            AddBelow(run, child, isHere);
        }
    }

    QHash<QString, int> m_hCounts;
};

class OccurrenceChecks
{
public:
    OccurrenceChecks(const Subject &subject, Findings &findings)
        : m_oSubject(subject)
        , m_oModel(subject.m_oModel)
        , m_oFindings(findings)
        , m_oSeveral(subject.m_oRun)
    {
        for (const auto &[key, name] : subject.m_oRun.GetChoices()) {
            m_lMembers.insert(name);
        }
        m_lNextElement.resize(m_oModel.GetNodes().size() + 1, m_oModel.Count());
        for (std::size_t i = m_oModel.GetNodes().size(); i-- > 0;) {
            m_lNextElement[i] = m_oModel.GetNodes()[i].IsLocalElement() ? static_cast<int>(i) : m_lNextElement[i + 1];
        }
    }

    void CheckElement(int number);
    void CheckChoice(int number);

private:
    bool AreUsersCalledLike(const QString &type) const;

    const Subject &m_oSubject;
    const SchemaModel &m_oModel;
    Findings &m_oFindings;
    SeveralNames m_oSeveral;
    std::set<QString> m_lMembers;
    std::vector<int> m_lChoicesOfFiles;
    // For each tag the first local element that doesn't stand ahead of it.
    std::vector<int> m_lNextElement;
};

bool OccurrenceChecks::AreUsersCalledLike(const QString &type) const
{
    const std::vector<int> &users = m_oSubject.Users(type);
    return !users.empty()
        && std::all_of(users.begin(), users.end(), [&](int user) { return m_oModel.At(user).Get("name") == type; });
}

void OccurrenceChecks::CheckElement(int number)
{
    const SchemaNode &node = m_oModel.At(number);
    const QString key = node.Key();
    const int minOccurs = node.MinOccurs();
    const int maxOccurs = node.MaxOccurs();
    const int declaration = m_oModel.DeclarationOf(number);
    if (key.isEmpty() || minOccurs < 0 || declaration < 0) {
        return;
    }
    // A member of a choice goes without a value wherever it stands.
    const bool isOptional = minOccurs == 0 && m_lMembers.count(key) == 0;
    const bool isLimited = isOptional || maxOccurs < 0 || maxOccurs > std::max(minOccurs, 1);
    const bool isNamed = m_oModel.At(declaration).IsType();
    const QString owner = m_oModel.At(declaration).FirstValue();
    const int outer = m_oModel.ElementAround(number);
    const QString parent = isNamed || outer < 0 ? owner : m_oModel.At(outer).FirstValue();
    if (isLimited && isNamed && !AreUsersCalledLike(owner)) {
        m_oFindings.Add("named-occurs", number, { key, owner });
    } else if (isLimited && m_oSeveral.Has(parent)) {
        m_oFindings.Add("second-parent", number, { key, parent });
    }
    if (minOccurs > 0 && maxOccurs > 0 && maxOccurs % 100 == 0 && node.Has("maxOccurs") && !isNamed) {
        m_oFindings.Add("hundreds", number, { key, QString::number(maxOccurs), QString::number(maxOccurs / 100) });
    }
}

void OccurrenceChecks::CheckChoice(int number)
{
    const SchemaNode &choice = m_oModel.At(number);
    const auto isChoice = [](const SchemaNode &node) { return node.Is("choice"); };
    const int outer = m_oModel.Around(number, isChoice);
    std::vector<QString> members;
    bool hasInner = false;
    for (int inner = number + 1; inner < choice.m_iEnd; ++inner) {
        const SchemaNode &node = m_oModel.At(inner);
        hasInner = hasInner || node.Is("choice");
        if (node.IsLocalElement() && node.MinOccurs() >= 0) {
            members.push_back(node.Key());
        }
    }
    if (outer >= 0 && m_lNextElement[static_cast<std::size_t>(choice.m_iEnd)] < m_oModel.At(outer).m_iEnd) {
        m_oFindings.Add("choice-in-choice", number);
    }
    // Each end of a choice leads to the next hundred, also in a restriction.
    m_lChoicesOfFiles.resize(static_cast<std::size_t>(m_oModel.GetFiles().size()));
    const int first = 100 * m_lChoicesOfFiles[static_cast<std::size_t>(choice.m_iFile)]++;
    if (hasInner || outer >= 0 || choice.m_bFacet) {
        return;
    }
    if (members.size() > 100) {
        m_oFindings.Add("choice-size", number, { QString::number(members.size()) });
    }
    const auto &filed = m_oSubject.m_oRun.GetChoices();
    for (int i = 0; i < static_cast<int>(members.size()) && i < 100; ++i) {
        const auto entry = filed.find(first + i);
        if (entry != filed.end() && entry->second != members[static_cast<std::size_t>(i)]) {
            m_oFindings.Add("choice-include", number);
        }
    }
}

} // namespace

void CheckOccurrences(const Subject &subject, Findings &findings)
{
    OccurrenceChecks checks(subject, findings);
    for (int number = 0; number < subject.m_oModel.Count(); ++number) {
        const SchemaNode &node = subject.m_oModel.At(number);
        if (node.IsLocalElement()) {
            checks.CheckElement(number);
        } else if (node.Is("choice")) {
            checks.CheckChoice(number);
        }
    }
}
