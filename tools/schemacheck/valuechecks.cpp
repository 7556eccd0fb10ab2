// Values: types that take none, attributes that get in each other's way, and facets that nobody checks.

#include "subject.h"

#include "report/schemapattern.h"
#include "schema/schematags.h"

#include <algorithm>
#include <map>

using schematags::HasPrefix;
using schematags::WithoutPrefix;

namespace {

enum class Target { Element, Attribute };

bool ContainsOneOf(const QString &text, std::initializer_list<const char *> words)
{
    return std::any_of(words.begin(), words.end(),
                       [&text](const char *word) { return text.contains(QLatin1String(word)); });
}

bool TakesText(const QString &type)
{
    return ContainsOneOf(type, { "string" });
}

bool TakesNumber(const QString &type, Target target)
{
    return ContainsOneOf(type, { "double", "integer" })
        || (target == Target::Element && ContainsOneOf(type, { "short", "long" }));
}

// By these words the setters of values tell the types.
bool TakesValue(const QString &type, Target target)
{
    return TakesText(type) || TakesNumber(type, target) || ContainsOneOf(type, { "dateTime" })
        || (target == Target::Element && ContainsOneOf(type, { "bool", "time" }));
}

// The type to use in place of one that takes no value.
QString Substitute(const QString &type)
{
    if (ContainsOneOf(type, { "float", "decimal" })) {
        return QStringLiteral("\"xs:double\"");
    }
    if (ContainsOneOf(type, { "Integer", "int", "Int", "byte", "Byte", "Short", "Long", "short", "long" })) {
        return QStringLiteral("\"xs:integer\", with bounds");
    }
    if (ContainsOneOf(type, { "date", "time" })) {
        return QStringLiteral("\"xs:dateTime\" or \"xs:string\"");
    }
    return HasPrefix(type) || !ContainsOneOf(type, { ":" }) ? QStringLiteral("\"xs:string\"") : QString();
}

void CheckElementType(const Subject &subject, int number, Findings &findings)
{
    const SchemaModel &model = subject.m_oModel;
    const SchemaNode &node = model.At(number);
    const bool isBase = node.Is("restriction") || node.Is("extension");
    const bool isInAttribute = model.Around(number, [](const SchemaNode &outer) { return outer.Is("attribute"); }) >= 0;
    const QString type = node.Get(isBase ? "base" : "type");
    if ((isBase || node.Is("element")) && !isInAttribute && HasPrefix(type)
        && !TakesValue(WithoutPrefix(type), Target::Element)) {
        findings.Add("valueless-type", number, { type, Substitute(WithoutPrefix(type)) });
    }
    if (node.Is("element") && !node.Get("name").isEmpty() && !node.Has("type")
        && model.Child(number, { "simpleType", "complexType" }) < 0) {
        findings.Add("untyped", number, { node.Get("name") });
    }
}

void CheckAttributeType(const Subject &subject, int number, Findings &findings)
{
    const SchemaNode &node = subject.m_oModel.At(number);
    const QString name = node.Get("name");
    const bool hasInline = subject.m_oModel.Child(number, { "simpleType" }) >= 0;
    const QString type = node.m_bGlobal ? subject.Carrier(name).attribute(QStringLiteral("type")) : node.Get("type");
    // A global attribute whose type another rule has found empty isn't told of twice.
    const bool isTold = node.m_bGlobal ? type.isEmpty() && (hasInline || node.Has("type")) : hasInline;
    if (!name.isEmpty() && !TakesValue(type, Target::Attribute) && !isTold) {
        const bool isOwn = !node.m_bGlobal && !type.isEmpty() && !HasPrefix(type);
        findings.Add(
            "valueless-attribute", number,
            { type, isOwn ? QStringLiteral("a global attribute of that type, and refer to it") : Substitute(type) });
    }
    if (node.m_bGlobal) {
        return;
    }
    const QString key = node.Key();
    if (node.Get("use") != QLatin1String("required")) {
        findings.Add("optional-attribute", number, { key });
    }
    for (const char *taken : { "type", "default", "minInclusive", "maxInclusive", "minExclusive", "maxExclusive" }) {
        if (key == QLatin1String(taken)) {
            findings.Add("reserved-attribute", number, { key });
        }
    }
}

void CheckFacet(const Subject &subject, int number, Findings &findings)
{
    const SchemaNode &node = subject.m_oModel.At(number);
    const SchemaNode &restriction = subject.m_oModel.At(node.m_iParent);
    const QString base = restriction.Get("base");
    if (!restriction.Is("restriction") || restriction.m_bFacet || !HasPrefix(base) || !node.Has("value")) {
        return;
    }
    const QString type = WithoutPrefix(base);
    const bool isBound = node.m_sTag.endsWith(QLatin1String("clusive"));
    const bool isNumber = TakesNumber(type, Target::Element);
    const bool isChecked = (isBound && isNumber) || (node.Is("enumeration") && TakesText(type));
    const bool isUnread = node.Is("pattern") && !FromSchemaPattern(node.Get("value"));
    if (!isChecked && TakesValue(type, Target::Element)) {
        const char *rule = isUnread ? "unread-pattern" : "unchecked-facet";
        findings.Add(rule, number, isUnread ? QStringList(node.Get("value")) : QStringList { node.m_sTag, base });
    }
    if (isBound && isNumber && node.Get("value").toDouble() == 65535) {
        findings.Add("bound-65535", number);
    }
}

// An attribute of a type, with what its declaration lends to the element beside it.
struct Lender
{
    int m_iNode = 0;
    QString m_sName;
    QString m_sType;
    QStringList m_lFacets; // without those of enumerations behind the first
};

Lender MakeLender(const Subject &subject, int number)
{
    const SchemaNode &node = subject.m_oModel.At(number);
    const QString name = node.Key();
    if (!node.Get("name").isEmpty()) {
        return { number, name, node.Get("type"), {} };
    }
    const QDomElement carrier = subject.Carrier(name);
    Lender lender { number, name, carrier.attribute(QStringLiteral("type")), {} };
    for (const char *facet : { "enumeration1", "minInclusive", "maxInclusive", "minExclusive", "maxExclusive" }) {
        if (carrier.hasAttribute(QLatin1String(facet))) {
            lender.m_lFacets.append(QLatin1String(facet) + name);
        }
    }
    return lender;
}

// A facet of the one attribute may be found by the name of the other.
void CheckPair(const Lender &lender, const Lender &other, Findings &findings)
{
    const bool isLent = std::any_of(lender.m_lFacets.begin(), lender.m_lFacets.end(), [&](const QString &facet) {
        const bool isOfKind = facet.startsWith(QLatin1String("enumeration"))
            ? TakesText(other.m_sType)
            : TakesNumber(other.m_sType, Target::Attribute);
        return isOfKind && facet.contains(other.m_sName);
    });
    if (isLent && other.m_sName != lender.m_sName) {
        findings.Add("attribute-contains", lender.m_iNode, { lender.m_sName, other.m_sName });
    }
}

void CheckLenders(const Subject &subject, const QString &base, const std::vector<Lender> &attributes,
                  Findings &findings)
{
    for (const Lender &lender : attributes) {
        const bool isEnumerated = lender.m_lFacets.value(0).startsWith(QLatin1String("enumeration"));
        if (isEnumerated && lender.m_sName.at(lender.m_sName.size() - 1).isDigit()
            && ContainsOneOf(subject.BuiltIn(base), { "string", "short", "long" })) {
            findings.Add("attribute-digit", lender.m_iNode, { lender.m_sName });
        }
        for (const Lender &other : attributes) {
            CheckPair(lender, other, findings);
        }
    }
}

// Attributes by the type that holds them: these stand on one element.
void CheckAttributes(const Subject &subject, Findings &findings)
{
    const SchemaModel &model = subject.m_oModel;
    const auto isType = [](const SchemaNode &outer) { return outer.IsType(); };
    std::map<int, std::vector<Lender>> types;
    for (int number = 0; number < model.Count(); ++number) {
        const SchemaNode &node = model.At(number);
        const bool isLocal = node.Is("attribute") && node.m_bInType && !node.m_bFacet;
        if (isLocal && !node.Key().isEmpty()) {
            types[model.Around(number, isType)].push_back(MakeLender(subject, number));
        }
    }
    for (const auto &[type, attributes] : types) {
        const int content = model.Child(type, { "simpleContent" });
        const int extension = content < 0 ? -1 : model.Child(content, { "extension" });
        CheckLenders(subject, extension < 0 ? QString() : model.At(extension).Get("base"), attributes, findings);
    }
}

} // namespace

void CheckValues(const Subject &subject, Findings &findings)
{
    const SchemaModel &model = subject.m_oModel;
    for (int number = 0; number < model.Count(); ++number) {
        const SchemaNode &node = model.At(number);
        if (node.m_bFacet) {
            CheckFacet(subject, number, findings);
            continue;
        }
        CheckElementType(subject, number, findings);
        if (node.Is("attribute")) {
            CheckAttributeType(subject, number, findings);
        }
    }
    if (subject.m_oRun.HasTemplate()) {
        CheckAttributes(subject, findings);
    }
}
