#pragma once

#include "report/attributemodel.h"

#include <QDomNode>

#include <cstddef>

/// A place among the children of an element, and the model of the attributes that are kept out of the document there.
/// Node and model move together. A null model: the document holds the attributes of the node and of all below it.
class ChildCursor
{
public:
    /// Stands nowhere.
    ChildCursor() = default;
    /// Stands on the first child of `parent`, whose model is `parentModel`.
    explicit ChildCursor(const QDomNode &parent, AttributeModel::Pointer parentModel = nullptr);

    /// Null behind the last child.
    const QDomNode &GetNode() const { return m_oNode; }
    AttributeModel::Pointer GetModel() const;

    /// Goes on to the next sibling.
    void Advance();
    /// Goes to any node; neither it nor its siblings may have a model.
    void MoveTo(const QDomNode &node);

    /// `count` siblings of this model have been put behind the node.
    void InsertBehind(AttributeModel::Pointer model, int count);
    /// Gives the siblings behind the node their attributes; none of them has a model then.
    void WriteRest();

private:
    bool HasModelBehind() const;
    void DropModels();

    QDomNode m_oParent; // keeps the children alive, whatever a receiver does
    QDomNode m_oNode;
    AttributeModel::Pointer m_pParentModel;
    std::size_t m_iIndex = 0; // of the node's model, or of the one that was copied, among those of m_pParentModel
    AttributeModel::Pointer m_pCopied;
    int m_iCopies = 0; // siblings of m_pCopied behind the node
    bool m_bAtCopy = false;
};
