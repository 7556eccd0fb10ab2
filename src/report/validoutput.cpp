#include "report/validoutput.h"

#include "dom/nodewalk.h"

#include <algorithm>

namespace {

const QString &GivenMark()
{
    static const QString mark = Declarations::MarkName() + QLatin1Char('v');
    return mark;
}

const Declarations::Attribute *FindAttribute(const Declarations::Element &declared, const QString &name)
{
    const auto &attributes = declared.m_lAttributes;
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&name](const auto &attribute) { return attribute.m_sName == name; });
    return found == attributes.end() ? nullptr : &*found;
}

bool IsOfTemplate(const Declarations::Element &declared, const QString &name, const QString &value)
{
    return std::binary_search(declared.m_lTemplate.begin(), declared.m_lTemplate.end(), std::make_pair(name, value));
}

} // namespace

ValidOutput::ValidOutput(std::shared_ptr<const Declarations> declarations)
    : m_pDeclarations(std::move(declarations))
    , m_lJudges(m_pDeclarations->GetRules().size())
{
}

const ValidOutput::Element *ValidOutput::Find(CurrentAttributes &attributes) const
{
    return m_pDeclarations->Of(attributes.GetValue(Declarations::MarkName()));
}

QString ValidOutput::Refuse(const Element &declared, const QString &attribute, QString &text, const double *pNumber,
                            bool isDouble)
{
    const Declarations::Attribute *pAttribute = attribute.isEmpty() ? nullptr : FindAttribute(declared, attribute);
    if (!attribute.isEmpty() && pAttribute == nullptr) {
        return QString();
    }
    if (pAttribute != nullptr && pAttribute->m_bProhibited) {
        return QStringLiteral("the schema prohibits the attribute");
    }
    const auto index = static_cast<std::size_t>(pAttribute == nullptr ? declared.m_iRule : pAttribute->m_iRule);
    const Declarations::Rule &rule = m_pDeclarations->GetRules()[index];
    if (pAttribute != nullptr && rule.m_sType.isEmpty()) {
        return QStringLiteral("the schema's own types count for global attributes alone");
    }
    std::unique_ptr<ValueJudge> &judge = m_lJudges[index];
    if (judge == nullptr) {
        judge = std::make_unique<ValueJudge>(rule);
    }
    QString refusal = judge->Refuse(text, pNumber, isDouble);
    const Declarations::Constant &constant = pAttribute == nullptr ? declared.m_oDefault : pAttribute->m_oDefault;
    if (!refusal.isEmpty() || !constant.m_bFixed) {
        return refusal;
    }
    if (!judge->IsSame(text, constant.m_sValue)) {
        return QStringLiteral("the schema fixes it to \"%1\"").arg(constant.m_sValue);
    }
    text = constant.m_sValue; // some validators compare the texts
    return QString();
}

bool ValidOutput::MayRepeat(const Element &declared, int count) const
{
    const Declarations::Particle &particle = m_pDeclarations->GetParticle(declared);
    if (count <= 1) {
        return count != 0 || particle.m_bOptional || particle.m_oAlternative.m_iChoice >= 0;
    }
    return particle.m_iMaxOccurs < 0 || count <= particle.m_iMaxOccurs - (particle.m_iCopies - 1);
}

bool ValidOutput::IsAskedAgain(const Element &declared, const QDomNode &parent)
{
    QDomNode &asked = m_hAsked[declared.m_iParticle];
    const bool isAgain = asked == parent;
    asked = parent;
    return isAgain;
}

bool ValidOutput::MayBeDiscarded(const Element &declared, const QDomElement &element) const
{
    const int choice = PlaceOf(declared).m_iChoice;
    if (choice < 0) {
        return false;
    }
    const auto isMember = [&](const Element *pOther) {
        return pOther != nullptr && PlaceOf(*pOther).m_iChoice == choice;
    };
    // Those in front of the element have lost their marks.
    const auto inFront = std::find_if(m_lItems.begin() + m_lOpen.back() + 1, m_lItems.end(), [&](const Item &item) {
        return isMember(item.m_pDeclared) && item.m_oElement.parentNode() == element.parentNode();
    });
    QDomElement behind = element.nextSiblingElement();
    while (!behind.isNull() && !isMember(m_pDeclarations->Of(behind.attribute(Declarations::MarkName())))) {
        behind = behind.nextSiblingElement();
    }
    return inFront != m_lItems.end() || !behind.isNull();
}

