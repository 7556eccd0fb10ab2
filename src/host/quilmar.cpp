#include "host/quilmar.h"

#include <utility>

namespace values {

namespace {

Tree *&InstalledTree()
{
    static Tree *tree = nullptr;
    return tree;
}

} // namespace

ValueBase::ValueBase(QString name, QString pathName)
    : m_sName(std::move(name))
    , m_sPathName(std::move(pathName))
{
}

ValueBase::~ValueBase() = default;

QString ValueBase::GetName() const
{
    return m_sName;
}

QString ValueBase::GetPathName() const
{
    return m_sPathName;
}

IValueNumeric::~IValueNumeric() = default;

ValueSelection::~ValueSelection() = default;

TreeItem::~TreeItem() = default;

ValueItem::~ValueItem() = default;

Node::~Node() = default;

Tree::~Tree()
{
    if (InstalledTree() == this) {
        InstalledTree() = nullptr;
    }
}

Tree *Tree::Instance()
{
    return InstalledTree();
}

void Tree::Install(Tree *tree)
{
    InstalledTree() = tree;
}

} // namespace values
