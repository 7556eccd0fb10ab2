#include "events/eventsender.h"

#include <QDomDocument>
#include <QStringList>
#include <QTest>

#include <type_traits>

static_assert(!std::has_virtual_destructor_v<ITagwright> && std::has_virtual_destructor_v<XmlEvent>);
static_assert(std::is_same_v<std::underlying_type_t<ITagwright::ErrorID>, int>);
static_assert(ITagwright::GENERAL_ERROR == -1 && ITagwright::CURRENT_ELEMENT_IS_NULL == 7
              && ITagwright::CURRENT_TYPE_IS_NOT_DOUBLE == 10 && ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID == 16);
static_assert(XmlEvent::EVENT_NONE == 0 && XmlEvent::EVENT_ERROR == 5);

namespace {

QStringList g_lSteps;

class WitnessEvent : public ErrorEvent
{
public:
    using ErrorEvent::ErrorEvent;
    WitnessEvent(const WitnessEvent &) = delete;
    WitnessEvent &operator=(const WitnessEvent &) = delete;
    ~WitnessEvent() override { g_lSteps.append(QStringLiteral("gone %1").arg(GetErrorID())); }
};

/// Answers the first number by causing a second, as a receiver that calls a setter does.
class NestingReceiver : public ITagwright
{
public:
    void XmlUpdate(XmlEvent *event) override
    {
        const int id = static_cast<ErrorEvent *>(event)->GetErrorID();
        if (id == CURRENT_ELEMENT_HAS_NO_TYPE) {
            SendEvent<WitnessEvent>(this, CURRENT_TYPE_IS_NOT_STRING);
        }
        g_lSteps.append(QStringLiteral("end %1").arg(id));
    }
};

} // namespace

class XmlEventTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copyKeepsTypeAndNode();
    void isDestroyedByTheSenderInnermostFirst();
};

void XmlEventTest::copyKeepsTypeAndNode()
{
    QDomDocument document;
    QDomElement element = document.createElement(QStringLiteral("a"));
    document.appendChild(element);
    auto event = std::make_unique<ElemBeginEvent>(element, QStringLiteral("a"), QXmlAttributes(), QStringLiteral("t"));
    ElemBeginEvent copy(*event);
    ElemBeginEvent assigned { QDomNode(), QString(), QXmlAttributes(), QString() };
    assigned = *event;
    event.reset();
    for (ElemBeginEvent *kept : { &copy, &assigned }) {
        QCOMPARE(kept->GetType(), XmlEvent::EVENT_ELEM_BEGIN);
        QVERIFY(kept->GetElementNode() == element);
        QCOMPARE(kept->GetParentName() + kept->GetElementName() + kept->GetElementText(),
                 QStringLiteral("#documentat"));
    }
}

void XmlEventTest::isDestroyedByTheSenderInnermostFirst()
{
    NestingReceiver receiver;
    SendEvent<WitnessEvent>(&receiver, ITagwright::CURRENT_ELEMENT_HAS_NO_TYPE);
    SendEvent<WitnessEvent>(nullptr, ITagwright::CURRENT_ELEMENT_HAS_NO_TYPE);
    QCOMPARE(g_lSteps.join(QStringLiteral(", ")), QStringLiteral("end 9, gone 9, end 8, gone 8"));
}

QTEST_GUILESS_MAIN(XmlEventTest)

#include "tst_xmlevent.moc"
