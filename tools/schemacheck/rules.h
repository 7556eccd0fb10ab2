#pragma once

#include "schemamodel.h"

#include <QStringList>

#include <set>
#include <utility>
#include <vector>

/// A trap of the schema subset.
struct Rule
{
    enum Flag {
        Plain = 0,
        /// The template comes out otherwise than the schema says.
        Shapes = 1,
        /// A report with valid output isn't affected.
        ValidOutput = 2
    };

    const char *m_sIdentifier;
    /// What the schema reader does. "%1", "%2" ... stand for what the finding knows; in the cure likewise.
    const char *m_sSentence;
    const char *m_sCure;
    /// The heading of docs/schema-subset.md, or the words in bold there, that explain it.
    const char *m_sHeading;
    int m_iFlags = Plain;
};

const std::vector<Rule> &AllRules();
/// Null if there is none of that identifier.
const Rule *FindRule(const QString &identifier);
/// The rules as the table of the manual has them, in Markdown.
QString RulesAsManual();

/// A rule that a place of the schema breaks.
struct Finding
{
    const Rule *m_pRule = nullptr;
    int m_iNode = 0;
    QStringList m_lTexts;

    QString Sentence() const;
    QString Cure() const;
};

class Findings
{
public:
    /// Each rule counts once at each tag.
    void Add(const char *rule, int node, const QStringList &texts = {});
    bool Has(const char *rule) const;
    bool HasShaping() const { return m_bHasShaping; }
    const std::vector<Finding> &GetAll() const { return m_lFindings; }

private:
    std::vector<Finding> m_lFindings;
    std::set<std::pair<const Rule *, int>> m_lKnown;
    bool m_bHasShaping = false;
};
