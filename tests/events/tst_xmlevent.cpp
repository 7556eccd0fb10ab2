#include "events/eventsender.h"

#include <QTest>

#include <type_traits>

// What hosts have compiled in.
static_assert(!std::has_virtual_destructor_v<ITagwright> && std::has_virtual_destructor_v<XmlEvent>);
static_assert(std::is_same_v<std::underlying_type_t<ITagwright::ErrorID>, int>);
static_assert(ITagwright::GENERAL_ERROR == -1 && ITagwright::CURRENT_ELEMENT_IS_NULL == 7
              && ITagwright::CURRENT_TYPE_IS_NOT_DOUBLE == 10 && ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID == 16);
static_assert(XmlEvent::EVENT_NONE == 0 && XmlEvent::EVENT_ERROR == 5);

class XmlEventTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A receiver that calls a setter causes a second event inside the first.
    void isDestroyedByTheSenderInnermostFirst()
    {
        static QString steps;
        struct Witness : ErrorEvent
        {
            using ErrorEvent::ErrorEvent;
            Q_DISABLE_COPY(Witness)
            ~Witness() override { steps += QStringLiteral("gone %1 ").arg(GetErrorID()); }
        };
        struct : ITagwright
        {
            void XmlUpdate(XmlEvent *event) override
            {
                const int id = static_cast<ErrorEvent *>(event)->GetErrorID();
                SendEvent<Witness>(id == CURRENT_ELEMENT_HAS_NO_TYPE ? this : nullptr, CURRENT_TYPE_IS_NOT_STRING);
                steps += QStringLiteral("end %1 ").arg(id);
            }
        } receiver;
        SendEvent<Witness>(&receiver, ITagwright::CURRENT_ELEMENT_HAS_NO_TYPE);
        QCOMPARE(steps, QStringLiteral("end 9 gone 9 end 8 gone 8 "));
    }

    void isAssignedWhole()
    {
        QXmlAttributes attributes;
        attributes.append(QStringLiteral("a"), QString(), QString(), QStringLiteral("1"));
        ElemBeginEvent event { QDomNode(), QString(), QXmlAttributes(), QString() };
        event = ElemBeginEvent(QDomNode(), QStringLiteral("x"), attributes, QStringLiteral("t"));
        QCOMPARE(event.GetElementName() + event.GetElementText() + event.GetElementAttributes().qName(0),
                 QStringLiteral("xta"));
    }
};

QTEST_GUILESS_MAIN(XmlEventTest)
#include "tst_xmlevent.moc"
