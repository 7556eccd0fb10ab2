#include "report/currentattributes.h"

#include <algorithm>
#include <utility>

namespace {

AttributeList::iterator Find(AttributeList &attributes, const QString &name)
{
    return std::find_if(attributes.begin(), attributes.end(),
                        [&name](const auto &entry) { return entry.first == name; });
}

} // namespace

void CurrentAttributes::Bind(const QDomElement &element, AttributeModel::Pointer model)
{
    m_oElement = element;
    m_pModel = std::move(model);
    m_bInDocument = m_pModel == nullptr;
    m_bOwn = false;
}

void CurrentAttributes::Release()
{
    Bind(QDomElement(), nullptr);
}

const AttributeList &CurrentAttributes::GetAll()
{
    if (m_bInDocument && (m_bShared || !m_bOwn)) {
        m_lOwn = SortedAttributes(m_oElement);
        m_bOwn = true;
    }
    return m_bOwn ? m_lOwn : m_pModel->GetAttributes();
}

QXmlAttributes CurrentAttributes::GetEventAttributes()
{
    return m_bInDocument || m_bOwn ? ToXmlAttributes(GetAll()) : m_pModel->GetEventAttributes();
}

QString CurrentAttributes::GetValue(const QString &name)
{
    if (m_bInDocument && m_bShared) {
        return m_oElement.attribute(name);
    }
    for (const auto &[present, value] : GetAll()) {
        if (present == name) {
            return value;
        }
    }
    return QString();
}

void CurrentAttributes::Remove(const QString &name)
{
    AttributeList &own = GetOwn();
    const auto entry = Find(own, name);
    if (entry != own.end()) {
        own.erase(entry);
    }
    if (m_bInDocument) {
        m_oElement.removeAttribute(name);
    }
}

void CurrentAttributes::Set(const QString &name, const QString &value)
{
    AttributeList &own = GetOwn();
    const auto entry = Find(own, name);
    if (entry != own.end()) {
        entry->second = value;
    } else {
        own.emplace(std::lower_bound(own.begin(), own.end(), std::make_pair(name, value)), name, value);
    }
    if (m_bInDocument) {
        m_oElement.setAttribute(name, value);
    }
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
    if (!m_bInDocument) {
        for (const auto &[name, value] : GetAll()) {
            m_oElement.setAttribute(name, value);
        }
        m_bInDocument = true;
    }
}

void CurrentAttributes::WriteAll()
{
    WriteOwn();
    if (m_pModel != nullptr && !m_pModel->GetChildren().empty()) {
        m_pModel->WriteToChildren(m_oElement);
    }
    m_pModel.reset();
}

ModelSequence CurrentAttributes::GetChildModels() const
{
    return m_pModel == nullptr ? ModelSequence() : ModelSequence(m_pModel);
}

AttributeList &CurrentAttributes::GetOwn()
{
    const AttributeList &all = GetAll();
    if (!m_bOwn) {
        m_lOwn = all;
        m_bOwn = true;
    }
    return m_lOwn;
}
