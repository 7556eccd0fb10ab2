#include "report/childcursor.h"

#include "dom/nodewalk.h"

#include <utility>

ChildCursor::ChildCursor(const QDomNode &parent, const AttributeModel::Pointer &parentModel)
    : m_oParent(parent)
    , m_oNode(parent.firstChild())
{
    if (parentModel != nullptr) {
        m_pModels = Models(parentModel, &parentModel->GetChildren());
        TakeModel();
    }
}

void ChildCursor::Advance()
{
    m_oNode = dom::NextSibling(m_oNode);
    TakeModel();
}

void ChildCursor::MoveTo(const QDomNode &node)
{
    DropModels();
    m_oParent = node.parentNode();
    m_oNode = node;
}

void ChildCursor::InsertBehind(const AttributeModel::Pointer &model, int count)
{
    std::vector<AttributeModel::Pointer> models(static_cast<std::size_t>(count), model);
    if (HasModelBehind()) {
        models.insert(models.end(), m_pModels->begin() + static_cast<std::ptrdiff_t>(m_iNext), m_pModels->end());
    }
    m_pModels = std::make_shared<const std::vector<AttributeModel::Pointer>>(std::move(models));
    m_iNext = 0;
}

void ChildCursor::WriteRest()
{
    ChildCursor rest = *this;
    DropModels();
    while (rest.HasModelBehind() && !rest.m_oNode.isNull()) {
        rest.Advance();
        rest.m_pModel->WriteTo(rest.m_oNode);
    }
}

void ChildCursor::TakeModel()
{
    m_pModel = HasModelBehind() ? (*m_pModels)[m_iNext++] : nullptr;
}

void ChildCursor::DropModels()
{
    m_pModel.reset();
    m_pModels.reset();
}
