#pragma once

#include <QString>

#include <vector>

/// This host's tree counts what it was asked for, and has one value: "Sensor/Level", a number.
namespace values {

class ValueBase
{
public:
    virtual ~ValueBase() = default;
    QString GetName() const;
    QString GetPathName() const;
    virtual QString GetText() = 0;
};

class IValueNumeric
{
public:
    virtual ~IValueNumeric() = default;
    virtual double GetNumber() = 0;
};

class ValueSelection : public ValueBase
{
public:
    virtual double GetSelectionNumber() = 0;
};

class TreeItem
{
public:
    virtual ~TreeItem() = default;
    virtual QString GetItemName() = 0;
};

class ValueItem : public TreeItem
{
public:
    virtual ValueBase *FindValue(QString path) = 0;
};

class Node : public TreeItem
{
public:
    std::vector<TreeItem *> GetTreeItems() const;
};

class Tree
{
public:
    static Tree *Instance();

    virtual ~Tree() = default;
    virtual ValueBase *FindValue(QString path);
    virtual TreeItem *FindItem(QString path);

    int m_iQuestions = 0;
};

} // namespace values
