#include "report/childcursor.h"

#include "dom/nodewalk.h"

#include <utility>

ChildCursor::ChildCursor(const QDomNode &parent, AttributeModel::Pointer parentModel)
    : m_oParent(parent)
    , m_oNode(parent.firstChild())
    , m_pParentModel(std::move(parentModel))
{
}

AttributeModel::Pointer ChildCursor::GetModel() const
{
    if (m_bAtCopy) {
        return m_pCopied;
    }
    const bool hasModel = m_pParentModel != nullptr && m_iIndex < m_pParentModel->GetChildren().size();
    return hasModel ? m_pParentModel->GetChildren()[m_iIndex] : nullptr;
}

void ChildCursor::Advance()
{
    m_oNode = dom::NextSibling(m_oNode);
    m_bAtCopy = m_iCopies > 0;
    if (m_bAtCopy) {
        --m_iCopies;
    } else {
        m_pCopied.reset();
        ++m_iIndex;
    }
}

void ChildCursor::MoveTo(const QDomNode &node)
{
    DropModels();
    m_oParent = node.parentNode();
    m_oNode = node;
}

void ChildCursor::InsertBehind(AttributeModel::Pointer model, int count)
{
    m_pCopied = std::move(model);
    m_iCopies = count;
}

void ChildCursor::WriteRest()
{
    ChildCursor rest = *this;
    DropModels();
    while (rest.HasModelBehind() && !rest.m_oNode.isNull()) {
        rest.Advance();
        if (const AttributeModel::Pointer model = rest.GetModel()) {
            model->WriteTo(rest.m_oNode);
        }
    }
}

bool ChildCursor::HasModelBehind() const
{
    return m_iCopies > 0 || (m_pParentModel != nullptr && m_iIndex + 1 < m_pParentModel->GetChildren().size());
}

void ChildCursor::DropModels()
{
    m_pParentModel.reset();
    m_pCopied.reset();
    m_iCopies = 0;
    m_bAtCopy = false;
}
