#pragma once

#include "dom/nodesearch.h"
#include "events/eventsender.h"
#include "schema/schematables.h"

#include <algorithm>

/// The walk told literally: recursive, and with each question to the occurrence table answered by searches of the whole
/// document. DomParser is held against it.
class LiteralWalk
{
public:
    LiteralWalk(ITagwright *callback, const OccursMap &occurs, const ChoiceMap &choices)
        : m_pCallback(callback)
        , m_OccursMap(occurs)
        , m_ChoiceMap(choices)
    {
    }

    void SetDocument(QDomDocument *document) { m_oDocument = *document; }
    QDomElement *GetCurrentElement() { return &m_oCurrent; }

    void SetNodeToContinue(QDomNode *node, bool stayOnNode)
    {
        m_bRequested = true;
        m_bStay = stayOnNode;
        m_pResume = node;
    }

    bool Remove(QDomNode node)
    {
        m_lRemoved.push_back(node);
        return !node.parentNode().removeChild(node).isNull();
    }

    void Parse()
    {
        SendEvent<DocBeginEvent>(m_pCallback);
        m_oCurrent = m_oDocument.documentElement();
        Announce(m_oCurrent, QString());
        WalkChildren(QDomElement(m_oCurrent), true);
        SendEvent<DocEndEvent>(m_pCallback);
    }

private:
    void WalkChildren(const QDomElement &element, bool isTop)
    {
        QDomNode child = element.firstChild();
        QString text;
        while (!child.isNull() && (isTop || child.nodeType() != QDomNode::TextNode)) {
            m_oCurrent = child.toElement();
            const QString value = m_oCurrent.attribute(QStringLiteral("default"));
            if (child.firstChild().nodeType() == QDomNode::TextNode) {
                text = child.firstChild().nodeValue();
            } else if (!isTop && !value.isEmpty()) {
                m_oCurrent.removeAttribute(QStringLiteral("default"));
                m_oCurrent.appendChild(m_oDocument.createTextNode(value));
            }
            Announce(child, text);
            if (m_bRequested) {
                m_bRequested = false;
                child = m_bStay ? *m_pResume : m_pResume->nextSibling();
                m_oPending = isTop ? m_oPending : QDomElement();
                continue;
            }
            if (HandleUnset()) {
                child = *m_pResume;
                if (isTop || m_oPending.isNull()) {
                    continue;
                }
            }
            WalkChildren(child.toElement(), false);
            child = child.nextSibling();
        }
    }

    bool HandleUnset()
    {
        const bool isPending = !m_oPending.isNull();
        if (!isPending && !CheckOccursMap(m_oCurrent.tagName()) && !IsChoiceItem(m_oCurrent.tagName())) {
            SendEvent<ErrorEvent>(m_pCallback, ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
            return false;
        }
        if (m_oCurrent.attribute(QStringLiteral("type")).isEmpty()) {
            if (!isPending) {
                m_oPending = m_oCurrent;
                m_oResume = m_oCurrent;
                m_pResume = &m_oResume;
            }
            return !isPending;
        }
        const QDomElement unset = isPending ? m_oPending : m_oCurrent;
        m_oPending.clear();
        m_oResume = unset.nextSibling();
        m_pResume = &m_oResume;
        m_oCurrent = m_oResume.toElement();
        if (!Remove(unset) && !isPending) {
            SendEvent<ErrorEvent>(m_pCallback, ITagwright::GENERAL_ERROR);
        }
        return true;
    }

    bool CheckOccursMap(const QString &name)
    {
        if (m_OccursMap.count(name) == 0) {
            SendEvent<ErrorEvent>(m_pCallback, ITagwright::CURRENT_VALUE_IS_NOT_VALID);
            return false;
        }
        bool result = false;
        for (const auto &[key, parents] : m_OccursMap.at(name)) {
            for (const QString &parent : key % 100 == 0 ? parents : std::list<QString>()) {
                for (const QDomNode &node : GetElement(parent, QString())) {
                    const std::list<QDomNode> found = GetElement(name, node.nodeName());
                    result = result || std::find(found.begin(), found.end(), m_oCurrent) != found.end();
                }
            }
        }
        return result;
    }

    bool IsChoiceItem(const QString &name) const
    {
        return !name.isEmpty() && std::any_of(m_ChoiceMap.begin(), m_ChoiceMap.end(), [&name](const auto &row) {
            return row.second == name;
        });
    }

    std::list<QDomNode> GetElement(const QString &name, const QString &parent) const
    {
        std::list<QDomNode> result;
        dom::FindBelow(name, parent, dom::DocumentRoots(m_oDocument), result);
        return result;
    }

    void Announce(const QDomNode &node, const QString &text)
    {
        SendEvent<ElemBeginEvent>(m_pCallback, node, node.nodeName(), QXmlAttributes(), text);
    }

    ITagwright *m_pCallback;
    QDomDocument m_oDocument;
    OccursMap m_OccursMap;
    ChoiceMap m_ChoiceMap;
    QDomElement m_oCurrent;
    QDomElement m_oPending;
    QDomNode m_oResume;
    QDomNode *m_pResume = nullptr;
    bool m_bRequested = false;
    bool m_bStay = false;
    std::list<QDomNode> m_lRemoved;
};
