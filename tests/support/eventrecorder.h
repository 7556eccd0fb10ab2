#pragma once

#include "events/itagwright.h"
#include "events/xmlevent.h"

#include <QDomElement>
#include <QStringList>

#include <functional>

/// Writes each event down as one word: "(" and ")" for the document, "name[node|text]" for an element's begin, "_"
/// for a line end in the text, "/name" for an element's end. `m_pHook`, if set, is called after that, from inside the
/// event.
class EventRecorder : public ITagwright
{
public:
    void XmlUpdate(XmlEvent *event) override
    {
        switch (event->GetType()) {
        case XmlEvent::EVENT_DOC_BEGIN:
            m_lEvents += QStringLiteral("(");
            break;
        case XmlEvent::EVENT_DOC_END:
            m_lEvents += QStringLiteral(")");
            break;
        case XmlEvent::EVENT_ELEM_BEGIN:
            m_lEvents += BeginWord(static_cast<ElemBeginEvent *>(event));
            break;
        case XmlEvent::EVENT_ELEM_END:
            m_lEvents += QLatin1Char('/') + static_cast<ElemEndEvent *>(event)->GetElementName();
            break;
        default:
            m_lEvents += QStringLiteral("unexpected");
        }
        if (m_pHook) {
            m_pHook(event);
        }
    }

    /// All words since the last call.
    QString TakeLog()
    {
        const QString log = m_lEvents.join(QLatin1Char(' '));
        m_lEvents.clear();
        return log;
    }

    std::function<void(XmlEvent *)> m_pHook;

private:
    static QString BeginWord(ElemBeginEvent *event)
    {
        return QStringLiteral("%1[%2|%3]")
            .arg(event->GetElementName(), event->GetElementNode().nodeName(),
                 event->GetElementText().replace(QLatin1Char('\n'), QLatin1Char('_')));
    }

    QStringList m_lEvents;
};
