#include "events/eventsender.h"
#include "events/itagwright.h"
#include "events/xmlevent.h"

#include <QDomDocument>
#include <QStringList>
#include <QTest>

#include <type_traits>

static_assert(!std::has_virtual_destructor_v<ITagwright> && std::is_default_constructible_v<XmlEvent>);
static_assert(std::has_virtual_destructor_v<XmlEvent> && std::is_copy_assignable_v<ElemBeginEvent>);
static_assert(std::is_same_v<std::underlying_type_t<XmlEvent::type>, int>);
static_assert(std::is_same_v<std::underlying_type_t<ITagwright::ErrorID>, int>);
static_assert(std::is_convertible_v<QString, ElemEndEvent> && std::is_convertible_v<ITagwright::ErrorID, ErrorEvent>);
static_assert(ITagwright::GENERAL_ERROR == -1 && ITagwright::CURRENT_ELEMENT_IS_NULL == 7
              && ITagwright::CURRENT_ELEMENT_HAS_NO_TYPE == 8 && ITagwright::CURRENT_TYPE_IS_NOT_STRING == 9
              && ITagwright::CURRENT_TYPE_IS_NOT_DOUBLE == 10 && ITagwright::CURRENT_TYPE_IS_NOT_INTEGER == 11
              && ITagwright::CURRENT_TYPE_IS_NOT_DATETIME == 12 && ITagwright::CURRENT_TYPE_IS_NOT_TIME == 13
              && ITagwright::CURRENT_TYPE_IS_NOT_BOOL == 14 && ITagwright::CURRENT_VALUE_IS_NOT_VALID == 15
              && ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID == 16);

namespace {

QStringList g_lSteps;

class WitnessEvent : public ErrorEvent
{
public:
    explicit WitnessEvent(ITagwright::ErrorID id)
        : ErrorEvent(id)
    {
    }
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
        g_lSteps.append(QStringLiteral("begin %1").arg(id));
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
    void tellsItsType();
    void copiesWithNodeAndType();
    void isDestroyedByTheSenderInnermostFirst();
};

void XmlEventTest::tellsItsType()
{
    QCOMPARE(int(XmlEvent().GetType()), 0);
    QCOMPARE(int(DocBeginEvent().GetType()), 1);
    QCOMPARE(int(DocEndEvent().GetType()), 2);
    QCOMPARE(int(ElemBeginEvent(QDomNode(), QString(), QXmlAttributes(), QString()).GetType()), 3);
    QCOMPARE(int(ElemEndEvent(QString()).GetType()), 4);
    QCOMPARE(int(ErrorEvent(ITagwright::GENERAL_ERROR).GetType()), 5);
}

void XmlEventTest::copiesWithNodeAndType()
{
    QDomDocument document;
    QDomElement element = document.createElement(QStringLiteral("a"));
    document.appendChild(element);
    QXmlAttributes attributes;
    attributes.append(QStringLiteral("n"), QString(), QString(), QStringLiteral("v"));
    auto event = std::make_unique<ElemBeginEvent>(element, QStringLiteral("a"), attributes, QStringLiteral("text"));
    ElemBeginEvent copy(*event);
    ElemBeginEvent assigned { QDomNode(), QString(), QXmlAttributes(), QString() };
    assigned = *event;
    event.reset();
    for (ElemBeginEvent *kept : { &copy, &assigned }) {
        kept->GetElementNode().toElement().setAttribute(QStringLiteral("seen"), 1);
        QVERIFY(element.hasAttribute(QStringLiteral("seen")));
        element.removeAttribute(QStringLiteral("seen"));
        QCOMPARE(kept->GetElementAttributes().value(QStringLiteral("n")), QStringLiteral("v"));
        QCOMPARE(kept->GetElementName() + kept->GetElementText(), QStringLiteral("atext"));
    }
    QCOMPARE(copy.GetType(), XmlEvent::EVENT_ELEM_BEGIN);
    ErrorEvent error(ITagwright::GENERAL_ERROR);
    error = ErrorEvent(ITagwright::CURRENT_ELEMENT_IS_NULL);
    QCOMPARE(error.GetErrorID(), ITagwright::CURRENT_ELEMENT_IS_NULL);
}

void XmlEventTest::isDestroyedByTheSenderInnermostFirst()
{
    NestingReceiver receiver;
    SendEvent<WitnessEvent>(&receiver, ITagwright::CURRENT_ELEMENT_HAS_NO_TYPE);
    SendEvent<WitnessEvent>(nullptr, ITagwright::CURRENT_ELEMENT_HAS_NO_TYPE);
    QCOMPARE(g_lSteps.join(QStringLiteral(", ")), QStringLiteral("begin 8, begin 9, end 9, gone 9, end 8, gone 8"));
}

QTEST_GUILESS_MAIN(XmlEventTest)

#include "tst_xmlevent.moc"
