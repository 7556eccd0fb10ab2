#pragma once

#include "events/itagwright.h"
#include "events/xmlevent.h"

#include <QStringList>

#include <functional>

/// A receiver that notes what it hears ("begin", element names, "!16", "end") and does what a test tells it.
class ScriptedReceiver : public ITagwright
{
public:
    std::function<void()> m_fnBegin;
    std::function<void(ElemBeginEvent &)> m_fnElement;
    std::function<void(int)> m_fnError;
    std::function<void()> m_fnEnd;
    QStringList m_lHeard;

    QString Heard() const { return m_lHeard.join(QLatin1Char(' ')); }

    void XmlUpdate(XmlEvent *event) override
    {
        switch (event->GetType()) {
        case XmlEvent::EVENT_DOC_BEGIN:
            m_lHeard.append(QStringLiteral("begin"));
            Call(m_fnBegin);
            break;
        case XmlEvent::EVENT_ELEM_BEGIN:
            m_lHeard.append(static_cast<ElemBeginEvent *>(event)->GetElementName());
            Call(m_fnElement, *static_cast<ElemBeginEvent *>(event));
            break;
        case XmlEvent::EVENT_ERROR:
            m_lHeard.append(QStringLiteral("!%1").arg(static_cast<ErrorEvent *>(event)->GetErrorID()));
            Call(m_fnError, static_cast<ErrorEvent *>(event)->GetErrorID());
            break;
        default:
            m_lHeard.append(QStringLiteral("end"));
            Call(m_fnEnd);
        }
    }

private:
    template <typename Function, typename... Arguments>
    static void Call(const Function &function, Arguments &&...arguments)
    {
        if (function) {
            function(std::forward<Arguments>(arguments)...);
        }
    }
};
