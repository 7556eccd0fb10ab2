#pragma once

#include "report/currentattributes.h"
#include "report/valuejudge.h"
#include "schema/declarations.h"

#include <QDomElement>
#include <QString>

#include <map>
#include <memory>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

/// What valid output knows during a walk and decides behind it: the walk announces every element of the template, and
/// tells here how it leaves each; in the end it hears what has to go, what takes its default and what is missing.
///
/// An element loses all that the template has written as soon as the walk leaves it, so that only elements about which
/// something is left to decide are remembered.
class ValidOutput
{
public:
    using Element = Declarations::Element;

    explicit ValidOutput(std::shared_ptr<const Declarations> declarations);

    /// What the schema says of the element with these attributes; null for one that no schema has declared.
    const Element *Find(CurrentAttributes &attributes) const;

    /// Holds a value against its declaration, and brings it into its form. `attribute` is empty for the element's own
    /// value. As of ValueJudge::Refuse().
    QString Refuse(const Element &declared, const QString &attribute, QString &text, const double *pNumber,
                   bool isDouble);
    /// Whether an element may stand that often beside the others that the template has of its declaration.
    bool MayRepeat(const Element &declared, int count) const;
    /// True from the second question on for the elements of one declaration below one parent. `declared` must stand in
    /// a content model.
    bool IsAskedAgain(const Element &declared, const QDomNode &parent);
    /// Whether the element is an alternative and not the only one that is left.
    bool MayBeDiscarded(const Element &declared, const QDomElement &element) const;
    /// Says that an attribute has a value that reads like the type in its place.
    static void NoteGiven(CurrentAttributes &attributes, const QString &attribute);

    /// Has the element count as one with a value.
    void Keep(const QDomElement &element) { m_oKept = element; }
    /// The walk goes on below the element, which may be a null one.
    void Enter(const QDomElement &element, CurrentAttributes &attributes);
    /// The walk leaves the content that it has entered last.
    void Leave() { m_lOpen.pop_back(); }
    /// The walk goes on behind the element, which has a value.
    void Pass(const QDomElement &element, CurrentAttributes &attributes);
    /// To be told behind Pass(): takes note of the elements below, to which the walk won't come.
    void PassContent(const QDomElement &element);

    /// To be called behind the walk if a receiver may have kept it from some of the template, or copied that. Takes out
    /// what the template says there.
    void CleanRest();

    struct Finding
    {
        enum class Kind { Remove, Missing, MissingAttribute, Excluded };
        Kind m_eKind;
        QDomElement m_oElement;
        QString m_sAttribute;
    };
    /// To be called once, behind the walk and CleanRest(). Writes the defaults.
    std::vector<Finding> Finish();

private:
    struct Item
    {
        QDomElement m_oElement;
        const Element *m_pDeclared = nullptr;
        int m_iParent = -1;
        bool m_bHasValue = false;
        bool m_bGone = false;
        QStringList m_lMissing; // attributes
    };

    const Declarations::Alternative &PlaceOf(const Element &declared) const
    {
        return m_pDeclarations->GetParticle(declared).m_oAlternative;
    }
    int Add(const QDomElement &element, CurrentAttributes &attributes, int parent, bool isPassed);
    bool SettleAttributes(const Element &declared, CurrentAttributes &attributes, QStringList &missing) const;
    void Take(const Item &item);
    bool Decide(const Item &item);
    bool IsTaken(const Item &item);
    void Complete(const Item &item);
    Item &At(int item) { return m_lItems[static_cast<std::size_t>(item)]; }

    std::shared_ptr<const Declarations> m_pDeclarations;
    std::vector<std::unique_ptr<ValueJudge>> m_lJudges; // by rule; null until somebody asks
    std::unordered_map<int, QDomNode> m_hAsked; // by particle
    QDomElement m_oKept;
    std::vector<Item> m_lItems; // in the order of the document
    std::vector<int> m_lOpen { -1 }; // items; outside the root none
    // The alternatives that have a value, by parent and choice: as many as the choice may stand times. An empty entry
    // says that the lack of one was told.
    std::map<std::pair<int, int>, std::set<int>> m_lTaken;
    std::vector<Finding> m_lFindings;
};
