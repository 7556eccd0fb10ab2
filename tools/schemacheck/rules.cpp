#include "rules.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr const char *kFirst = "Four rules first";
constexpr const char *kTable = "Construct by construct";
constexpr const char *kEnds = "What ends the reading";
constexpr const char *kNames = "Names that are used before they are declared.";
constexpr const char *kNamed = "Optional or repeatable elements of named types.";
constexpr const char *kAttributes = "Names of attributes that meet.";
constexpr const char *kValues = "Values of attributes and elements.";
constexpr const char *kChoices = "A choice inside a choice.";
constexpr const char *kFacets = "Facets that nobody checks.";
constexpr const char *kCopies = "Copies of an element with a later type.";

constexpr Rule kRules[] = {
    { "prefix", "the tag \"%1\" and all of its prefix are passed over: only \"xs:\" is read",
      "write \"xs:\" throughout", kFirst, Rule::Shapes },
    { "builtin-prefix", "\"%1\" counts as a name of the schema's own: built-in types are told by \"xs:\"",
      "write \"xs:%2\"", kFirst, Rule::Shapes },
    { "name-prefix", "\"%1\" is looked up with its prefix, and nothing is declared so", "write \"%2\"", kFirst,
      Rule::Shapes },
    { "first-attribute", "the first attribute of \"%1\" is \"%2\", and its \"%3\" is looked for there alone",
      "write \"%3\" first", kFirst, Rule::Shapes },
    { "declared-twice", "\"%1\" takes the place of the declaration of that name at %2",
      "give types, global elements and global attributes names of their own", kFirst, Rule::Shapes },
    { "dummy", "\"%1\" counts as a simple type and loses its elements, since its first one is called \"dummy\"",
      "rename the element", kFirst, Rule::Shapes },
    { "root-left-out", "\"%1\" is left out of the template: of what nothing refers to, \"%2\" is the root",
      "keep one global element that nothing refers to", kFirst },
    { "root-attribute", "nothing refers to the attribute \"%1\", so that it takes part in the choice of the root",
      "refer to it, or take it away", kFirst, Rule::Shapes },
    { "no-root",
      "there is no root: this file has no global element that nothing refers to, or has it ahead of an include",
      "declare one in this file, behind its includes, that nothing refers to", kFirst },

    { "passed-over", "\"%1\" is passed over, and %2", "%3", kTable, Rule::Shapes },
    { "ignored-attribute", "\"%1\" of \"%2\" isn't read, and %3", "%4", kTable },
    { "particle-limits", "limits on \"%1\" have no effect", "set minOccurs and maxOccurs on its elements", kChoices },
    { "choice-limits", "limits on a choice have no effect",
      "set minOccurs and maxOccurs on its elements, or switch valid output on", kChoices, Rule::ValidOutput },
    { "choice-size", "this choice has %1 members, and those behind the 100th count for the next choice",
      "make at most 100 members", kChoices },
    { "choice-in-choice", "the end of this inner choice ends the outer one: what follows there is no alternative",
      "put the inner choice last", kChoices },
    { "choice-include", "another file's choice takes the place of this one, whose members are no alternatives then",
      "keep all choices in one file", kChoices },

    { "include-unreadable", "the include of \"%1\" brings nothing, or not all: %2",
      "mend the location, which counts from the folder of the top schema, or the file", "Includes" },
    { "include-refused", "the include of \"%1\" is passed over: %2", "include each file once, without circles",
      "Includes" },
    { "include-location", "\"%1\" is looked for in the folder of the top schema, not of this file",
      "write the location as the top schema would", "Includes", Rule::Shapes },

    { "valueless-type", "an element of type \"%1\" takes no value", "use %2", kValues },
    { "untyped", "\"%1\" has neither type nor content, and takes no value", "give it a type", kValues },
    { "valueless-attribute", "an attribute of type \"%1\" takes no value", "use %2", kValues },
    { "optional-attribute", "the attribute \"%1\" may be left out by the schema, but without a value it keeps its type",
      "always give it a value and write use=\"required\", or switch valid output on", kValues, Rule::ValidOutput },
    { "reserved-attribute", "the attribute \"%1\" is taken for the template's own \"%1\" of the element",
      "rename the attribute", kAttributes, Rule::Shapes },
    { "attribute-digit", "the enumeration of the attribute \"%1\", which ends in a digit, restricts its element too",
      "rename the attribute, or switch valid output on", kAttributes, Rule::ValidOutput },
    { "attribute-contains",
      "the facets of the attribute \"%1\" restrict the attribute \"%2\" too: they contain its name",
      "rename one, or switch valid output on", kAttributes, Rule::ValidOutput },
    { "unchecked-facet", "nobody checks \"%1\" of a type \"%2\"", "take it away, or switch valid output on", kFacets,
      Rule::ValidOutput },
    { "unread-pattern", "nobody checks the pattern \"%1\", not even valid output",
      "write the pattern without \\i, \\c, blocks and differences of sets", kFacets },
    { "bound-65535", "a bound of 65535 counts as absent", "use a value beside it, or switch valid output on", kFacets,
      Rule::ValidOutput },

    { "inline-attribute-type",
      "the type inside the attribute \"%1\" isn't its own: it restricts the element around it, or nothing",
      "declare a global attribute with that type, and refer to it", "An attribute with an inline type.", Rule::Shapes },
    { "extends-content", "the elements of the base \"%1\" don't come along", "repeat them here",
      "An extension of a complex type with elements.", Rule::Shapes },
    { "flat-type", "the elements inside \"%1\" stand beside it, since the named type \"%2\" is flat",
      "give \"%1\" a named type of its own", "Elements nested in anonymous types inside a named type.", Rule::Shapes },
    { "anonymous-attributes", "this type counts as a named one called \"%1\", since it has an attribute",
      "no attributes on anonymous types", "An attribute on an anonymous type.", Rule::Shapes },
    { "user-restriction", "a restriction of \"%1\" inherits nothing, and leaves the type empty",
      "restrict the built-in type, and repeat the facets", "A restriction of a user's type.", Rule::Shapes },
    { "in-restriction", "\"%1\" in a restriction counts as a facet, and becomes an attribute of the element",
      "nothing but facets in a restriction", "Anything but facets in a restriction.", Rule::Shapes },
    { "copies-anonymous", "the anonymous type fills only the last of the %1 copies of \"%2\"", "use a named type",
      "An anonymous type in an element that stands several times.", Rule::Shapes },
    { "recursive", "\"%1\" within itself takes what it holds up to this place",
      "limit the levels by names of their own", kEnds, Rule::Shapes },

    { "named-occurs", "\"%1\" can't be left out or repeated, since it stands in the named type \"%2\"",
      "declare it in an anonymous type, or switch valid output on", kNamed, Rule::ValidOutput },
    { "second-parent", "\"%1\" can only be left out or repeated below the first \"%2\", and there may be several",
      "make it mandatory, or switch valid output on", kNamed, Rule::ValidOutput },
    { "hundreds", "\"%1\" counts as optional: a maxOccurs of %2 reads like \"up to %3, or none\"",
      "choose another limit, or switch valid output on", kNamed, Rule::ValidOutput },

    { "undeclared", "nothing declares \"%1\", so that the run fails", "%2", kEnds, Rule::Shapes },
    { "circle", "\"%1\" waits for a declaration that waits for it, so that the run fails", "break the circle", kEnds,
      Rule::Shapes },
    { "limit", "the run fails: %1", "make fewer or smaller declarations", kEnds, Rule::Shapes },

    { "first-ref", "the reference to \"%1\" ends up behind its siblings: it comes first, and its target isn't complete",
      "declare \"%1\", and all that it uses, above", kNames, Rule::Shapes },
    { "ref-order",
      "\"%1\" comes out at another place among its siblings: it, or one beside it, waits for a declaration",
      "declare above what both use", kNames, Rule::Shapes },
    { "late-content", "\"%1\" comes without the content of its type \"%2\", which wasn't complete yet",
      "declare \"%2\", and all that it uses, above \"%1\"", kNames, Rule::Shapes },
    { "late-default", "the default of \"%1\" is lost behind the type \"%2\", which wasn't complete yet",
      "declare \"%2\" above, or write the default first", kNames, Rule::Shapes },
    { "copies-default", "only the first copy of \"%1\" keeps its default: the type wasn't complete yet",
      "declare the type above", kNames, Rule::Shapes },
    { "copies-missing", "%2 copies of \"%1\" stand here instead of %3: its type wasn't complete yet",
      "declare the type above", kCopies, Rule::Shapes },
    { "copies-content",
      "the further copies of \"%1\" hold something else than the first one: the type wasn't complete yet",
      "declare the type above", kCopies, Rule::Shapes },
    { "copies-replace",
      "the copies of \"%1\" and the declaration at %2 replace each other: the type wasn't complete yet",
      "declare the type above, or rename one", kCopies, Rule::Shapes },
    { "otherwise", "\"%1\" comes out otherwise than it is declared: %2", "declare above what it uses", kNames,
      Rule::Shapes },
};