void ValidOutput::NoteGiven(CurrentAttributes &attributes, const QString &attribute)
{
    attributes.Set(GivenMark() + attribute, QStringLiteral("1"));
}

void ValidOutput::Enter(const QDomElement &element, CurrentAttributes &attributes)
{
    m_lOpen.push_back(element.isNull() ? m_lOpen.back() : Add(element, attributes, m_lOpen.back(), false));
}

void ValidOutput::Pass(const QDomElement &element, CurrentAttributes &attributes)
{
    if (!element.parentNode().isNull()) {
        Add(element, attributes, m_lOpen.back(), true);
    }
}

void ValidOutput::PassContent(const QDomElement &element)
{
    if (element.firstChildElement().isNull() || element.parentNode().isNull()) {
        return;
    }
    std::vector<int> line { static_cast<int>(m_lItems.size()) - 1 }; // the element's own item is the latest
    for (dom::NodeWalk walk(element); !walk.AtEnd(); walk.Next()) {
        if (walk.Node().isElement() && walk.Depth() > 0) {
            line.resize(static_cast<std::size_t>(walk.Depth()));
            CurrentAttributes attributes;
            attributes.Bind(walk.Node().toElement(), nullptr);
            line.push_back(Add(walk.Node().toElement(), attributes, line.back(), false));
        }
    }
}

// The number of the item; that of the parent if there is nothing to decide about the element.
int ValidOutput::Add(const QDomElement &element, CurrentAttributes &attributes, int parent, bool isPassed)
{
    const Element *pDeclared = Find(attributes);
    const bool hasText = element.firstChild().isText();
    QStringList missing;
    const bool hasAttribute = pDeclared != nullptr && SettleAttributes(*pDeclared, attributes, missing);
    // An element that a receiver has made on its own stays as it is.
    const bool hasValue = hasText || hasAttribute || pDeclared == nullptr || element == m_oKept;
    // A container has a value if anything in it has one.
    for (int item = parent; hasValue && item >= 0 && !At(item).m_bHasValue; item = At(item).m_iParent) {
        At(item).m_bHasValue = true;
    }
    const bool isDecided = pDeclared == nullptr || (hasText && missing.isEmpty() && PlaceOf(*pDeclared).m_iChoice < 0);
    if (isPassed && isDecided && element.firstChildElement().isNull()) {
        return parent;
    }
    m_lItems.push_back({ element, pDeclared, parent, hasValue, false, missing });
    return static_cast<int>(m_lItems.size()) - 1;
}

// Takes out the attributes of the template and adds the defaults. True if a receiver has set one of those declared.
bool ValidOutput::SettleAttributes(const Element &declared, CurrentAttributes &attributes, QStringList &missing) const
{
    QStringList given;
    for (const auto &[name, value] : attributes.GetAll()) {
        if (Declarations::IsMark(name) && name.startsWith(GivenMark())) {
            given.append(name.mid(GivenMark().size()));
        }
    }
    attributes.RemoveIf([&](const QString &name, const QString &value) {
        return Declarations::IsMark(name) || (IsOfTemplate(declared, name, value) && !given.contains(name));
    });
    bool hasValue = false;
    for (const Declarations::Attribute &attribute : declared.m_lAttributes) {
        if (attributes.Has(attribute.m_sName)) {
            hasValue = true;
        } else if (!attribute.m_oDefault.m_sValue.isNull() && !attribute.m_bProhibited) {
            attributes.Set(attribute.m_sName, attribute.m_oDefault.m_sValue);
        } else if (attribute.m_bRequired) {
            missing.append(attribute.m_sName);
        }
    }
    return hasValue;
}

