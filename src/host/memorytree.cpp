#include "host/quilmar.h"

#include <QStringList>

namespace values {

namespace {

class MemoryNumber : public ValueBase, public IValueNumeric
{
public:
    using ValueBase::ValueBase;

    void Change(double number, const QString &unit, const QString &text)
    {
        m_dNumber = number;
        m_sUnit = unit;
        m_sText = text;
    }
    double GetNumber() override { return m_dNumber; }
    QString GetText() override
    {
        if (!m_sText.isEmpty()) {
            return m_sText;
        }
        const QString number = QString::number(m_dNumber, 'g', 12);
        return m_sUnit.isEmpty() ? number : number + QLatin1Char(' ') + m_sUnit;
    }

private:
    double m_dNumber = 0.0;
    QString m_sUnit;
    QString m_sText;
};

class MemorySelection : public ValueSelection
{
public:
    using ValueSelection::ValueSelection;

    void Change(double number, const QString &text)
    {
        m_dNumber = number;
        m_sText = text;
    }
    double GetSelectionNumber() override { return m_dNumber; }
    QString GetText() override { return m_sText; }

private:
    double m_dNumber = 0.0;
    QString m_sText;
};

class MemoryText : public ValueBase
{
public:
    using ValueBase::ValueBase;

    void Change(const QString &text) { m_sText = text; }
    QString GetText() override { return m_sText; }

private:
    QString m_sText;
};

bool IsPath(const QString &path)
{
    return !path.split(QLatin1Char('/')).contains(QString());
}

} // namespace

class MemoryTree::MemoryItem : public ValueItem
{
public:
    explicit MemoryItem(std::unique_ptr<ValueBase> value)
        : m_pValue(std::move(value))
    {
    }
    QString GetItemName() override { return m_pValue->GetName(); }
    ValueBase *FindValue(QString path) override { return path.isEmpty() ? m_pValue.get() : nullptr; }

private:
    std::unique_ptr<ValueBase> m_pValue;
};

class MemoryTree::MemoryNode : public Node
{
public:
    explicit MemoryNode(QString name)
        : m_sName(std::move(name))
    {
    }
    QString GetItemName() override { return m_sName; }
    std::vector<TreeItem *> GetTreeItems() const override
    {
        std::vector<TreeItem *> items;
        items.reserve(m_lChildren.size());
        for (const std::unique_ptr<TreeItem> &child : m_lChildren) {
            items.push_back(child.get());
        }
        return items;
    }
    void Append(std::unique_ptr<TreeItem> child) { m_lChildren.push_back(std::move(child)); }

private:
    QString m_sName;
    std::vector<std::unique_ptr<TreeItem>> m_lChildren;
};

MemoryTree::MemoryTree()
    : m_pTop(std::make_unique<MemoryNode>(QString()))
{
}

MemoryTree::~MemoryTree() = default;

bool MemoryTree::SetNumber(const QString &path, double number, const QString &unit, const QString &text)
{
    return Set<MemoryNumber>(path, number, unit, text);
}

bool MemoryTree::SetSelection(const QString &path, double number, const QString &text)
{
    return Set<MemorySelection>(path, number, text);
}

bool MemoryTree::SetText(const QString &path, const QString &text)
{
    return Set<MemoryText>(path, text);
}

Node *MemoryTree::AddNode(const QString &path)
{
    return MakeNode(path);
}

ValueBase *MemoryTree::FindValue(QString path)
{
    auto *item = dynamic_cast<MemoryItem *>(FindItem(path));
    return item == nullptr ? nullptr : item->FindValue(QString());
}

TreeItem *MemoryTree::FindItem(QString path)
{
    const auto place = m_hPlaces.find(path);
    return place == m_hPlaces.end() ? nullptr : place->second;
}

/// The place at a path. A missing one is made by `make`, of its name, and the nodes above it as well. Null if the path
/// crosses a value or has an empty part.
template <typename Make>
TreeItem *MemoryTree::MakePlace(const QString &path, Make make)
{
    if (TreeItem *place = FindItem(path)) {
        return place;
    }
    const QLatin1Char slash('/');
    MemoryNode *parent = IsPath(path) ? MakeNode(path.section(slash, 0, -2)) : nullptr;
    if (parent == nullptr) {
        return nullptr;
    }
    std::unique_ptr<TreeItem> child = make(path.section(slash, -1));
    TreeItem *place = child.get();
    m_hPlaces[path] = place;
    parent->Append(std::move(child));
    return place;
}

MemoryTree::MemoryNode *MemoryTree::MakeNode(const QString &path)
{
    const auto make = [](const QString &name) { return std::make_unique<MemoryNode>(name); };
    return path.isEmpty() ? m_pTop.get() : dynamic_cast<MemoryNode *>(MakePlace(path, make));
}

template <typename Value, typename... Content>
bool MemoryTree::Set(const QString &path, const Content &...content)
{
    MakePlace(path, [&path](const QString &name) {
        return std::make_unique<MemoryItem>(std::make_unique<Value>(name, path));
    });
    auto *value = dynamic_cast<Value *>(FindValue(path));
    if (value == nullptr) {
        return false;
    }
    value->Change(content...);
    return true;
}

} // namespace values
