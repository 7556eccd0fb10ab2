// What a single tag shows: prefixes, first attributes, what is passed over, includes.

#include "subject.h"

#include <QDir>

#include <algorithm>

namespace {

struct PassedOver
{
    const char *m_sTag;
    const char *m_sEffect;
    const char *m_sCure;
};

constexpr PassedOver kPassedOver[] = {
    { "group", "its elements count as global ones", "use a named complex type" },
    { "attributeGroup", "its attributes count as global ones", "declare the attributes where they are used" },
    { "import", "what that file declares is missing", "include the file" },
    { "redefine", "what that file declares is missing", "include the file, and declare the type under a new name" },
    { "override", "what that file declares is missing", "include the file, and declare the type under a new name" },
    { "any", "no element stands in its place", "declare the elements" },
    { "anyAttribute", "no attribute stands in its place", "declare the attributes" },
    { "list", "its element has no type and takes no value", "restrict \"xs:string\"" },
    { "union", "its element has the first inline type, or none", "restrict one built-in type" },
};

struct Ignored
{
    const char *m_sTag;
    const char *m_sAttribute;
    // The attribute matters unless it says this.
    const char *m_sHarmless;
    const char *m_sEffect;
    const char *m_sCure;
};

constexpr Ignored kIgnored[] = {
    { "schema", "targetNamespace", "", "a report's elements are in no namespace", "leave it out" },
    { "element", "fixed", nullptr, "the host has to give the value", "write it as the default" },
    { "element", "nillable", "false", "an element without a value gets no xsi:nil", "write minOccurs=\"0\"" },
    { "element", "abstract", "false", "the element may stand in a report", "leave the element out" },
    { "element", "substitutionGroup", nullptr, "the element stands for no other", "use a choice" },
    { "attribute", "default", nullptr, "the host has to give the value", "leave it out" },
    { "attribute", "fixed", nullptr, "the host has to give the value", "leave it out" },
    { "complexType", "mixed", "false", "text between elements can't be given", "use an element of type \"xs:string\"" },
    { "complexType", "abstract", "false", "elements of the type may stand in a report", "leave the type out" },
};

void CheckPrefix(const SchemaModel &model, int number, std::set<int> &files, Findings &findings)
{
    const SchemaNode &node = model.At(number);
    if (node.m_sTag.isEmpty() && model.IsOfForeignPrefix(node.m_iFile, node.m_sQualifiedName)
        && files.insert(node.m_iFile).second) {
        findings.Add("prefix", number, { node.m_sQualifiedName });
    }
}

// The attribute that has to be the first one of the tag; empty if none has to.
QString FirstName(const SchemaNode &node)
{
    if (node.m_bFacet) {
        return node.m_sTag.isEmpty() || !node.Has("value") ? QString() : QStringLiteral("value");
    }
    if (node.Is("restriction") || node.Is("extension")) {
        return QStringLiteral("base");
    }
    if (node.Is("include")) {
        return QStringLiteral("schemaLocation");
    }
    return node.IsDeclaration() && node.Has("name") ? QStringLiteral("name") : QString();
}

void CheckFirstAttribute(const SchemaNode &node, int number, Findings &findings)
{
    const QString name = FirstName(node);
    if (!name.isEmpty() && !node.m_lAttributes.empty() && node.m_lAttributes.front().first != name) {
        findings.Add("first-attribute", number, { node.m_sQualifiedName, node.m_lAttributes.front().first, name });
    }
}

void CheckPassedOver(const SchemaNode &node, int number, Findings &findings)
{
    for (const PassedOver &row : kPassedOver) {
        if (node.Is(row.m_sTag)) {
            findings.Add("passed-over", number,
                         { node.m_sQualifiedName, QLatin1String(row.m_sEffect), QLatin1String(row.m_sCure) });
        }
    }
    for (const Ignored &row : kIgnored) {
        if (node.Is(row.m_sTag) && node.Has(row.m_sAttribute)
            && node.Get(row.m_sAttribute) != QLatin1String(row.m_sHarmless)) {
            findings.Add("ignored-attribute", number,
                         { QLatin1String(row.m_sAttribute), node.m_sQualifiedName, QLatin1String(row.m_sEffect),
                           QLatin1String(row.m_sCure) });
        }
    }
    const bool hasLimits = node.MinOccurs() != 1 || node.MaxOccurs() != 1;
    // With valid output a choice may stand as often as it says, but nobody counts how often it has to.
    if (hasLimits && node.Is("choice") && node.MinOccurs() <= 1) {
        findings.Add("choice-limits", number);
    } else if (hasLimits && (node.Is("sequence") || node.Is("choice") || node.Is("all") || node.Is("group"))) {
        findings.Add("particle-limits", number, { node.m_sQualifiedName });
    }
}

void CheckLocation(const SchemaModel &model, int number, Findings &findings)
{
    const SchemaNode &node = model.At(number);
    const auto resolved = [&node](const QString &from) {
        return QDir::cleanPath(QDir(from + QStringLiteral("/..")).filePath(node.FirstValue()));
    };
    if (node.Is("include") && !node.m_lAttributes.empty()
        && resolved(model.GetFiles().at(node.m_iFile)) != resolved(model.GetFiles().first())) {
        findings.Add("include-location", number, { node.FirstValue() });
    }
}

} // namespace

void CheckTags(const Subject &subject, Findings &findings)
{
    const SchemaModel &model = subject.m_oModel;
    std::set<int> files;
    for (int number = 0; number < model.Count(); ++number) {
        const SchemaNode &node = model.At(number);
        CheckPrefix(model, number, files, findings);
        CheckFirstAttribute(node, number, findings);
        if (!node.m_bFacet) {
            CheckPassedOver(node, number, findings);
            CheckLocation(model, number, findings);
        }
    }
    for (const SchemaModel::LostInclude &lost : model.GetLostIncludes()) {
        findings.Add(lost.m_bRefused ? "include-refused" : "include-unreadable", lost.m_iNode,
                     { model.At(lost.m_iNode).FirstValue(), lost.m_sReason });
    }
}
