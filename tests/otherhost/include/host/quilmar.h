#pragma once

#include <QString>

#include <vector>

/// This host's tree has one value, "Sensor/Level", a number.
namespace values {

struct ValueBase
{
    virtual ~ValueBase() = default;
    QString GetName() const { return QStringLiteral("Level"); }
    QString GetPathName() const { return QStringLiteral("Sensor/Level"); }
    virtual QString GetText() = 0;
};

struct IValueNumeric
{
    virtual ~IValueNumeric() = default;
    virtual double GetNumber() = 0;
};

struct ValueSelection : ValueBase
{
    virtual double GetSelectionNumber() = 0;
};

struct TreeItem
{
    virtual ~TreeItem() = default;
    virtual QString GetItemName() = 0;
};

struct ValueItem : TreeItem
{
    virtual ValueBase *FindValue(QString path) = 0;
};

struct Node : TreeItem
{
    std::vector<TreeItem *> GetTreeItems() const { return {}; }
};

struct Tree
{
    static Tree *Instance() { return &s_oOnly; }
    ValueBase *FindValue(QString path);
    TreeItem *FindItem(QString) { return nullptr; }

    static Tree s_oOnly;
};

} // namespace values
