#include "support/reportrun.h"
#include "support/rows.h"

#include "dom/limits.h"
#include "report/schemapattern.h"

#include <QDialog>
#include <QtTest>

#include <memory>

namespace {

/// Makes a report in valid output by orders with blanks between them; what it tells: "missing /R/v; refused /R/w x 15".
QString Told(ReportRun &run, const QString &declarations, const QString &orders)
{
    run.Follow(orders);
    run.m_oReport.SetValidOutput(true);
    run.Run(declarations);
    const ReportOutcome outcome = run.m_oReport.GetOutcome();
    QStringList told;
    for (const QString &place : outcome.GetMissing()) {
        told << QLatin1String("missing ") + place;
    }
    for (const ReportOutcome::RefusedValue &refused : outcome.GetRefusedValues()) {
        told << QStringLiteral("refused %1 %2 %3").arg(refused.m_sPlace, refused.m_sValue).arg(refused.m_iError);
    }
    return outcome.IsSaved() ? told.join(QLatin1String("; ")) : QStringLiteral("not saved");
}

#define ATTRIBUTES "<a A type=xs:string/><a B type=xs:string default=d/><a C type=xs:string use=required/>"
#define CHOICE "<h><t a/><t b/><t c/></h>"

// What stands in the root (behind "^", the other declarations), the orders, what is in the report, and what it tells.
constexpr const char *kSettled[][5] = {
    { "optional leaves", "<t a min=0/><t b min=0/>", "b=s:x", "<b>x</b>" },
    { "a container whose first has no value", "<e p min=0><c><t a min=0/><t b min=0/></c></e>", "b=s:x",
      "<p><b>x</b></p>" },
    { "a container without any", "<e p min=0><c><t a/><e q><c><t b/></c></e></c></e>" },
    { "a named type", "<e p type=P max=9/><e q type=P/>^<c P><t a min=0/><t b min=0 max=3/></c>", "p:2 b=s:x b:3",
      "<p><b>x</b><b>x</b><b>x</b></p><p><b>x</b><b>x</b><b>x</b></p><q><b>x</b><b>x</b><b>x</b></q>" },
    { "a type that comes later", "<e p type=Z min=0/><e ref=g min=0/>^<e g type=Z/><c Z><t a/></c>" },
    { "an extension of a type with elements",
      "<e v><c><xs:complexContent><x B/></xs:complexContent></c></e>^<c B><q><t a min=0/></q></c>", "", "<v/>",
      "missing /R/v" },
    { "limits", "<t a max=100/><t b min=0 max=2/><t c/>", "a:101 b:3 c:2 c=s:x", "<a/><c>x</c>",
      "missing /R/a; refused /R/a 101 16; refused /R/b 3 16; refused /R/c 2 16" },
    { "beside the template's own", "<t a min=2 max=3/>", "a:2 a=s:x", "<a>x</a><a>x</a><a>x</a>" },
    { "too many beside them", "<t a min=2 max=3/>", "a:3 a=s:x", "<a>x</a><a>x</a>", "refused /R/a 3 16" },
    { "missing", "<t a/><e p max=2><c><t b/></c></e>", "p:2 b[0]=s:x p[1]+", "<a/><p><b>x</b></p><p><b>x</b></p>",
      "missing /R/a" },
    { "defaults", "<t a default=d/><e p><c><t b default=e/><t c default=f min=0/></c></e>", "",
      "<a>d</a><p><b>e</b></p>" },
    { "a global default", "<e ref=g/>^<e g type=xs:string default=d/>", "", "<g>d</g>" },
    { "a default makes no container", "<e p min=0><c><t b default=e/></c></e>" },
    { "kept", "<e p min=0 max=2><c><t b min=0/></c></e>", "p+ p:2", "<p/><p/>" },
    { "attributes", "<e p max=2><c>" ATTRIBUTES "</c></e>", "p:2 p@A=s:xs:string",
      "<p A='xs:string' B='d'/><p A='xs:string' B='d'/>", "missing /R/p/@C; missing /R/p[2]/@C" },
    { "a prohibited attribute", "<e p><c><a A type=xs:string use=prohibited fixed=x/></c></e>", "p@A=s:x", "<p/>",
      "refused /R/p/@A x 15" },
    { "an attribute is a value", "<e p min=0><c><q><t a min=0/></q>" ATTRIBUTES "</c></e>", "p@C=s:x",
      "<p B='d' C='x'/>" },
    { "a choice", CHOICE "<t d/>", "b=s:x d=s:x", "<b>x</b><d>x</d>" },
    { "given up", CHOICE, "a- b=s:x c-", "<b>x</b>" },
    { "two alternatives", CHOICE, "a=s:x c=s:y", "<a>x</a>", "refused /R/c y 16" },
    { "no alternative", CHOICE, "", "", "missing /R/a" },
    { "an alternative that is to stand no times", CHOICE, "a:0 b=s:x", "<b>x</b>" },
    { "a choice that stands twice", "<h max=2><t a/><t b/><t c/></h>", "a=s:x b=s:y c=s:z", "<a>x</a><b>y</b>",
      "refused /R/c z 16" },
    { "a sequence in a choice that stands often", "<h max=unbounded><q><t a/><t b/></q><t c/></h>", "a=s:x c=s:y",
      "<a>x</a><b/><c>y</c>", "missing /R/b" },
    { "a choice's member has members", "<h><e p><c><t a/><t b/></c></e><t c/></h><t a/>", "b=s:x",
      "<p><a/><b>x</b></p><a/>", "missing /R/p/a; missing /R/a" },
    { "an inner and an outer alternative", "<h>" CHOICE "<t d/></h>", "b=s:x d=s:y", "<b>x</b>", "refused /R/d y 16" },
    { "given up beside a namesake", "<h><t a/><t b/></h><t c/><t a/>", "a- b- c=s:x", "<c>x</c><a/>",
      "missing /R/b; missing /R/a[2]" },
    { "an optional member beside a mandatory one", "<h><q><t a min=0/><t b/></q><t c/></h>", "", "", "missing /R/a" },
    { "a choice within an alternative", "<h><q>" CHOICE "<t d/></q><t e/></h>", "d=s:x", "<d>x</d>", "missing /R/a" },
    { "a choice within the other alternative", "<h><q>" CHOICE "<t d/></q><t e/></h>", "e=s:x", "<e>x</e>" },
    { "a choice in such a sequence", "<h max=unbounded><q><t x/><h><t a/><t b/></h></q><t c/></h>", "x=s:1 a=s:2 b=s:3",
      "<x>1</x><a>2</a>", "refused /R/b 3 16" },
    { "a fixed value", "<e v type=xs:boolean fixed=1/>", "v=b:true", "<v>1</v>" },
    { "an attribute of a user's type", "<e p><c><a A type=stringA/></c></e>^<s stringA><r xs:string><v k/></r></s>",
      "p@A=s:x", "<p/>", "refused /R/p/@A x 15" },
    { "a facet without a name", "<e v type=T/>^<s T><r xs:string><xs: value='x'/></r></s>", "v=s:x", "<v>x</v>" },
    { "an attribute's own facets",
      "<e v max=2><c><xs:simpleContent><x xs:string><a ref=Ref1/><a Ref type=xs:string/></x></xs:simpleContent></c></e>"
      "^<a Ref1><s><r xs:string><v k/></r></s></a>",
      "v:2 v=s:x v@Ref=s:y v@Ref1=s:z v[1]@Ref1=s:k", "<v Ref='y'>x</v><v Ref='y' Ref1='k'>x</v>",
      "refused /R/v/@Ref1 z 15" },
};

// A base with its facets and a value, and what is written; nothing, where the value is refused.
constexpr const char *kJudged[][2] = {
    { "integer enumeration='1' enumeration='02'; i:2", "2" },
    { "integer enumeration='1' enumeration='2'; i:7", "" },
    { "integer totalDigits='2'; i:-99", "-99" },
    { "integer totalDigits='2'; i:100", "" },
    { "integer minInclusive='-65535' maxExclusive='65535'; i:65535", "" },
    { "short; s:abc", "" },
    { "short minExclusive='10'; d:10.5", "" },
    { "short; d:32768", "" },
    { "short; d:-32768.9", "-32768" },
    { "long; d:-1.5e10", "-15000000000" },
    { "long; d:1e19", "" },
    { "double; d:-inf", "-INF" },
    { "double minInclusive='0'; d:-inf", "" },
    { "double enumeration='1.50'; d:1.5", "1.5" },
    { "double maxExclusive='10'; d:10.00000000000001", "" },
    { "string minLength='2' maxLength='3'; s:x", "" },
    { "string minLength='1' maxLength='many'; s:x", "x" },
    { "string length='2'; s:\xF0\x9D\x84\x9E!", "\xF0\x9D\x84\x9E!" },
    { "string length='2'; s:x", "" },
    { "string pattern='[A-Z]{2}' pattern='\\d+'; s:12", "12" },
    { "string pattern='[A-Z]{2}'; s:ABC", "" },
    { "string pattern='\\p{IsGreek}' pattern='[A-Z]'; s:1", "1" }, // the first says nothing here, so none does
    { "string pattern='[z-a]'; s:1", "1" },
    { "boolean pattern='true'; b:false", "" },
    { "dateTime maxExclusive='2026-01-01T00:00:00Z'; t:2025-12-31T23:59:59Z", "2025-12-31T23:59:59Z" },
    { "dateTime maxExclusive='2026-01-01T00:00:00Z'; t:2026-01-01T01:00:00+01:00", "" },
    { "dateTime maxExclusive='2026-01-01T00:00:00Z'; t:2025-12-31T23:59:59", "" },
    { "time minInclusive='08:00:00'; t:07:59:59", "" },
    { "dateTime; t:never", "" },
    { "dateTime; t:2025-12-31T23:59:59+14:00", "2025-12-31T23:59:59+14:00" },
    { "dateTime; t:2025-12-31T23:59:59-14:01", "" },
    { "string whiteSpace='replace' enumeration='a b'; s:a\tb", "a\tb" },
    { "string whiteSpace='collapse' enumeration='a'; s:a\xC2\xA0", "" },
};

} // namespace

class TestValidOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void SettlesTheReport_data() { AddRows(kSettled); }
    void SettlesTheReport()
    {
        QFETCH(QStringList, row);
        ReportRun run;
        const QString content = row.at(0).section(QLatin1Char('^'), 0, 0);
        const QString told = Told(run, row.at(0).section(QLatin1Char('^'), 1) + RootElement(content), row.at(1));
        QCOMPARE(told, row.at(3));
        QCOMPARE(run.Report(),
                 row.at(2).isEmpty() ? QStringLiteral("<R/>") : QStringLiteral("<R>%1</R>").arg(row.at(2)));
        QCOMPARE(run.m_oReceiver.m_lHeard.contains(QStringLiteral("!15")), told.contains(QLatin1String(" 15")));
    }

    void JudgesValues_data() { AddRows(kJudged); }
    void JudgesValues()
    {
        QFETCH(QStringList, row);
        const QString type = QString::fromUtf8(QTest::currentDataTag()).section(QLatin1String("; "), 0, 0);
        const QString value = QString::fromUtf8(QTest::currentDataTag()).section(QLatin1String("; "), 1);
        const QString facets =
            type.section(QLatin1Char(' '), 1)
                .replace(QRegularExpression(QStringLiteral("(\\w+)=('[^']*')")), QStringLiteral("<xs:\\1 value=\\2/>"));
        ReportRun run;
        const QString schema = RootElement(QStringLiteral("<e v type=T min=0/>"))
            + QStringLiteral("<s T><r xs:%1>%2</r></s>").arg(type.section(QLatin1Char(' '), 0, 0), facets);
        const QString told = Told(run, schema, QLatin1String("v=") + value);
        QCOMPARE(run.Report(),
                 row.at(0).isEmpty() ? QStringLiteral("<R/>") : QStringLiteral("<R><v>%1</v></R>").arg(row.at(0)));
        QCOMPARE(told.isEmpty(), !row.at(0).isEmpty());
    }

    void ReadsPatterns()
    {
        for (const auto &[pattern, matches, other] :
             { std::array { "^$", "^$", "" }, std::array { "\\w\\W\\s\\S", "a- b", "_- b" },
               std::array { "[\\d\\-^]+", "3-^", "a" }, std::array { "a.b", "a b", "a\nb" } }) {
            const QRegularExpression read(FromSchemaPattern(QLatin1String(pattern)).value_or(QString()));
            QVERIFY2(read.match(QLatin1String(matches)).hasMatch(), pattern);
            QVERIFY2(!read.match(QLatin1String(other)).hasMatch(), pattern);
        }
        for (const char *unsaid : { "\\c", "[\\w-]", "\\p{IsGreek}", "[a-z-[b]]" }) {
            QVERIFY2(!FromSchemaPattern(QLatin1String(unsaid)).has_value(), unsaid);
        }
    }

    void HidesItsMarks()
    {
        ReportRun run;
        QStringList names;
        run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
            for (int i = 0; i < event.GetElementAttributes().count(); ++i) {
                names << event.GetElementAttributes().qName(i);
            }
            event.GetElementNode().toElement().setAttribute(QStringLiteral("own"), 1);
            run.m_oReport.SetElementMaxOccurs(QStringLiteral("v"), 2);
            if (event.GetElementName() == QLatin1String("p")) { // the walk turns back at a text
                QDomNode p = event.GetElementNode();
                p.insertBefore(p.ownerDocument().createTextNode(QStringLiteral("x")), p.firstChild());
            }
        };
        run.m_oReport.SetValidOutput(true);
        QVERIFY(run.Run(RootElement(QStringLiteral("<t v max=2/><e p><c><t a/></c></e>"))));
        QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("type own type own type"));
        QCOMPARE(run.Report(), QStringLiteral("<R own='1'><v own='1'/><v own='1'/><p own='1'>x<a/></p></R>"));
    }

    void CountsNoMarks()
    {
        ReportRun run;
        run.m_oReport.SetValidOutput(true);
        QString attributes;
        for (int i = 1; i < limits::kMaxElementAttributes; ++i) { // and the type
            attributes += QStringLiteral("<a A%1 type=xs:string/>").arg(i);
        }
        QVERIFY(
            run.Run(QStringLiteral("<c C><xs:simpleContent><x xs:string>%1</x></xs:simpleContent></c>").arg(attributes)
                    + RootElement(QStringLiteral("<e v type=C/>"))));
    }

    // Ordinals count what was announced: dropped elements too, and each once.
    void TellsThePlace()
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
            QVERIFY(run.Run(RootElement(QStringLiteral("<e p min=0 max=9><c><t v min=0/></c></e>"))));
            QCOMPARE(places.join(QLatin1Char(' ')), QStringLiteral("/R/p/v/@A /R/p[2]/v/@A /R/p[3]/v/@A"));
            QCOMPARE(run.Report(), QStringLiteral("<R><p><v>x</v></p></R>"));
            QVERIFY(run.m_oReport.GetPlace().GetSteps().isEmpty());
        }
    }

    // The file at once, a dialog that can't save, and one that goes with its builder.
    void TellsTheFateOnce()
    {
        using State = ReportOutcome::State;
        for (const State state : { State::Saved, State::NotSaved, State::Dropped }) {
            ReportRun run;
            QVERIFY(run.Run(RootElement(QStringLiteral("<t v/>"))));
            QVector<ReportOutcome> fates;
            auto report = std::make_unique<XmlCreateReport>(&run.m_oReceiver);
            report->SetFateHandler([&fates](const ReportOutcome &outcome) { fates << outcome; });
            report->SetCollectOutcome(true);
            QCOMPARE(report->GetOutcome().GetState(), State::Open);
            const QString path = run.ReportPath() + QLatin1String(state == State::NotSaved ? "/no/folder" : "");
            QVERIFY(report->CreateXmlFromSchema(run.SchemaPath(), path, state != State::Saved));
            QCOMPARE(fates.size(), state == State::Saved ? 1 : 0);
            if (state == State::NotSaved) {
                report->GetCommentDialogs().front()->close();
                QCOMPARE(fates.size(), 1);
            }
            report.reset();
            QCOMPARE(fates.size(), 1);
            QCOMPARE(fates.first().GetState(), state);
            QCOMPARE(fates.first().GetPath(), path);
            QCOMPARE(fates.first().GetSaveError().isEmpty(), state != State::NotSaved);
            QCOMPARE(fates.first().GetMissing(), QStringList(QStringLiteral("/R/v")));
        }
    }
};

QTEST_MAIN(TestValidOutput)

#include "tst_validoutput.moc"
