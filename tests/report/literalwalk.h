#pragma once

#include "events/eventsender.h"
#include "schema/schematables.h"

#include <QDomDocument>
#include <QMap>

#include <list>

/// The walk told literally: recursive, and with each question to the occurrence table answered by searches of the whole
/// document. What DomParser does is held against it.
class LiteralWalk
{
public:
    LiteralWalk(ITagwright *callback, OccursMap occurs, ChoiceMap choices)
        : m_pCallback(callback)
        , m_hOccurs(std::move(occurs))
        , m_hChoices(std::move(choices))
    {
    }

    QDomDocument m_oDocument;
    QDomElement m_oCurrent;
    std::list<QDomNode> m_lRemoved;

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
        const QDomElement root = m_oDocument.documentElement();
        SendEvent<DocBeginEvent>(m_pCallback);
        m_oCurrent = root;
        Announce(root, QString());
        QDomNode node = root.firstChild();
        QString text;
        while (!node.isNull()) {
            if (node.firstChild().nodeType() == QDomNode::TextNode) {
                text = node.firstChild().nodeValue();
            }
            m_oCurrent = node.toElement();
            Announce(node, text);
            if (m_bRequested) {
                m_bRequested = false;
                node = m_bStay ? *m_pResume : m_pResume->nextSibling();
            } else if (HandleUnset()) {
                node = *m_pResume;
            } else {
                ParseChildren(node.toElement());
                node = node.nextSibling();
            }
        }
        SendEvent<DocEndEvent>(m_pCallback);
    }

    template <typename KeyTest>
    bool IsFound(const QString &name, const QString &tagName, const QDomElement &element, KeyTest keyApplies)
    {
        bool result = false;
        const auto row = m_hOccurs.find(name);
        for (const auto &[key, parents] : row == m_hOccurs.end() ? OccursMap::mapped_type() : row->second) {
            for (const QString &parent : keyApplies(key) ? parents : std::list<QString>()) {
                for (const QDomNode &node : GetElement(parent, QString())) {
                    for (const QDomNode &found : GetElement(tagName, node.nodeName())) {
                        result = result || found == element;
                    }
                }
            }
        }
        return result;
    }

private:
    void ParseChildren(QDomElement element)
    {
        QDomNode child = element.firstChild();
        QString text;
        while (!child.isNull() && child.nodeType() != QDomNode::TextNode) {
            m_oCurrent = child.toElement();
            if (child.firstChild().nodeType() == QDomNode::TextNode) {
                text = child.firstChild().nodeValue();
            } else if (const QString value = m_oCurrent.attribute(QStringLiteral("default")); !value.isEmpty()) {
                m_oCurrent.removeAttribute(QStringLiteral("default"));
                m_oCurrent.appendChild(m_oDocument.createTextNode(value));
            }
            Announce(child, text);
            if (m_bRequested) {
                m_bRequested = false;
                child = *m_pResume;
                m_oPending.clear();
                child = m_bStay ? child : child.nextSibling();
                continue;
            }
            if (HandleUnset()) {
                child = *m_pResume;
                if (m_oPending.isNull()) {
                    continue;
                }
            }
            ParseChildren(child.toElement());
            child = child.nextSibling();
        }
    }

    bool HandleUnset()
    {
        if (!m_oPending.isNull()) {
            if (m_oCurrent.attribute(QStringLiteral("type")).isEmpty()) {
                return false;
            }
            const QDomElement pending = m_oPending;
            ResumeAt(pending.nextSibling());
            Remove(pending);
            m_oPending.clear();
            return true;
        }
        const QString name = m_oCurrent.tagName();
        if (!CheckOccursMap(name) && !IsChoiceItem(name)) {
            SendEvent<ErrorEvent>(m_pCallback, ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
            return false;
        }
        const QDomElement unset = m_oCurrent;
        if (unset.attribute(QStringLiteral("type")).isEmpty()) {
            m_oPending = unset;
            m_oResume = unset;
            m_pResume = &m_oResume;
            return true;
        }
        ResumeAt(unset.nextSibling());
        if (!Remove(unset)) {
            SendEvent<ErrorEvent>(m_pCallback, ITagwright::GENERAL_ERROR);
        }
        return true;
    }

    void ResumeAt(const QDomNode &node)
    {
        m_oResume = node;
        m_pResume = &m_oResume;
        m_oCurrent = node.toElement();
    }

    bool CheckOccursMap(const QString &name)
    {
        if (m_hOccurs.count(name) == 0) {
            SendEvent<ErrorEvent>(m_pCallback, ITagwright::CURRENT_VALUE_IS_NOT_VALID);
            return false;
        }
        return IsFound(name, name, m_oCurrent, [](int key) { return key % 100 == 0; });
    }

    bool IsChoiceItem(const QString &name) const
    {
        bool result = false;
        for (const auto &[key, alternative] : m_hChoices) {
            result = result || (!name.isEmpty() && alternative == name);
        }
        return result;
    }

    std::list<QDomNode> GetElement(const QString &name, const QString &parent)
    {
        std::list<QDomNode> result;
        const QDomElement root = m_oDocument.documentElement();
        const QDomNode start = parent.isEmpty() ? QDomNode(root) : SearchStartNode(parent, root);
        if (start.isElement()) {
            SearchNodes(name, start.toElement(), result);
        }
        return result;
    }

    QDomNode SearchStartNode(const QString &name, const QDomElement &element)
    {
        if (element.tagName() == name) {
            return m_oDocument.lastChild();
        }
        QDomNode found;
        for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
            if (child.nodeName() == name) {
                return child;
            }
            found = child.isElement() ? SearchStartNode(name, child.toElement()) : QDomNode();
            if (found.isElement()) {
                return found;
            }
        }
        return QDomNode();
    }

    void SearchNodes(const QString &name, const QDomElement &element, std::list<QDomNode> &result)
    {
        if (element.tagName() == name) {
            result.push_back(m_oDocument.lastChild());
        }
        for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
            if (child.nodeName() == name) {
                result.push_back(child);
            } else if (child.isElement()) {
                SearchNodes(name, child.toElement(), result);
            }
        }
    }

    void Announce(const QDomNode &node, const QString &text)
    {
        QMap<QString, QString> sorted;
        for (int i = 0; i < node.attributes().length(); ++i) {
            sorted.insert(node.attributes().item(i).nodeName(), node.attributes().item(i).nodeValue());
        }
        QXmlAttributes attributes;
        for (auto attribute = sorted.constBegin(); attribute != sorted.constEnd(); ++attribute) {
            attributes.append(attribute.key(), QString(), QString(), attribute.value());
        }
        SendEvent<ElemBeginEvent>(m_pCallback, node, node.nodeName(), attributes, text);
    }

    ITagwright *m_pCallback;
    OccursMap m_hOccurs;
    ChoiceMap m_hChoices;
    QDomElement m_oPending;
    QDomNode m_oResume;
    QDomNode *m_pResume = nullptr;
    bool m_bRequested = false;
    bool m_bStay = false;
};
