#include "support/reportrun.h"

#include "report/schemapattern.h"

#include <QDialog>
#include <QFileInfo>
#include <QRegularExpression>
#include <QtTest>

#include <cmath>
#include <memory>

namespace {

QString operator""_q(const char *text, std::size_t size)
{
    return QString::fromUtf8(text, static_cast<int>(size));
}

// What is asked for at each announcement of an element, in one word: "v=s:x" a value (s, i, d, b or t before it),
// "v@A=s:x" an attribute's, "v[1]=s:x" one of the second v, "v:3" copies, "v-" to be discarded, "v+" to be kept.
struct Order
{
    QString m_sName;
    int m_iIndex = -1;
    QString m_sAttribute;
    QChar m_oVerb;
    QString m_sValue;

    explicit Order(const QString &word)
    {
        static const QRegularExpression form(QStringLiteral("^(\\w+)(\\[(\\d+)\\])?(@(\\w+))?([=:+-])(.*)$"));
        const QRegularExpressionMatch match = form.match(word);
        Q_ASSERT(match.hasMatch());
        m_sName = match.captured(1);
        m_iIndex = match.captured(3).isEmpty() ? -1 : match.captured(3).toInt();
        m_sAttribute = match.captured(5);
        m_oVerb = match.captured(6).at(0);
        m_sValue = match.captured(7);
    }

    template <typename Value>
    void Set(XmlCreateReport &report, Value value) const
    {
        if constexpr (!std::is_same_v<Value, bool> && !std::is_same_v<Value, QTime>) {
            if (!m_sAttribute.isEmpty()) {
                report.SetAttributeValue(m_sAttribute, value);
                return;
            }
        }
        report.SetXmlValue(value);
    }

    void SetValue(XmlCreateReport &report) const
    {
        const QString value = m_sValue.mid(2);
        switch (m_sValue.at(0).toLatin1()) {
        case 's':
            return Set(report, value);
        case 'i':
            return Set(report, value.toInt());
        case 'd':
            return Set(report, value == QLatin1String("inf") ? -HUGE_VAL : value.toDouble());
        case 'b':
            return Set(report, value == QLatin1String("true"));
        default:
            return value.contains(QLatin1Char('T')) ? Set(report, QDateTime::fromString(value, Qt::ISODate))
                                                    : Set(report, QTime::fromString(value, Qt::ISODate));
        }
    }

    void Apply(XmlCreateReport &report) const
    {
        switch (m_oVerb.toLatin1()) {
        case '=':
            return SetValue(report);
        case ':':
            return report.SetElementMaxOccurs(m_sName, m_sValue.toInt());
        case '+':
            return report.KeepCurrentElement();
        default:
            return report.DiscardChoiceItem();
        }
    }
};

void Follow(ReportRun &run, const QString &orders)
{
    run.m_oReceiver.m_fnElement = [&run, orders](ElemBeginEvent &event) {
        for (const QString &word : orders.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            const Order order(word);
            if (order.m_sName == event.GetElementName()
                && (order.m_iIndex < 0 || order.m_iIndex == run.m_oReport.GetPlace().GetIndex())) {
                order.Apply(run.m_oReport);
            }
        }
    };
}

// "missing /R/v; refused /R/w 15"
QString Told(const ReportOutcome &outcome)
{
    QStringList told;
    for (const QString &place : outcome.GetMissing()) {
        told << QLatin1String("missing ") + place;
    }
    for (const ReportOutcome::RefusedValue &refused : outcome.GetRefusedValues()) {
        told << QStringLiteral("refused %1 %2 %3").arg(refused.m_sPlace, refused.m_sValue).arg(refused.m_iError);
    }
    return told.join(QLatin1String("; "));
}

QString Leaf(const char *name, const char *attributes = "", const char *type = "string")
{
    return QStringLiteral("<xs:element name='%1' type='xs:%3' %2/>")
        .arg(QLatin1String(name), QLatin1String(attributes), QLatin1String(type));
}

QString Parent(const char *name, const QString &children, const char *attributes = "", const QString &own = QString())
{
    return QStringLiteral("<xs:element name='%1' %2><xs:complexType><xs:sequence>%3</xs:sequence>%4</xs:complexType>"
                          "</xs:element>")
        .arg(QLatin1String(name), QLatin1String(attributes), children, own);
}

QString Type(const char *name, const QString &children)
{
    return QStringLiteral("<xs:complexType name='%1'><xs:sequence>%2</xs:sequence></xs:complexType>")
        .arg(QLatin1String(name), children);
}

QString Simple(const char *name, const char *base, const char *facets)
{
    return QStringLiteral("<xs:simpleType name='%1'><xs:restriction base='xs:%2'>%3</xs:restriction></xs:simpleType>")
        .arg(QLatin1String(name), QLatin1String(base), QLatin1String(facets));
}

} // namespace

class TestValidOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void SettlesTheReport_data();
    void SettlesTheReport();
    void JudgesValues_data();
    void JudgesValues();
    void ReadsPatterns_data();
    void ReadsPatterns();
    void HidesItsMarks();
    void TellsThePlace();
    void TellsTheFateOnce();
    void TellsTheFateOfADialog_data();
    void TellsTheFateOfADialog();
};

void TestValidOutput::SettlesTheReport_data()
{
    QTest::addColumn<QString>("schema");
    QTest::addColumn<QString>("orders");
    QTest::addColumn<QString>("report");
    QTest::addColumn<QString>("told");
    const auto row = [](const char *name, const QString &content, const char *orders, const char *report,
                        const char *told = "", const QString &declarations = QString()) {
        QTest::newRow(name) << declarations + RootElement(content) << QString::fromUtf8(orders)
                            << QStringLiteral("<R>%1</R>").arg(QLatin1String(report)).replace("<R></R>"_q, "<R/>"_q)
                            << QString::fromUtf8(told);
    };
    const QString optional = Leaf("a", "minOccurs='0'") + Leaf("b", "minOccurs='0'");
    row("optional leaves", optional, "b=s:x", "<b>x</b>");
    row("a container whose first has no value", Parent("p", optional, "minOccurs='0'"), "b=s:x", "<p><b>x</b></p>");
    row("a container without any", Parent("p", Leaf("a") + Parent("q", Leaf("b")), "minOccurs='0'"), "", "");
    row("copies", Parent("p", optional, "maxOccurs='3'"), "p:3 a[0]=s:x",
        "<p><a>x</a></p><p><a>x</a></p><p><a>x</a></p>");
    row("a named type", "<xs:element name='p' type='P' maxOccurs='9'/><xs:element name='q' type='P'/>"_q,
        "p:2 b=s:x b:3",
        "<p><b>x</b><b>x</b><b>x</b></p><p><b>x</b><b>x</b><b>x</b></p><q><b>x</b><b>x</b><b>x</b></q>", "",
        Type("P", Leaf("a", "minOccurs='0'") + Leaf("b", "minOccurs='0' maxOccurs='3'")));
    row("a type that comes later", "<xs:element name='p' type='Z' minOccurs='0'/><xs:element ref='g' minOccurs='0'/>"_q,
        "", "", "", "<xs:element name='g' type='Z'/>"_q + Type("Z", Leaf("a")));
    row("limits", Leaf("a", "maxOccurs='100'") + Leaf("b", "minOccurs='0' maxOccurs='2'") + Leaf("c"),
        "a:101 b:3 c:2 c=s:x", "<a/><c>x</c>",
        "missing /R/a; refused /R/a 101 16; refused /R/b 3 16; refused /R/c 2 16");
    row("beside the template's own", Leaf("a", "minOccurs='2' maxOccurs='3'"), "a:2 a=s:x", "<a>x</a><a>x</a><a>x</a>");
    row("too many beside them", Leaf("a", "minOccurs='2' maxOccurs='3'"), "a:3 a=s:x", "<a>x</a><a>x</a>",
        "refused /R/a 3 16");
    row("missing", Leaf("a") + Parent("p", Leaf("b"), "maxOccurs='2'"), "p:2 b[0]=s:x p[1]+",
        "<a/><p><b>x</b></p><p><b>x</b></p>", "missing /R/a");
    row("defaults",
        Leaf("a", "default='d'") + Parent("p", Leaf("b", "default='e'") + Leaf("c", "default='f' minOccurs='0'")), "",
        "<a>d</a><p><b>e</b></p>");
    row("a default makes no container", Parent("p", Leaf("b", "default='e'"), "minOccurs='0'"), "", "");
    row("kept", Parent("p", Leaf("b", "minOccurs='0'"), "minOccurs='0' maxOccurs='2'"), "p+ p:2", "<p/><p/>");
    const QString attributes =
        "<xs:attribute name='A' type='xs:string'/><xs:attribute name='B' type='xs:string' default='d'/>"
        "<xs:attribute name='C' type='xs:string' use='required'/>"_q;
    row("attributes", Parent("p", QString(), "maxOccurs='2'", attributes), "p:2 p@A=s:xs:string",
        "<p A='xs:string' B='d'/><p A='xs:string' B='d'/>", "missing /R/p/@C; missing /R/p[2]/@C");
    row("an attribute is a value", Parent("p", Leaf("a", "minOccurs='0'"), "minOccurs='0'", attributes), "p@C=s:x",
        "<p B='d' C='x'/>");
    row("none", Parent("p", QString(), "minOccurs='0'", attributes), "", "");
    const QString choice = "<xs:choice>"_q + Leaf("a") + Leaf("b") + Leaf("c") + "</xs:choice>"_q;
    row("a choice", choice + Leaf("d"), "b=s:x d=s:x", "<b>x</b><d>x</d>");
    row("given up", choice, "a- b=s:x c-", "<b>x</b>");
    row("two alternatives", choice, "a=s:x c=s:y", "<a>x</a>", "refused /R/c y 16");
    row("no alternative", choice, "", "", "missing /R/a");
    row("a choice's member has members",
        "<xs:choice>"_q + Parent("p", Leaf("a") + Leaf("b")) + Leaf("c") + "</xs:choice>"_q + Leaf("a"), "b=s:x",
        "<p><a/><b>x</b></p><a/>", "missing /R/p/a; missing /R/a");
    const QString nested = "<xs:choice>"_q + choice + Leaf("d") + "</xs:choice>"_q;
    row("an inner alternative", nested, "b=s:x", "<b>x</b>");
    row("an inner and an outer alternative", nested, "b=s:x d=s:y", "<b>x</b>", "refused /R/d y 16");
    row("a sequence as alternative",
        "<xs:choice><xs:sequence>"_q + Leaf("a") + Leaf("b") + "</xs:sequence>"_q + Leaf("c") + "</xs:choice>"_q,
        "b=s:x", "<a/><b>x</b>", "missing /R/a");
    const QString names =
        "<xs:attribute name='Ref1'><xs:simpleType><xs:restriction base='xs:string'><xs:enumeration value='k'/>"
        "</xs:restriction></xs:simpleType></xs:attribute>"_q;
    row("an attribute's own facets",
        "<xs:element name='v' maxOccurs='2'><xs:complexType><xs:simpleContent><xs:extension base='xs:string'>"
        "<xs:attribute ref='Ref1'/><xs:attribute name='Ref' type='xs:string'/></xs:extension></xs:simpleContent></xs:complexType></xs:element>"_q,
        "v:2 v=s:x v@Ref=s:y v@Ref1=s:z v[1]@Ref1=s:k", "<v Ref='y'>x</v><v Ref='y' Ref1='k'>x</v>",
        "refused /R/v/@Ref1 z 15", names);
}