// Texts may hold placeholders' characters themselves, so that each is put in once, by its number.
QString Fill(const char *pattern, const QStringList &texts)
{
    const QString source = QString::fromUtf8(pattern);
    QString filled;
    for (int i = 0; i < source.size(); ++i) {
        const bool isPlace = source.at(i) == QLatin1Char('%') && i + 1 < source.size();
        filled += isPlace ? texts.value(source.at(i + 1).digitValue() - 1) : QString(source.at(i));
        i += isPlace ? 1 : 0;
    }
    return filled;
}

} // namespace

const std::vector<Rule> &AllRules()
{
    static const std::vector<Rule> rules(std::begin(kRules), std::end(kRules));
    return rules;
}

const Rule *FindRule(const QString &identifier)
{
    const auto &rules = AllRules();
    const auto found = std::find_if(rules.begin(), rules.end(), [&identifier](const Rule &rule) {
        return identifier == QLatin1String(rule.m_sIdentifier);
    });
    return found == rules.end() ? nullptr : &*found;
}

QString RulesAsManual()
{
    QString text = QStringLiteral("| Rule | Explained under | Valid output cures it |\n|---|---|---|\n");
    for (const Rule &rule : AllRules()) {
        text += QStringLiteral("| `%1` | %2 | %3 |\n")
                    .arg(QLatin1String(rule.m_sIdentifier), QLatin1String(rule.m_sHeading),
                         QLatin1String((rule.m_iFlags & Rule::ValidOutput) != 0 ? "yes" : "no"));
    }
    return text;
}

QString Finding::Sentence() const
{
    return Fill(m_pRule->m_sSentence, m_lTexts);
}

QString Finding::Cure() const
{
    return Fill(m_pRule->m_sCure, m_lTexts);
}

void Findings::Add(const char *rule, int node, const QStringList &texts)
{
    const Rule *found = FindRule(QLatin1String(rule));
    Q_ASSERT(found != nullptr);
    if (m_lKnown.insert({ found, node }).second) {
        m_lFindings.push_back({ found, node, texts });
        m_bHasShaping = m_bHasShaping || (found->m_iFlags & Rule::Shapes) != 0;
    }
}

bool Findings::Has(const char *rule) const
{
    return std::any_of(m_lFindings.begin(), m_lFindings.end(), [rule](const Finding &finding) {
        return QLatin1String(finding.m_pRule->m_sIdentifier) == QLatin1String(rule);
    });
}
