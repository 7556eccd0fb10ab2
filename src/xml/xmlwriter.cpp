#include "xml/xmlwriter.h"

#include "dom/documentsaver.h"
#include "dom/guardedreader.h"
#include "dom/nodewalk.h"
#include "host/quilmar.h"

#include <QDomDocument>
#include <QDomElement>
#include <QFile>

#include <algorithm>
#include <vector>

XMLWriter::XMLWriter()
    : m_pCurrentElement(std::make_unique<QDomElement>())
{
}

XMLWriter::~XMLWriter()
{
    m_pFile.reset();
    m_pCurrentElement.reset();
    if (m_pDocument != nullptr) {
        dom::TakeApart(*m_pDocument);
    }
}

bool XMLWriter::CreateXmlFile(const QString &fileName, const QString &rootTag)
{
    if (m_pFile == nullptr) {
        m_pFile = std::make_unique<QFile>(fileName);
    }
    if (m_pDocument != nullptr) {
        return false;
    }
    m_pDocument = std::make_unique<QDomDocument>();
    // Whatever stands in the tag becomes markup.
    dom::GuardedReader().ReadText(QLatin1String("<?xml version = '1.0' encoding = 'UTF-8'?><") + rootTag
                                      + QLatin1String("/>"),
                                  m_pDocument.get());
    *m_pCurrentElement = m_pDocument->documentElement();
    return true;
}

bool XMLWriter::CreateXmlElement(const QString &name, const QString &text, bool goDown)
{
    if (m_pCurrentElement->lastChild().isText() || m_pDocument == nullptr) {
        return false;
    }
    QDomElement element = m_pDocument->createElement(name);
    if (element.isNull()) {
        // The host has told Qt to make nothing of a name that is none.
        return false;
    }
    m_pCurrentElement->appendChild(element);
    if (!text.isEmpty()) {
        element.appendChild(m_pDocument->createTextNode(text));
    }
    if (goDown) {
        *m_pCurrentElement = m_pCurrentElement->lastChild().toElement();
    }
    return true;
}

bool XMLWriter::SetXmlAttribute(const QString &name, const QString &value)
{
    if (m_pCurrentElement->isNull()) {
        return false;
    }
    m_pCurrentElement->setAttribute(name, value);
    return true;
}

bool XMLWriter::GoToXmlParent()
{
    if (m_pDocument == nullptr || m_pCurrentElement->isNull() || *m_pCurrentElement == m_pDocument->documentElement()) {
        return false;
    }
    *m_pCurrentElement = m_pCurrentElement->parentNode().toElement();
    return true;
}

bool XMLWriter::SaveXmlFile()
{
    if (m_pFile == nullptr || m_pDocument == nullptr) {
        return false;
    }
    // A failure shows in no result, and is not traced.
    static_cast<void>(dom::SaveDocument(*m_pDocument, m_pFile->fileName()));
    return true;
}

bool XMLWriter::CreateElementsFromNode(values::Node *node)
{
    if (node == nullptr || m_pDocument == nullptr) {
        return false;
    }
    // What is left of each open node, last first. A stack of its own: a branch of the host's may be of any depth.
    std::vector<std::vector<values::TreeItem *>> open;
    const auto openNode = [this, &open](values::Node &inner) {
        CreateXmlElement(inner.GetItemName(), QString(), true);
        open.push_back(inner.GetTreeItems());
        std::reverse(open.back().begin(), open.back().end());
    };
    openNode(*node);
    while (!open.empty()) {
        if (open.back().empty()) {
            GoToXmlParent();
            open.pop_back();
            continue;
        }
        values::TreeItem *item = open.back().back();
        open.back().pop_back();
        auto *valueItem = dynamic_cast<values::ValueItem *>(item);
        auto *inner = valueItem == nullptr ? dynamic_cast<values::Node *>(item) : nullptr;
        values::ValueBase *value = valueItem == nullptr ? nullptr : valueItem->FindValue(QString());
        if (value != nullptr) {
            CreateXmlElement(value->GetName(), value->GetText(), false);
        } else if (inner != nullptr) {
            openNode(*inner);
        }
    }
    return true;
}
