#include "schema/declarations.h"

#include "dom/nodewalk.h"
#include "schema/schematags.h"
#include "schema/templatemaker.h"

#include <algorithm>

namespace {

// Open tags that are no choice.
constexpr int kModel = -1;
constexpr int kElement = -2;

QString ParticleMark()
{
    return Declarations::MarkName() + QLatin1Char('o');
}

QString RuleMark()
{
    return Declarations::MarkName() + QLatin1Char('t');
}

QString DefaultMark()
{
    return Declarations::MarkName() + QLatin1Char('d');
}

QString FixedMark()
{
    return Declarations::MarkName() + QLatin1Char('f');
}

QString AttributeMark(const QString &name)
{
    return Declarations::MarkName() + QLatin1Char('a') + name;
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
    const QString name = element.hasAttribute(FixedMark()) ? FixedMark() : DefaultMark();
    return { element.attribute(name, QString()), name == FixedMark() };
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

void Declarations::StartTag(const QString &tag, const QXmlAttributes &atts)
{
    if (!m_lOpen.empty() && m_lOpen.back() >= 0) {
        ++At(m_lChoices, m_lOpen.back()).m_iAlternatives;
    }
    m_lOpen.push_back(tag == QLatin1String("xs:element") ? kElement : kModel);
    if (tag == QLatin1String("xs:choice")) {
        m_lOpen.back() = Append(m_lChoices, ReadChoice(atts));
    }
}

Declarations::Choice Declarations::ReadChoice(const QXmlAttributes &atts)
{
    Choice choice;
    choice.m_bOptional = atts.value(QStringLiteral("minOccurs")) == QLatin1String("0");
    const QString most = atts.value(QStringLiteral("maxOccurs"));
    choice.m_bRepeats = !most.isEmpty() && most != QLatin1String("1");
    choice.m_iOuter = CurrentChoice();
    if (choice.m_iOuter >= 0) {
        Choice &outer = At(m_lChoices, choice.m_iOuter);
        choice.m_iOuterAlternative = outer.m_iAlternatives;
        choice.m_bRepeats = choice.m_bRepeats || outer.m_bRepeats;
        // What may be empty satisfies the outer choice, which may take another alternative.
        outer.m_bOptional = outer.m_bOptional || choice.m_bOptional;
        choice.m_bOptional = true;
    }
    return choice;
}

// The innermost choice of the content model in which the latest tag stands.
int Declarations::CurrentChoice() const
{
    const auto found = std::find_if(m_lOpen.rbegin() + 1, m_lOpen.rend(), [](int open) { return open != kModel; });
    return found == m_lOpen.rend() ? kElement : *found;
}

int Declarations::AddParticle(const QString &name, int maxOccurs, int copies, const QXmlAttributes &atts)
{
    Particle particle;
    particle.m_bOptional = atts.value(QStringLiteral("minOccurs")) == QLatin1String("0");
    particle.m_iMaxOccurs = maxOccurs;
    particle.m_iCopies = copies;
    particle.m_iChoice = CurrentChoice();
    if (particle.m_iChoice >= 0) {
        Choice &choice = At(m_lChoices, particle.m_iChoice);
        particle.m_iAlternative = choice.m_iAlternatives;
        choice.m_lMembers.append(name);
        // An alternative that may be empty satisfies the choice.
        choice.m_bOptional = choice.m_bOptional || particle.m_bOptional;
    }
    particle.m_oDefault = ReadConstant(atts);
    return Append(m_lParticles, particle);
}

void Declarations::MarkParticle(QDomElement element, int particle)
{
    element.setAttribute(ParticleMark(), particle);
}

void Declarations::MarkDefault(QDomElement element, const QXmlAttributes &atts)
{
    const Constant constant = ReadConstant(atts);
    if (!constant.m_sValue.isNull()) {
        element.setAttribute(constant.m_bFixed ? FixedMark() : DefaultMark(), constant.m_sValue);
    }
}

void Declarations::OpenRule(QDomElement element, const QString &type)
{
    element.setAttribute(RuleMark(), Append(m_lRules, { type, {} }));
}

void Declarations::AddFacet(const QString &name, const QString &value)
{
    m_lRules.back().m_lFacets.emplace_back(name, value);
}

int Declarations::AddAttribute(const QString &name, const QString &type, const QXmlAttributes &atts)
{
    const int rule = BuiltInRule(schematags::HasPrefix(type) ? schematags::WithoutPrefix(type) : QString());
    const bool isRequired = atts.value(QStringLiteral("use")) == QLatin1String("required");
    return Append(m_lAttributes, { name, rule, ReadConstant(atts), isRequired });
}

void Declarations::MarkAttribute(QDomElement element, int attribute)
{
    element.setAttribute(AttributeMark(At(m_lAttributes, attribute).m_sName), attribute);
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

// The type may have been written over since: the facets are those of another one then.
int Declarations::RuleOf(const QDomElement &element)
{
    const QString type = element.attribute(QStringLiteral("type"));
    const QString mark = element.attribute(RuleMark());
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
    for (dom::NodeWalk walk(document.documentElement()); !walk.AtEnd(); walk.Next()) {
        if (walk.Node().isElement()) {
            SettleElement(walk.Node().toElement());
        }
    }
}

void Declarations::SettleElement(QDomElement element)
{
    Element settled;
    const QString particle = element.attribute(ParticleMark());
    if (!particle.isEmpty()) {
        settled.m_iParticle = particle.toInt();
        settled.m_oParticle = At(m_lParticles, settled.m_iParticle);
    }
    if (settled.m_oParticle.m_oDefault.m_sValue.isNull()) {
        settled.m_oParticle.m_oDefault = ConstantOf(element);
    }
    settled.m_iRule = RuleOf(element);
    settled.m_bHasType = !element.attribute(QStringLiteral("type")).isEmpty();
    const Attributes all = TemplateMaker::ListAttributes(element);
    for (const auto &[name, value] : all) {
        if (!IsMark(name)) {
            settled.m_lTemplate.emplace_back(name, value);
            continue;
        }
        element.removeAttribute(name);
        if (name.startsWith(AttributeMark(QString()))) {
            settled.m_lAttributes.push_back(At(m_lAttributes, value.toInt()));
        }
    }
    std::sort(settled.m_lTemplate.begin(), settled.m_lTemplate.end());
    std::sort(settled.m_lAttributes.begin(), settled.m_lAttributes.end(),
              [](const Attribute &first, const Attribute &second) { return first.m_sName < second.m_sName; });
    element.setAttribute(MarkName(), Append(m_lElements, std::move(settled)));
}

const Declarations::Element *Declarations::Of(const QString &mark) const
{
    const int index = mark.isEmpty() ? -1 : mark.toInt();
    return index < 0 || index >= static_cast<int>(m_lElements.size()) ? nullptr
                                                                      : &m_lElements[static_cast<std::size_t>(index)];
}
