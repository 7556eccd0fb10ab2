#pragma once

#include "tagwright_host_export.h"

#include <QString>

#include <map>
#include <memory>
#include <vector>

/// The host's value tree: the abstract classes that the library reads, and a small tree in memory that a host without
/// a value tree of its own can fill. GUI thread only.
namespace values {

/// One value. It may be an IValueNumeric or a ValueSelection as well: ask by dynamic_cast.
class TAGWRIGHT_HOST_EXPORT ValueBase
{
public:
    /// `pathName` must be a path that the tree finds this value by.
    ValueBase(QString name, QString pathName);
    virtual ~ValueBase();
    Q_DISABLE_COPY(ValueBase)

    /// The short name, such as "Level".
    QString GetName() const;
    /// A path that Tree::FindValue accepts, such as "Receiver/Level".
    QString GetPathName() const;
    /// The value as text, with its unit if it has one.
    virtual QString GetText() = 0;

private:
    QString m_sName;
    QString m_sPathName;
};

/// The further interface of a value that is a number.
class TAGWRIGHT_HOST_EXPORT IValueNumeric
{
public:
    IValueNumeric() = default;
    virtual ~IValueNumeric();
    Q_DISABLE_COPY(IValueNumeric)

    /// The value in the unit that its text names.
    virtual double GetNumber() = 0;
};

/// A value that is one of several choices. Its text may end in a frequency unit, as "100 kHz".
class TAGWRIGHT_HOST_EXPORT ValueSelection : public ValueBase
{
public:
    using ValueBase::ValueBase;
    ~ValueSelection() override;

    /// The number of the current choice.
    virtual double GetSelectionNumber() = 0;
};

/// A place in the tree: a ValueItem or a Node. Ask by dynamic_cast.
class TAGWRIGHT_HOST_EXPORT TreeItem
{
public:
    TreeItem() = default;
    virtual ~TreeItem();
    Q_DISABLE_COPY(TreeItem)

    /// The short name of the place; for a Node its element name when it is written as XML.
    virtual QString GetItemName() = 0;
};

/// A place that holds a value.
class TAGWRIGHT_HOST_EXPORT ValueItem : public TreeItem
{
public:
    ~ValueItem() override;

    /// The item's own value for the empty path, else null.
    virtual ValueBase *FindValue(QString path) = 0;
};

/// A place that holds further places.
class TAGWRIGHT_HOST_EXPORT Node : public TreeItem
{
public:
    ~Node() override;

    /// The children, in order. The tree keeps them.
    virtual std::vector<TreeItem *> GetTreeItems() const = 0;
};

/// The tree as the library asks it.
class TAGWRIGHT_HOST_EXPORT Tree
{
public:
    Tree() = default;
    virtual ~Tree();
    Q_DISABLE_COPY(Tree)

    /// The installed tree, or null.
    static Tree *Instance();
    /// Puts a tree in place; null removes it. Not owned: it must live until it is removed.
    static void Install(Tree *tree);

    /// The value at a path, or null. The tree keeps it.
    virtual ValueBase *FindValue(QString path) = 0;
    /// The place at a path, or null. The tree keeps it.
    virtual TreeItem *FindItem(QString path) = 0;
};

/// A tree in memory, filled by paths "a/b/c". The nodes of a path are made where they are missing. Values can be
/// changed at any time and keep their address as long as the tree stands; nothing can be taken out. A tree that is
/// destroyed while it is installed removes itself.
class TAGWRIGHT_HOST_EXPORT MemoryTree : public Tree
{
public:
    MemoryTree();
    ~MemoryTree() override;

    /// Sets a number, making it where it is missing. Its text is `text` or, where that is empty, the number ('g', 12
    /// digits), and, behind a blank, the unit if there is one. False, and no change, if a part of the path is empty
    /// or if something else than a number stands there.
    bool SetNumber(const QString &path, double number, const QString &unit = QString(),
                   const QString &text = QString());
    /// Sets a selection: the number of the choice and its text. False as SetNumber.
    bool SetSelection(const QString &path, double number, const QString &text);
    /// Sets a plain text. False as SetNumber.
    bool SetText(const QString &path, const QString &text);
    /// The node at a path, made where it is missing; the top node for the empty path. Null if the path crosses a
    /// value or has an empty part.
    Node *AddNode(const QString &path);

    ValueBase *FindValue(QString path) override;
    TreeItem *FindItem(QString path) override;

private:
    class TAGWRIGHT_HOST_NO_EXPORT MemoryNode;
    class TAGWRIGHT_HOST_NO_EXPORT MemoryItem;

    template <typename Make>
    TreeItem *MakePlace(const QString &path, Make make);
    MemoryNode *MakeNode(const QString &path);
    template <typename Value, typename... Content>
    bool Set(const QString &path, const Content &...content);

    std::unique_ptr<MemoryNode> m_pTop;
    std::map<QString, TreeItem *> m_hPlaces;
};

} // namespace values