void TestValidOutput::SettlesTheReport()
{
    QFETCH(QString, schema);
    QFETCH(QString, orders);
    ReportRun run;
    Follow(run, orders);
    run.m_oReport.SetValidOutput(true);
    QVERIFY(run.Run(schema));
    QTEST(run.Report(), "report");
    QTEST(Told(run.m_oReport.GetOutcome()), "told");
    QVERIFY(run.m_oReport.GetOutcome().IsSaved());
    QCOMPARE(run.m_oReceiver.m_lHeard.contains(QStringLiteral("!15")),
             Told(run.m_oReport.GetOutcome()).contains(QLatin1String(" 15")));
}

void TestValidOutput::JudgesValues_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("facets");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("written");
    // An empty `written`: the value is refused.
    const auto row = [](const char *base, const char *facets, const char *value, const char *written) {
        QTest::addRow("%s %s: %s", base, facets, value)
            << QString::fromUtf8(base)
            << QString::fromUtf8(facets).replace(QRegularExpression(QStringLiteral("(\\w+)=('[^']*')")),
                                                 QStringLiteral("<xs:\\1 value=\\2/>"))
            << QString::fromUtf8(value) << QString::fromUtf8(written);
    };
    row("integer", "enumeration='1' enumeration='02'", "i:2", "2");
    row("integer", "enumeration='1' enumeration='2'", "i:7", "");
    row("integer", "totalDigits='2'", "i:-99", "-99");
    row("integer", "totalDigits='2'", "i:100", "");
    row("integer", "minInclusive='-65535' maxExclusive='65535'", "i:65535", "");
    row("short", "", "s:abc", "");
    row("short", "", "d:32768", "");
    row("short", "", "d:-32768.9", "-32768");
    row("long", "", "d:-1.5e10", "-15000000000");
    row("long", "", "d:1e19", "");
    row("double", "", "d:inf", "-INF");
    row("double", "minInclusive='0'", "d:inf", "");
    row("double", "enumeration='1.50'", "d:1.5", "1.5");
    row("double", "maxExclusive='10'", "d:10.00000000000001", "");
    row("string", "minLength='2' maxLength='3'", "s:x", "");
    row("string", "length='2'", "s:\xF0\x9D\x84\x9E!", "\xF0\x9D\x84\x9E!");
    row("string", "pattern='[A-Z]{2}' pattern='\\d+'", "s:12", "12");
    row("string", "pattern='[A-Z]{2}'", "s:ABC", "");
    row("string", "pattern='\\i\\c*'", "s:1", "1");
    row("boolean", "pattern='true'", "b:false", "");
    row("dateTime", "maxExclusive='2026-01-01T00:00:00Z'", "t:2025-12-31T23:59:59Z", "2025-12-31T23:59:59Z");
    row("dateTime", "maxExclusive='2026-01-01T00:00:00Z'", "t:2026-01-01T01:00:00+01:00", "");
    row("dateTime", "maxExclusive='2026-01-01T00:00:00Z'", "t:2025-12-31T23:59:59", "");
    row("time", "minInclusive='08:00:00'", "t:07:59:59", "");
    row("dateTime", "", "t:never T", "");
}

