#pragma once

#include "events/itagwright.h"
#include "events/xmlevent.h"

#include <QStringList>

#include <functional>

/// A receiver that notes what it hears ("begin", element names, "!16", "end") and does what a test tells it.
class ScriptedReceiver : public ITagwright
{
public:
    std::function<void()> m_fnBegin = [] {};
    std::function<void(ElemBeginEvent &)> m_fnElement = [](ElemBeginEvent &) {};
    std::function<void(int)> m_fnError = [](int) {};
    std::function<void()> m_fnEnd = [] {};
    QStringList m_lHeard;

    QString Heard() const { return m_lHeard.join(QLatin1Char(' ')); }

    void XmlUpdate(XmlEvent *event) override
    {
        if (auto *element = dynamic_cast<ElemBeginEvent *>(event)) {
            m_lHeard << element->GetElementName();
            m_fnElement(*element);
        } else if (auto *error = dynamic_cast<ErrorEvent *>(event)) {
            m_lHeard << QStringLiteral("!%1").arg(error->GetErrorID());
            m_fnError(error->GetErrorID());
        } else {
            const bool isBegin = event->GetType() == XmlEvent::EVENT_DOC_BEGIN;
            m_lHeard << QLatin1String(isBegin ? "begin" : "end");
            (isBegin ? m_fnBegin : m_fnEnd)();
        }
    }
};
