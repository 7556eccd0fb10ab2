#pragma once

#include "report/attributemodel.h"

#include <QDomNode>

#include <cstddef>
#include <memory>
#include <vector>

/// A place among the children of an element, and the model of the attributes that are kept out of the document there.
/// Node and model move together. A null model: the document holds the attributes of the node and of all below it.
class ChildCursor
{
public:
    /// Stands nowhere.
    ChildCursor() = default;
    /// Stands on the first child of `parent`, whose model is `parentModel`.
    explicit ChildCursor(const QDomNode &parent, const AttributeModel::Pointer &parentModel = nullptr);

    /// Null behind the last child.
    const QDomNode &GetNode() const { return m_oNode; }
    const AttributeModel::Pointer &GetModel() const { return m_pModel; }

    /// Goes on to the next sibling.
    void Advance();
    /// Goes to any node; neither it nor its siblings may have a model.
    void MoveTo(const QDomNode &node);

    /// `count` siblings of this model have been put behind the node.
    void InsertBehind(const AttributeModel::Pointer &model, int count);
    /// Gives the siblings behind the node their attributes; none of them has a model then.
    void WriteRest();

private:
    using Models = std::shared_ptr<const std::vector<AttributeModel::Pointer>>;

    bool HasModelBehind() const { return m_pModels != nullptr && m_iNext < m_pModels->size(); }
    void TakeModel();
    void DropModels();

    QDomNode m_oParent; // keeps the children alive, whatever a receiver does
    QDomNode m_oNode;
    AttributeModel::Pointer m_pModel; // of the node
    Models m_pModels; // those from m_iNext on belong to the siblings behind the node, in order
    std::size_t m_iNext = 0;
};