void TestValidOutput::JudgesValues()
{
    QFETCH(QString, base);
    QFETCH(QString, facets);
    QFETCH(QString, value);
    QFETCH(QString, written);
    ReportRun run;
    Follow(run, QStringLiteral("v=%1").arg(value.replace(QLatin1Char(' '), QString())));
    run.m_oReport.SetValidOutput(true);
    QVERIFY(run.Run(RootElement(QStringLiteral("<xs:element name='v' type='T' minOccurs='0'/>"))
                    + Simple("T", base.toUtf8().constData(), facets.toUtf8().constData())));
    QCOMPARE(run.Report(),
             written.isEmpty() ? QStringLiteral("<R/>") : QStringLiteral("<R><v>%1</v></R>").arg(written));
    QCOMPARE(run.m_oReport.GetOutcome().IsComplete(), !written.isEmpty());
}

void TestValidOutput::ReadsPatterns_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("matches");
    QTest::addColumn<QString>("other");
    QTest::newRow("anchors") << "^$"_q
                             << "^$"_q
                             << ""_q;
    QTest::newRow("words") << "\\w\\W\\s\\S"_q
                           << "a- b"_q
                           << "_- b"_q;
    QTest::newRow("sets") << "[\\d\\-^]+"_q
                          << "3-^"_q
                          << "a"_q;
    QTest::newRow("any") << "a.b"_q
                         << "a b"_q
                         << "a\nb"_q;
}

void TestValidOutput::ReadsPatterns()
{
    QFETCH(QString, pattern);
    QFETCH(QString, matches);
    QFETCH(QString, other);
    const QRegularExpression read(FromSchemaPattern(pattern).value_or(QString()));
    QVERIFY(read.match(matches).hasMatch());
    QVERIFY(!read.match(other).hasMatch());
    for (const QString &unsaid : { "\\c"_q, "[\\w-]"_q, "\\p{IsGreek}"_q, "[a-z-[b]]"_q }) {
        QVERIFY(!FromSchemaPattern(unsaid).has_value());
    }
}

void TestValidOutput::HidesItsMarks()
{
    ReportRun run;
    QStringList names;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        for (int i = 0; i < event.GetElementAttributes().count(); ++i) {
            names << event.GetElementAttributes().qName(i);
        }
        event.GetElementNode().toElement().setAttribute(QStringLiteral("own"), 1);
        run.m_oReport.SetElementMaxOccurs(QStringLiteral("v"), 2);
    };
    run.m_oReport.SetValidOutput(true);
    QVERIFY(run.Run(RootElement(Leaf("v", "maxOccurs='2'"))));
    QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("type own type own type"));
    QCOMPARE(run.Report(), QStringLiteral("<R own='1'><v own='1'/><v own='1'/></R>"));
}

