#include "schema/declarations.h"

#include "dom/nodewalk.h"
#include "schema/localdeclaration.h"
#include "schema/schematags.h"

#include <algorithm>

namespace {

// What the marks of an element hold: three numbers, two texts.
constexpr char kParticle = 'o';
constexpr char kRule = 't';
constexpr char kAttribute = 'a'; // one for each attribute, with its name
constexpr char kDefault = 'd';
constexpr char kFixed = 'f';
constexpr char kCount = 'n'; // how many marks there are, this one included; behind the others

QString Mark(char kind, const QString &attribute = QString())
{
    return Declarations::MarkName() + QLatin1Char(kind) + attribute;
}

// A fixed value is a default as well.
Declarations::Constant ReadConstant(const QXmlAttributes &atts)
{
    const int fixed = atts.index(QLatin1String("fixed"));
    const int value = fixed < 0 ? atts.index(QLatin1String("default")) : fixed;
    return { value < 0 ? QString() : QLatin1String("") + atts.value(value), fixed >= 0 };
}

Declarations::Constant ConstantOf(const QDomElement &element)
{
    const bool isFixed = element.hasAttribute(Mark(kFixed));
    return { element.attribute(Mark(isFixed ? kFixed : kDefault), QString()), isFixed };
}

template <typename Entry>
int Append(std::vector<Entry> &list, Entry entry)
{
    list.push_back(std::move(entry));
    return static_cast<int>(list.size()) - 1;
}

template <typename Entry>
Entry &At(std::vector<Entry> &list, int index)
{
    return list[static_cast<std::size_t>(index)];
}

} // namespace

const QString &Declarations::MarkName()
{
    static const QString name(QChar(1));
    return name;
}

void Declarations::SetMark(QDomElement element, const QString &name, const QString &value)
{
    static const QString count = Mark(kCount);
    if (name == count) {
        return;
    }
    if (!element.hasAttribute(name)) {
        element.setAttribute(count, std::max(CountMarks(element), 1) + 1);
    }
    element.setAttribute(name, value);
}

int Declarations::CountMarks(const QDomNode &node)
{
    static const QString count = Mark(kCount);
    return node.toElement().attribute(count).toInt();
}

int Declarations::AddChoice(const Alternative &alternative, const QXmlAttributes &atts)
{
    const LocalDeclaration limits(atts);
    Choice choice;
    choice.m_bOptional = limits.m_iMinOccurs == 0;
    choice.m_iMaxOccurs = limits.MostOccurs();
    choice.m_oAlternative = alternative;
    // Beside others in a sequence each further one would need these others once more.
    if (alternative.m_bAlone && At(m_lChoices, alternative.m_iChoice).m_iMaxOccurs < 0) {
        choice.m_iMaxOccurs = -1;
    }
    return Append(m_lChoices, choice);
}

int Declarations::AddParticle(Particle particle, const QXmlAttributes &atts)
{
    AddMember(particle.m_oAlternative, particle.m_bOptional);
    particle.m_oDefault = ReadConstant(atts);
    return Append(m_lParticles, particle);
}

void Declarations::AddMember(const Alternative &place, bool isOptional)
{
    if (place.m_iChoice >= 0) {
        bool &mayBeEmpty =
            At(m_lChoices, place.m_iChoice).m_hMayBeEmpty.emplace(place.m_iAlternative, true).first->second;
        mayBeEmpty = mayBeEmpty && isOptional;
    }
}

// An alternative that may be empty satisfies its choice. Inner choices come behind the outer ones.
void Declarations::SettleChoices()
{
    for (auto choice = m_lChoices.rbegin(); choice != m_lChoices.rend(); ++choice) {
        for (const auto &[alternative, mayBeEmpty] : choice->m_hMayBeEmpty) {
            choice->m_bOptional = choice->m_bOptional || mayBeEmpty;
        }
        AddMember(choice->m_oAlternative, choice->m_bOptional);
    }
}

void Declarations::MarkParticle(QDomElement element, int particle)
{
    if (particle >= 0) {
        SetMark(element, Mark(kParticle), QString::number(particle));
    }
}

void Declarations::MarkDefault(QDomElement element, const QXmlAttributes &atts)
{
    const Constant constant = m_bCollects ? ReadConstant(atts) : Constant();
    if (!constant.m_sValue.isNull()) {
        SetMark(element, Mark(constant.m_bFixed ? kFixed : kDefault), constant.m_sValue);
    }
}

void Declarations::OpenRule(QDomElement element, const QString &type)
{
    SetMark(element, Mark(kRule), QString::number(Append(m_lRules, { type, {} })));
}

