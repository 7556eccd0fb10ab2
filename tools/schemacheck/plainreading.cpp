#include "plainreading.h"

#include "schema/schematags.h"

#include <algorithm>

namespace {

// Types and groups that hold themselves have no end.
constexpr int kMaxLevel = 64;

} // namespace

PlainReading::PlainReading(const SchemaModel &model)
    : m_oModel(model)
{
    for (int i = 0; i < model.Count(); ++i) {
        const SchemaNode &node = model.At(i);
        if (node.IsType()) {
            m_hTypes.insert(node.Get("name"), i);
        } else if (node.Is("group")) {
            m_hGroups.insert(node.Get("name"), i);
        } else if (node.m_bGlobal) {
            (node.Is("element") ? m_hElements : m_hAttributes).insert(node.Get("name"), i);
        }
    }
}

int PlainReading::FindType(const QString &name) const
{
    return name.isEmpty() ? -1 : m_hTypes.value(LocalName(name), -1);
}

int PlainReading::TypeOf(int node) const
{
    const int inner = m_oModel.Child(node, { "complexType", "simpleType" });
    return inner >= 0 ? inner : FindType(m_oModel.At(node).Get("type"));
}

std::vector<PlainReading::Place> PlainReading::ChildrenOf(int element, int mostCopies) const
{
    std::vector<Place> places;
    AddContent(TypeOf(element), places, mostCopies, 0);
    return places;
}

void PlainReading::AddContent(int type, std::vector<Place> &places, int mostCopies, int level) const
{
    if (type < 0 || level > kMaxLevel) {
        return;
    }
    const int wrapper = m_oModel.Child(type, { "complexContent" });
    const int derived = wrapper < 0 ? -1 : m_oModel.Child(wrapper, { "extension", "restriction" });
    if (derived >= 0 && m_oModel.At(derived).Is("extension")) {
        AddContent(FindType(m_oModel.At(derived).Get("base")), places, mostCopies, level + 1);
    }
    AddParticles(derived < 0 ? type : derived, places, mostCopies, level);
}

void PlainReading::AddParticles(int node, std::vector<Place> &places, int mostCopies, int level) const
{
    m_oModel.ForChildren(node, [&](int child) { AddParticle(child, places, mostCopies, level); });
}

void PlainReading::AddParticle(int node, std::vector<Place> &places, int mostCopies, int level) const
{
    const SchemaNode &particle = m_oModel.At(node);
    if (particle.Is("element")) {
        AddCopies(node, places, mostCopies);
    } else if (particle.Is("sequence") || particle.Is("choice") || particle.Is("all")) {
        AddParticles(node, places, mostCopies, level);
    } else if (particle.Is("group") && level < kMaxLevel) {
        const int group = m_hGroups.value(LocalName(particle.Get("ref")), -1);
        if (group >= 0) {
            AddParticles(group, places, mostCopies, level + 1);
        }
    }
}

void PlainReading::AddCopies(int element, std::vector<Place> &places, int mostCopies) const
{
    const SchemaNode &node = m_oModel.At(element);
    const int declaration = node.Has("ref") ? GlobalElement(LocalName(node.Get("ref"))) : element;
    const int copies = std::min(std::max(node.MinOccurs(), 1), mostCopies);
    for (int copy = 0; copy < copies && declaration >= 0; ++copy) {
        places.push_back({ element, declaration, copy });
    }
}

QMap<QString, QString> PlainReading::AttributesOf(int element) const
{
    QMap<QString, QString> attributes;
    const int type = TypeOf(element);
    AddValue(m_oModel.At(element).Get("type"), type, attributes, 0);
    AddAttributes(type, attributes, 0);
    if (!m_oModel.At(element).Get("default").isEmpty()) {
        attributes.insert(QStringLiteral("default"), m_oModel.At(element).Get("default"));
    }
    return attributes;
}

// Type and facets of a value, from a type's name or the type itself.
void PlainReading::AddValue(const QString &typeName, int type, QMap<QString, QString> &attributes, int level) const
{
    if (typeName.startsWith(schematags::kPrefix)) {
        attributes.insert(QStringLiteral("type"), LocalName(typeName));
    } else if (type >= 0 && level <= kMaxLevel) {
        const int wrapper = m_oModel.At(type).Is("simpleType") ? type : m_oModel.Child(type, { "simpleContent" });
        const int derived = wrapper < 0 ? -1 : m_oModel.Child(wrapper, { "restriction", "extension" });
        if (derived >= 0) {
            const QString base = m_oModel.At(derived).Get("base");
            AddValue(base, FindType(base), attributes, level + 1);
            AddFacets(derived, attributes);
        }
    }
}

void PlainReading::AddFacets(int restriction, QMap<QString, QString> &attributes) const
{
    int enumerations = 0;
    m_oModel.ForChildren(restriction, [&](int child) {
        const SchemaNode &facet = m_oModel.At(child);
        if (facet.m_bFacet && facet.Has("value")) {
            attributes.insert(facet.Is("enumeration") ? facet.m_sTag + QString::number(++enumerations) : facet.m_sTag,
                              facet.Get("value"));
        }
    });
}

void PlainReading::AddAttributes(int type, QMap<QString, QString> &attributes, int level) const
{
    if (type < 0 || level > kMaxLevel) {
        return;
    }
    const int wrapper = m_oModel.Child(type, { "simpleContent", "complexContent" });
    const int derived = wrapper < 0 ? -1 : m_oModel.Child(wrapper, { "extension", "restriction" });
    if (derived >= 0) {
        AddAttributes(FindType(m_oModel.At(derived).Get("base")), attributes, level + 1);
    }
    m_oModel.ForChildren(derived < 0 ? type : derived, [&](int child) {
        const SchemaNode &node = m_oModel.At(child);
        if (node.Is("attribute") && node.Has("ref")) {
            AddReferred(LocalName(node.Get("ref")), attributes);
        } else if (node.Is("attribute")) {
            attributes.insert(node.Get("name"), node.Get("type"));
        }
    });
}

// A global attribute: its type, and the facets that can be checked.
void PlainReading::AddReferred(const QString &name, QMap<QString, QString> &attributes) const
{
    const int node = m_hAttributes.value(name, -1);
    QMap<QString, QString> own;
    if (node >= 0) {
        AddValue(m_oModel.At(node).Get("type"), TypeOf(node), own, 0);
    }
    attributes.insert(name, own.take(QStringLiteral("type")));
    for (auto facet = own.constBegin(); facet != own.constEnd(); ++facet) {
        if (facet.key().startsWith(QLatin1String("enumeration")) || facet.key().endsWith(QLatin1String("clusive"))) {
            attributes.insert(facet.key() + name, facet.value());
        }
    }
}
