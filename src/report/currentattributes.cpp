#include "report/currentattributes.h"

#include <algorithm>
#include <utility>

namespace {

template <typename List>
auto Find(List &attributes, const QString &name)
{
    return std::find_if(attributes.begin(), attributes.end(),
                        [&name](const auto &entry) { return entry.first == name; });
}

} // namespace

void CurrentAttributes::Bind(const QDomElement &element, AttributeModel::Pointer model)
{
    m_oElement = element;
    m_pModel = std::move(model);
    m_eHolder = m_pModel == nullptr ? Holder::Document : Holder::Model;
    m_bListed = false;
}

const AttributeList &CurrentAttributes::GetAll()
{
    if (m_eHolder == Holder::Document && (!m_bListed || m_pWalked == nullptr || m_pWalked->IsWatched())) {
        m_lOwn = SortedAttributes(m_oElement);
        m_bListed = true;
    }
    return m_eHolder == Holder::Model ? m_pModel->GetAttributes() : m_lOwn;
}

QXmlAttributes CurrentAttributes::GetEventAttributes()
{
    return m_eHolder == Holder::Model ? m_pModel->GetEventAttributes() : ToXmlAttributes(GetAll());
}

QString CurrentAttributes::GetValue(const QString &name)
{
    if (m_eHolder == Holder::Document) {
        return m_oElement.attribute(name);
    }
    const AttributeList &all = GetAll();
    const auto entry = Find(all, name);
    return entry == all.end() ? QString() : entry->second;
}

void CurrentAttributes::Remove(const QString &name)
{
    if (m_eHolder == Holder::Document) {
        m_oElement.removeAttribute(name);
        m_bListed = false;
        return;
    }
    AttributeList &own = GetOwn();
    const auto entry = Find(own, name);
    if (entry != own.end()) {
        own.erase(entry);
    }
}

void CurrentAttributes::Set(const QString &name, const QString &value)
{
    if (m_eHolder == Holder::Document) {
        m_oElement.setAttribute(name, value);
        m_bListed = false;
        return;
    }
    AttributeList &own = GetOwn();
    const auto entry = Find(own, name);
    if (entry != own.end()) {
        entry->second = value;
    } else {
        own.emplace(std::lower_bound(own.begin(), own.end(), std::make_pair(name, value)), name, value);
    }
}

bool CurrentAttributes::Has(const QString &name)
{
    if (m_eHolder == Holder::Document) {
        return m_oElement.hasAttribute(name);
    }
    const AttributeList &all = GetAll();
    return Find(all, name) != all.end();
}

void CurrentAttributes::RemoveIf(const std::function<bool(const QString &name, const QString &value)> &test)
{
    if (m_eHolder != Holder::Document) {
        AttributeList &own = GetOwn();
        const auto isGoing = [&test](const auto &entry) { return test(entry.first, entry.second); };
        own.erase(std::remove_if(own.begin(), own.end(), isGoing), own.end());
        return;
    }
    for (const auto &[name, value] : GetAll()) {
        if (test(name, value)) {
            m_oElement.removeAttribute(name);
        }
    }
    m_bListed = false;
}

AttributeModel::Pointer CurrentAttributes::MakeModel()
{
    if (m_pModel == nullptr) {
        return std::make_shared<AttributeModel>(m_oElement);
    }
    return std::make_shared<AttributeModel>(GetAll(), m_pModel->GetChildren());
}

void CurrentAttributes::WriteOwn()
{
    if (m_eHolder == Holder::Document) {
        return;
    }
    for (const auto &[name, value] : GetAll()) {
        m_oElement.setAttribute(name, value);
    }
    m_eHolder = Holder::Document;
}

void CurrentAttributes::WriteAll()
{
    WriteOwn();
    if (m_pModel != nullptr) {
        m_pModel->WriteToChildren(m_oElement);
        m_pModel.reset();
    }
}

// The list of a bare element, to be changed.
AttributeList &CurrentAttributes::GetOwn()
{
    if (m_eHolder == Holder::Model) {
        m_lOwn = m_pModel->GetAttributes();
        m_eHolder = Holder::Own;
    }
    return m_lOwn;
}