// Ordinals count what was announced: dropped elements too, and each once.
void TestValidOutput::TellsThePlace()
{
    for (const bool isValid : { false, true }) {
        ReportRun run;
        QStringList places;
        run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
            if (event.GetElementName() == QLatin1String("p")) {
                run.m_oReport.SetElementMaxOccurs(QStringLiteral("p"), 3);
            }
            const ReportPlace place = run.m_oReport.GetPlace(QStringLiteral("A"));
            if (event.GetElementName() == QLatin1String("v")) {
                places << place.GetText();
                if (place.GetIndex(QStringLiteral("p")) == 1) {
                    run.m_oReport.SetXmlValue("x");
                }
            }
        };
        run.m_oReport.SetValidOutput(isValid);
        QVERIFY(run.Run(RootElement(Parent("p", Leaf("v", "minOccurs='0'"), "minOccurs='0' maxOccurs='9'"))));
        QCOMPARE(places.join(QLatin1Char(' ')), QStringLiteral("/R/p/v/@A /R/p[2]/v/@A /R/p[3]/v/@A"));
        QCOMPARE(run.Report(), QStringLiteral("<R><p><v>x</v></p></R>"));
        QVERIFY(run.m_oReport.GetPlace().GetSteps().isEmpty());
    }
}

void TestValidOutput::TellsTheFateOnce()
{
    QString unread;
    for (const bool isRead : { true, false }) {
        ReportRun run;
        QVector<ReportOutcome> fates;
        run.m_oReport.SetFateHandler([&fates](const ReportOutcome &outcome) { fates << outcome; });
        run.m_oReport.SetCollectOutcome(true);
        QCOMPARE(run.m_oReport.GetOutcome().GetState(), ReportOutcome::State::Open);
        run.Run(isRead ? RootElement(Leaf("v")) : QStringLiteral("<xs:broken>"));
        QCOMPARE(fates.size(), 1);
        QCOMPARE(fates.first().IsSchemaRead(), isRead);
        QCOMPARE(fates.first().GetPath(), run.ReportPath());
        QCOMPARE(fates.first().GetState(), ReportOutcome::State::Saved);
        QCOMPARE(fates.first().GetMissing(), isRead ? QStringList { QStringLiteral("/R/v") } : QStringList());
    }
}

void TestValidOutput::TellsTheFateOfADialog_data()
{
    QTest::addColumn<QString>("ending");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("state");
    QTest::newRow("dropped") << "reject"_q << QString() << int(ReportOutcome::State::Dropped);
    QTest::newRow("closed") << "close"_q << QString() << int(ReportOutcome::State::Saved);
    QTest::newRow("no folder") << "SlotSaveWithoutComment"_q
                               << "gone/"_q << int(ReportOutcome::State::NotSaved);
    QTest::newRow("the builder ends") << QString() << QString() << int(ReportOutcome::State::Dropped);
}

void TestValidOutput::TellsTheFateOfADialog()
{
    QFETCH(QString, ending);
    QFETCH(QString, folder);
    ReportRun run;
    QVERIFY(run.Run(RootElement(Leaf("v"))));
    QVector<ReportOutcome> fates;
    auto report = std::make_unique<XmlCreateReport>(&run.m_oReceiver);
    run.m_oReceiver.m_fnElement = [](ElemBeginEvent &) {};
    report->SetFateHandler([&fates](const ReportOutcome &outcome) { fates << outcome; });
    const QString path = QFileInfo(run.ReportPath()).path() + QLatin1Char('/') + folder + "dialog.xml"_q;
    QVERIFY(report->CreateXmlFromSchema(run.SchemaPath(), path, true));
    QVERIFY(fates.isEmpty());
    if (!ending.isEmpty()) {
        QVERIFY(QMetaObject::invokeMethod(report->GetCommentDialogs().front(), ending.toLatin1().constData()));
    }
    QCOMPARE(fates.size(), ending.isEmpty() ? 0 : 1);
    report.reset();
    QCOMPARE(fates.size(), 1);
    QTEST(int(fates.first().GetState()), "state");
    QCOMPARE(fates.first().GetSaveError().isEmpty(), folder.isEmpty());
}

QTEST_MAIN(TestValidOutput)

#include "tst_validoutput.moc"