void ValidOutput::CleanRest()
{
    for (dom::NodeWalk walk(m_lItems.front().m_oElement); !walk.AtEnd(); walk.Next()) {
        CurrentAttributes attributes;
        attributes.Bind(walk.Node().toElement(), nullptr);
        if (const Element *pDeclared = Find(attributes)) {
            QStringList missing;
            SettleAttributes(*pDeclared, attributes, missing);
        }
    }
}

std::vector<ValidOutput::Finding> ValidOutput::Finish()
{
    // Of the alternatives with a value the first one counts.
    for (const Item &item : m_lItems) {
        if (item.m_bHasValue && item.m_pDeclared != nullptr) {
            Take(item);
        }
    }
    for (Item &item : m_lItems) {
        item.m_bGone = item.m_iParent >= 0 && At(item.m_iParent).m_bGone;
        if (item.m_bGone || item.m_pDeclared == nullptr) {
            continue;
        }
        if (Decide(item)) {
            Complete(item);
        } else {
            item.m_bGone = true;
            m_lFindings.push_back({ Finding::Kind::Remove, item.m_oElement, QString() });
        }
    }
    return std::move(m_lFindings);
}

// Takes the item's alternative unless others are taken, and so in each of the choices around.
void ValidOutput::Take(const Item &item)
{
    Declarations::Alternative place = PlaceOf(*item.m_pDeclared);
    while (place.m_iChoice >= 0) {
        const Declarations::Choice &choice = m_pDeclarations->GetChoice(place.m_iChoice);
        std::set<int> &taken = m_lTaken[{ item.m_iParent, place.m_iChoice }];
        if (choice.m_iMaxOccurs < 0 || static_cast<int>(taken.size()) < choice.m_iMaxOccurs) {
            taken.insert(place.m_iAlternative);
        }
        place = choice.m_oAlternative;
    }
}

// Whether the element stays.
bool ValidOutput::Decide(const Item &item)
{
    if (!IsTaken(item)) {
        if (item.m_bHasValue) {
            m_lFindings.push_back({ Finding::Kind::Excluded, item.m_oElement, QString() });
        }
        return false;
    }
    return item.m_bHasValue || !m_pDeclarations->GetParticle(*item.m_pDeclared).m_bOptional;
}

// False for an alternative that isn't taken. Names the first of a choice that may not stay without one.
bool ValidOutput::IsTaken(const Item &item)
{
    bool isTaken = true;
    Declarations::Alternative place = PlaceOf(*item.m_pDeclared);
    while (place.m_iChoice >= 0) {
        const Declarations::Choice &choice = m_pDeclarations->GetChoice(place.m_iChoice);
        const auto [taken, isFirst] = m_lTaken.insert({ { item.m_iParent, place.m_iChoice }, {} });
        const auto around = m_lTaken.find({ item.m_iParent, choice.m_oAlternative.m_iChoice });
        const bool isNeeded = choice.m_oAlternative.m_iChoice < 0
            || (around != m_lTaken.end() && around->second.count(choice.m_oAlternative.m_iAlternative) != 0);
        if (isFirst && isNeeded && !choice.m_bOptional) {
            m_lFindings.push_back({ Finding::Kind::Missing, item.m_oElement, QString() });
        }
        isTaken = isTaken && taken->second.count(place.m_iAlternative) != 0;
        place = choice.m_oAlternative;
    }
    return isTaken;
}

void ValidOutput::Complete(const Item &item)
{
    for (const QString &attribute : item.m_lMissing) {
        m_lFindings.push_back({ Finding::Kind::MissingAttribute, item.m_oElement, attribute });
    }
    if (!item.m_pDeclared->m_bHasType || item.m_oElement.firstChild().isText()) {
        return;
    }
    const QString &value = item.m_pDeclared->m_oDefault.m_sValue;
    if (value.isNull()) {
        m_lFindings.push_back({ Finding::Kind::Missing, item.m_oElement, QString() });
    } else {
        QDomElement element = item.m_oElement;
        element.insertBefore(element.ownerDocument().createTextNode(value), element.firstChild());
    }
}
