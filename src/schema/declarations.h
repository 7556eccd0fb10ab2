#pragma once

#include "dom/attributelist.h"
#include "schema/opentags.h"

#include <QDomDocument>
#include <QDomDocumentFragment>
#include <QDomElement>
#include <QHash>
#include <QString>
#include <QXmlAttributes>

#include <map>
#include <vector>

/// What a schema says of each element of its template, where it stands there, in every copy and whatever type it comes
/// from: how often it may stand, what its values and those of its attributes are held against, and what the template
/// itself has written.
///
/// While the schema is read, marks travel with the elements: attributes whose names no XML file can hold. Settle()
/// turns those of an element into a single one, by which Of() finds what is said of it.
class Declarations
{
public:
    using Attributes = dom::AttributeList;
    using Alternative = OpenTags::Alternative;

    /// The name of the mark, and the first character of the names of all marks.
    static const QString &MarkName();
    static bool IsMark(const QString &attribute) { return !attribute.isEmpty() && attribute.at(0) == QChar(1); }
    /// Sets a mark, and has the element's marks counted.
    static void SetMark(QDomElement element, const QString &name, const QString &value);
    /// How many of an element's attributes are marks.
    static int CountMarks(const QDomNode &node);

    /// A built-in type without its prefix, empty for any other, and facets as declared.
    struct Rule
    {
        QString m_sType;
        Attributes m_lFacets;
    };
    /// The default of a declaration, null without one; a fixed one is the only value that the declaration allows.
    struct Constant
    {
        QString m_sValue;
        bool m_bFixed = false;
    };
    struct Attribute
    {
        QString m_sName;
        int m_iRule = -1;
        Constant m_oDefault;
        bool m_bRequired = false;
        bool m_bProhibited = false;
    };
    /// One place in a content model.
    struct Particle
    {
        bool m_bOptional = false;
        int m_iMaxOccurs = 1; // -1: without limit
        int m_iCopies = 1; // how many the template has
        Alternative m_oAlternative;
        Constant m_oDefault;
    };
    struct Choice
    {
        bool m_bOptional = false;
        int m_iMaxOccurs = 1; // below 0: without limit
        Alternative m_oAlternative; // of the choice around it
        std::map<int, bool> m_hMayBeEmpty; // by alternative: whether all its members are optional
    };
    struct Element
    {
        int m_iParticle = -1; // below 0 for one that isn't declared in a content model
        Constant m_oDefault;
        int m_iRule = -1;
        bool m_bHasType = false; // else it takes no value of its own
        std::vector<Attribute> m_lAttributes;
        Attributes m_lTemplate; // all that the template writes, by name
    };

    // While the schema is read. As long as nobody asks for declarations, nothing is added or marked; choices and
    // particles are to be added only when somebody does.
    void Collect() { m_bCollects = true; }
    bool IsCollecting() const { return m_bCollects; }
    int AddChoice(const Alternative &alternative, const QXmlAttributes &atts);
    int AddParticle(Particle particle, const QXmlAttributes &atts);
    static void MarkParticle(QDomElement element, int particle);
    void MarkDefault(QDomElement element, const QXmlAttributes &atts);
    /// The facets that follow belong to the values of `element`.
    void OpenRule(QDomElement element, const QString &type);
    void AddFacet(const QString &name, const QString &value);
    int AddAttribute(const QString &name, const QString &type, const QXmlAttributes &atts);
    void MarkAttribute(QDomElement element, int attribute);
    /// Completes an attribute that refers to the declaration in `source`, and marks it.
    void MarkReference(const QDomDocumentFragment &source, QDomElement element, int attribute);

    void Settle(QDomDocument document);

    // Behind Settle().
    /// Null for a text that is no element's mark.
    const Element *Of(const QString &mark) const;
    const Particle &GetParticle(const Element &element) const;
    const Choice &GetChoice(int choice) const { return m_lChoices[static_cast<std::size_t>(choice)]; }
    const std::vector<Rule> &GetRules() const { return m_lRules; }

private:
    void AddMember(const Alternative &place, bool isOptional);
    void SettleChoices();
    int RuleOf(const QDomElement &element);
    int BuiltInRule(const QString &type);
    void SettleElement(QDomElement element);

    bool m_bCollects = false;
    std::vector<Particle> m_lParticles;
    std::vector<Attribute> m_lAttributes;
    std::vector<Choice> m_lChoices;
    std::vector<Rule> m_lRules;
    QHash<QString, int> m_hBuiltIn;
    std::vector<Element> m_lElements;
};
