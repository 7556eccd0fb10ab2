#pragma once

#include <QDomDocument>
#include <QDomDocumentFragment>
#include <QDomElement>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QXmlAttributes>

#include <utility>
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
    using Attributes = std::vector<std::pair<QString, QString>>;

    /// The name of the mark, and the first character of the names of all marks.
    static const QString &MarkName();
    static bool IsMark(const QString &attribute) { return attribute.at(0) == QChar(1); }

    /// A built-in type without its prefix, empty for any other, and facets as declared.
    struct Rule
    {
        QString m_sType;
        Attributes m_lFacets;
    };
    /// A value that counts where there is none, null if there is none, and that may be the only one.
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
    };
    /// One place in a content model.
    struct Particle
    {
        bool m_bOptional = false;
        int m_iMaxOccurs = 1; // -1: without limit
        int m_iCopies = 1; // how many the template has
        int m_iChoice = -1; // the choice whose alternative it belongs to
        int m_iAlternative = 0;
        Constant m_oDefault;
    };
    struct Choice
    {
        bool m_bOptional = false;
        bool m_bRepeats = false;
        int m_iAlternatives = 0;
        // The choice of which it is an alternative itself.
        int m_iOuter = -1;
        int m_iOuterAlternative = 0;
        QStringList m_lMembers;
    };
    struct Element
    {
        int m_iParticle = -1;
        Particle m_oParticle;
        int m_iRule = -1;
        bool m_bHasType = false; // else it takes no value of its own
        std::vector<Attribute> m_lAttributes;
        Attributes m_lTemplate; // all that the template writes, by name
    };

    // While the schema is read.
    void StartTag(const QString &tag, const QXmlAttributes &atts);
    void EndTag() { m_lOpen.pop_back(); }
    /// How many tags are open, and back to that many: a file that isn't well-formed leaves some behind.
    std::size_t CountOpenTags() const { return m_lOpen.size(); }
    void EndTagsBeyond(std::size_t count) { m_lOpen.resize(count); }
    int AddParticle(const QString &name, int maxOccurs, int copies, const QXmlAttributes &atts);
    void MarkParticle(QDomElement element, int particle);
    void MarkDefault(QDomElement element, const QXmlAttributes &atts);
    /// The facets that follow belong to the values of `element`.
    void OpenRule(QDomElement element, const QString &type);
    void AddFacet(const QString &name, const QString &value);
    int AddAttribute(const QString &name, const QString &type, const QXmlAttributes &atts);
    void MarkAttribute(QDomElement element, int attribute);
    /// The attribute is the one that `source` declares.
    void MarkReference(const QDomDocumentFragment &source, QDomElement element, int attribute);

    void Settle(QDomDocument document);

    // When it is read.
    /// Null for a mark that isn't one.
    const Element *Of(const QString &mark) const;
    const Choice &GetChoice(int choice) const { return m_lChoices[static_cast<std::size_t>(choice)]; }
    const std::vector<Rule> &GetRules() const { return m_lRules; }

private:
    int RuleOf(const QDomElement &element);
    int BuiltInRule(const QString &type);
    int CurrentChoice() const;
    Choice ReadChoice(const QXmlAttributes &atts);
    void SettleElement(QDomElement element);

    std::vector<int> m_lOpen; // for each open tag: a choice, or one of two numbers below 0
    std::vector<Particle> m_lParticles;
    std::vector<Attribute> m_lAttributes;
    std::vector<Choice> m_lChoices;
    std::vector<Rule> m_lRules;
    QHash<QString, int> m_hBuiltIn;
    std::vector<Element> m_lElements;
};
