// Types that come out otherwise than they are written: restrictions, extensions, and types without a name.

#include "subject.h"

#include "schema/schematags.h"
#include "schema/templatemaker.h"

#include <algorithm>

namespace {

constexpr const char *kFacets[] = { "enumeration",    "minInclusive", "maxInclusive", "minExclusive", "maxExclusive",
                                    "pattern",        "length",       "minLength",    "maxLength",    "totalDigits",
                                    "fractionDigits", "whiteSpace",   "assertion" };

bool IsFacet(const SchemaNode &node)
{
    return std::any_of(std::begin(kFacets), std::end(kFacets), [&node](const char *facet) { return node.Is(facet); });
}

bool HoldsElements(const SchemaModel &model, int type)
{
    const auto &nodes = model.GetNodes();
    return std::any_of(nodes.begin() + type, nodes.begin() + model.At(type).m_iEnd,
                       [](const SchemaNode &node) { return node.IsLocalElement(); });
}

void CheckAnonymous(const Subject &subject, int number, Findings &findings)
{
    const SchemaModel &model = subject.m_oModel;
    const SchemaNode &node = model.At(number);
    if (!node.IsType() || node.m_bFacet || node.Has("name") || node.m_iParent < 0) {
        return;
    }
    const SchemaNode &parent = model.At(node.m_iParent);
    if (!node.m_lAttributes.empty() && !parent.m_bGlobal) {
        findings.Add("anonymous-attributes", number, { node.FirstValue() });
    }
    if (parent.Is("attribute") && !parent.m_bGlobal) {
        findings.Add("inline-attribute-type", number, { parent.Get("name") });
    }
    if (!parent.IsLocalElement()) {
        return;
    }
    const int declaration = model.DeclarationOf(number);
    if (node.m_lAttributes.empty() && declaration >= 0 && model.At(declaration).IsType()
        && HoldsElements(model, number)) {
        findings.Add("flat-type", number, { parent.Get("name"), model.At(declaration).FirstValue() });
    }
    if (parent.MinOccurs() > 1) {
        findings.Add("copies-anonymous", number, { parent.Get("minOccurs"), parent.Get("name") });
    }
}

void CheckDummy(const Subject &subject, int number, Findings &findings)
{
    const QString name = subject.m_oModel.At(number).FirstValue();
    const auto entry = subject.m_oRun.GetTypes().find(name);
    const bool isType = subject.m_oModel.At(number).IsType();
    const bool isWaitedFor = subject.m_oRun.GetMissing().count(name) > 0;
    if (entry != subject.m_oRun.GetTypes().end() && (isType || isWaitedFor)
        && TemplateMaker::HasCarrier(*entry->second.m_pFragment)
        && !TemplateMaker::HasContent(*entry->second.m_pFragment)) {
        findings.Add("dummy", number, { name });
    }
}

// Whether the element may refer to the declaration around it while that is being read.
void CheckRecursion(const Subject &subject, int number, Findings &findings)
{
    const SchemaNode &node = subject.m_oModel.At(number);
    const QString reference = node.Needed();
    if (node.IsLocalElement() && !reference.isEmpty() && reference == subject.OwnerOf(number)
        && subject.m_oRun.HasTemplate()) {
        findings.Add("recursive", number, { reference });
    }
}

} // namespace

void CheckTypes(const Subject &subject, Findings &findings)
{
    const SchemaModel &model = subject.m_oModel;
    for (int number = 0; number < model.Count(); ++number) {
        const SchemaNode &node = model.At(number);
        CheckAnonymous(subject, number, findings);
        CheckRecursion(subject, number, findings);
        if (node.IsDeclaration()) {
            CheckDummy(subject, number, findings);
        }
        if (node.m_bFacet && !IsFacet(node) && !node.m_lAttributes.empty()) {
            findings.Add("in-restriction", number, { node.m_sQualifiedName });
        }
        if (node.Is("extension") && !node.m_bFacet && !schematags::HasPrefix(node.Get("base"))
            && subject.HasContent(node.Get("base"))) {
            findings.Add("extends-content", number, { node.Get("base") });
        }
    }
}
