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

/// A path without its last part.
QString ParentPath(const QString &path)
{
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? QString() : path.left(slash);
}

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

MemoryTree::MemoryNode *MemoryTree::MakeNode(const QString &path)
{
    if (path.isEmpty()) {
        return m_pTop.get();
    }
    if (!IsPath(path)) {
        return nullptr;
    }
    MemoryNode *node = m_pTop.get();
    QString walked;
    for (const QString &part : path.split(QLatin1Char('/'))) {
        walked += walked.isEmpty() ? part : QLatin1Char('/') + part;
        TreeItem *&place = m_hPlaces[walked];
        if (place == nullptr) {
            auto child = std::make_unique<MemoryNode>(part);
            place = child.get();
            node->Append(std::move(child));
        }
        node = dynamic_cast<MemoryNode *>(place);
        if (node == nullptr) {
            return nullptr;
        }
    }
    return node;
}

template <typename Value, typename... Content>
bool MemoryTree::Set(const QString &path, const Content &...content)
{
    if (!IsPath(path)) {
        return false;
    }
    if (m_hPlaces.count(path) == 0) {
        MemoryNode *parent = MakeNode(ParentPath(path));
        if (parent == nullptr) {
            return false;
        }
        const QString name = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
        auto item = std::make_unique<MemoryItem>(std::make_unique<Value>(name, path));
        m_hPlaces[path] = item.get();
        parent->Append(std::move(item));
    }
    auto *value = dynamic_cast<Value *>(FindValue(path));
    if (value == nullptr) {
        return false;
    }
    value->Change(content...);
    return true;
}

} // namespace values