void Declarations::AddFacet(const QString &name, const QString &value)
{
    if (m_bCollects) {
        m_lRules.back().m_lFacets.emplace_back(name, value);
    }
}

int Declarations::AddAttribute(const QString &name, const QString &type, const QXmlAttributes &atts)
{
    if (!m_bCollects) {
        return -1;
    }
    const int rule = BuiltInRule(schematags::HasPrefix(type) ? schematags::WithoutPrefix(type) : QString());
    const QString use = atts.value(QStringLiteral("use"));
    return Append(
        m_lAttributes,
        { name, rule, ReadConstant(atts), use == QLatin1String("required"), use == QLatin1String("prohibited") });
}

void Declarations::MarkAttribute(QDomElement element, int attribute)
{
    if (attribute >= 0) {
        SetMark(element, Mark(kAttribute, At(m_lAttributes, attribute).m_sName), QString::number(attribute));
    }
}

void Declarations::MarkReference(const QDomDocumentFragment &source, QDomElement element, int attribute)
{
    const QDomElement carrier = source.firstChild().toElement();
    if (carrier.isNull() || attribute < 0) {
        return;
    }
    const int rule = RuleOf(carrier);
    Attribute &referring = At(m_lAttributes, attribute);
    referring.m_sName = carrier.tagName();
    referring.m_iRule = rule;
    if (referring.m_oDefault.m_sValue.isNull()) {
        referring.m_oDefault = ConstantOf(carrier);
    }
    MarkAttribute(element, attribute);
}

// A later tag may have given the element another type, to which the facets of the marked rule don't belong.
int Declarations::RuleOf(const QDomElement &element)
{
    const QString type = element.attribute(QStringLiteral("type"));
    const QString mark = element.attribute(Mark(kRule));
    const int rule = mark.toInt();
    return !mark.isEmpty() && At(m_lRules, rule).m_sType == type ? rule : BuiltInRule(type);
}

int Declarations::BuiltInRule(const QString &type)
{
    const auto known = m_hBuiltIn.constFind(type);
    if (known != m_hBuiltIn.constEnd()) {
        return *known;
    }
    const int rule = Append(m_lRules, { type, {} });
    m_hBuiltIn.insert(type, rule);
    return rule;
}

void Declarations::Settle(QDomDocument document)
{
    SettleChoices();
    for (dom::NodeWalk walk(document.documentElement()); m_bCollects && !walk.AtEnd(); walk.Next()) {
        if (walk.Node().isElement()) {
            SettleElement(walk.Node().toElement());
        }
    }
}

void Declarations::SettleElement(QDomElement element)
{
    Element settled;
    const QString particle = element.attribute(Mark(kParticle));
    settled.m_iParticle = particle.isEmpty() ? -1 : particle.toInt();
    settled.m_oDefault = GetParticle(settled).m_oDefault;
    if (settled.m_oDefault.m_sValue.isNull()) {
        settled.m_oDefault = ConstantOf(element);
    }
    settled.m_iRule = RuleOf(element);
    settled.m_bHasType = !element.attribute(QStringLiteral("type")).isEmpty();
    const QString attributeMark = Mark(kAttribute);
    for (const auto &[name, value] : dom::ListAttributes(element)) {
        if (!IsMark(name)) {
            settled.m_lTemplate.emplace_back(name, value);
            continue;
        }
        element.removeAttribute(name);
        if (name.startsWith(attributeMark)) {
            settled.m_lAttributes.push_back(At(m_lAttributes, value.toInt()));
        }
    }
    std::sort(settled.m_lTemplate.begin(), settled.m_lTemplate.end());
    std::sort(settled.m_lAttributes.begin(), settled.m_lAttributes.end(),
              [](const Attribute &first, const Attribute &second) { return first.m_sName < second.m_sName; });
    const auto index = static_cast<uint>(Append(m_lElements, std::move(settled)));
    element.setAttribute(MarkName(), QString(QChar(index & 0xFFFF)) + QChar(index >> 16));
}

const Declarations::Particle &Declarations::GetParticle(const Element &element) const
{
    static const Particle none;
    return element.m_iParticle < 0 ? none : m_lParticles[static_cast<std::size_t>(element.m_iParticle)];
}

// Asked several times for each element: reading the number of a text would take longer.
const Declarations::Element *Declarations::Of(const QString &mark) const
{
    const uint index = mark.size() != 2 ? ~0U : mark.at(0).unicode() | uint { mark.at(1).unicode() } << 16;
    return index < m_lElements.size() ? &m_lElements[index] : nullptr;
}
