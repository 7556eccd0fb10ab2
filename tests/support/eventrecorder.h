#pragma once

#include "events/itagwright.h"
#include "events/xmlevent.h"

#include <QDomNode>
#include <QStringList>

#include <functional>

/// "name attribute=value ...", the attributes in the order of their text.
inline QString TagWord(const QString &name, const QXmlAttributes &attributes)
{
    QStringList words;
    for (int i = 0; i < attributes.count(); ++i) {
        words += attributes.qName(i) + QLatin1Char('=') + attributes.value(i);
    }
    words.sort();
    return (QStringList(name) + words).join(QLatin1Char(' '));
}

/// Writes each event down as one word: "(" and ")" for the document, the tag with "[node|text]" for an element's begin,
/// with "_" for a line end, "/name" for its end. `m_pHook`, if set, is called after that, from inside the event.
class EventRecorder : public ITagwright
{
public:
    void XmlUpdate(XmlEvent *event) override
    {
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            auto *begin = static_cast<ElemBeginEvent *>(event);
            const QString node = m_bNodes ? begin->GetElementNode().nodeName() + QLatin1Char('|') : QString();
            const QString text = begin->GetElementText().replace(QLatin1Char('\n'), QLatin1Char('_'));
            m_lEvents += TagWord(begin->GetElementName(), begin->GetElementAttributes())
                + QStringLiteral("[%1%2]").arg(node, text);
        } else if (event->GetType() == XmlEvent::EVENT_ELEM_END) {
            m_lEvents += QLatin1Char('/') + static_cast<ElemEndEvent *>(event)->GetElementName();
        } else {
            m_lEvents += event->GetType() == XmlEvent::EVENT_DOC_BEGIN ? QStringLiteral("(") : QStringLiteral(")");
        }
        if (m_pHook) {
            m_pHook(event);
        }
    }

    QStringList m_lEvents;
    bool m_bNodes = true;
    std::function<void(XmlEvent *)> m_pHook;
};
