#include "support/controlrun.h"

#include "control/reportdata.h"
#include "events/xmlevent.h"
#include "host/quilmar.h"
#include "report/xmlcreatereport.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTextEdit>
#include <QToolButton>
#include <QtTest>

#include <functional>
#include <stdexcept>

// Hosts that take away what is in use: in slots, while Qt hides a dialog, while a value is read. The suite runs this
// under valgrind as well, which sees what Qt itself does with freed memory.

// Pointers must not become truth values.
static_assert(std::is_constructible_v<ExplicitReportData, const char *>);
static_assert(std::is_constructible_v<ExplicitReportData, char *>);
static_assert(!std::is_constructible_v<ExplicitReportData, const wchar_t *>);
static_assert(!std::is_constructible_v<ExplicitReportData, const char16_t *>);
static_assert(!std::is_constructible_v<ExplicitReportData, QObject *>);

namespace {

/// A value that does something while its number is read.
class Value : public values::ValueBase, public values::IValueNumeric
{
public:
    Value()
        : ValueBase(QStringLiteral("A"), QStringLiteral("A"))
    {
    }
    QString GetText() override { return QStringLiteral("own"); }
    double GetNumber() override
    {
        m_fnRead();
        return 7.5;
    }

    std::function<void()> m_fnRead;
};

/// A tree that holds the one value.
class OneValueTree : public values::Tree
{
public:
    OneValueTree() { Install(this); }
    ~OneValueTree() override { Install(nullptr); }
    values::ValueBase *FindValue(QString) override { return &m_oValue; }
    values::TreeItem *FindItem(QString) override { return nullptr; }

    Value m_oValue;
};

void AddText(VCReporting &control, const char *name, const char *text, int maxOccurs = 1)
{
    control.AddExplicitReportData(QLatin1String(name), text, maxOccurs, QString(), 0, QString());
}

void EndDeferred()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QWidgetList Dialogs()
{
    QWidgetList dialogs;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("CommentDialogImpl")) {
            dialogs << widget;
        }
    }
    return dialogs;
}

/// Calls back once when its object is hidden, as a host does that follows the focus.
class OnHide : public QObject
{
public:
    explicit OnHide(std::function<void()> call)
        : m_fnCall(std::move(call))
    {
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Hide) {
            watched->removeEventFilter(this);
            m_fnCall();
        }
        return false;
    }

private:
    std::function<void()> m_fnCall;
};

using EndDialog = void (*)(QWidget *);

} // namespace

Q_DECLARE_METATYPE(EndDialog)

class TestLifetimes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void EndsInASlot();
    void EndsWhileADialogHides_data();
    void EndsWhileADialogHides();
    void ListChangesWhileAValueIsRead_data();
    void ListChangesWhileAValueIsRead();
    void ListIsClearedInARefusal();
    void ValueThrows();
    void LivesWithoutItsTimer();
    void DialogStaysOnTheScreen();
    void ManyItemsOfOneNameCostNothing();
};

void TestLifetimes::EndsInASlot()
{
    for (const auto signal : { &VCReporting::PrepareToReport, &VCReporting::ReportSuccessful }) {
        for (const bool isMouse : { true, false }) {
            const ControlRun run;
            QWidget window;
            QPointer<VCReporting> control = run.MakeControl().release();
            control->setParent(&window);
            window.show();
            const QPointer<QToolButton> button = control->GetReportButton();
            connect(control, signal, [&control] { delete control; });
            if (isMouse) {
                QTest::mouseClick(button, Qt::LeftButton);
            } else {
                QTest::keyClick(button, Qt::Key_Space);
            }
            QVERIFY(control.isNull());
            EndDeferred();
            QVERIFY(button.isNull());
        }
    }
}

void TestLifetimes::EndsWhileADialogHides_data()
{
    QTest::addColumn<bool>("own");
    QTest::addColumn<EndDialog>("end");
    for (const bool own : { false, true }) {
        const auto row = [own](const char *name, EndDialog end) {
            QTest::addRow("%s, %s", name, own ? "a host's builder" : "a control") << own << end;
        };
        row("save", [](QWidget *dialog) {
            QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("m_pSaveButton")), Qt::LeftButton);
        });
        row("escape", [](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        row("frame", [](QWidget *dialog) { dialog->close(); });
    }
}

void TestLifetimes::EndsWhileADialogHides()
{
    QFETCH(bool, own);
    QFETCH(EndDialog, end);
    struct Deaf : ITagwright
    {
        void XmlUpdate(XmlEvent *) override { }
    } deaf;
    const ControlRun run;
    auto control = run.MakeControl();
    std::unique_ptr<XmlCreateReport> builder;
    if (own) {
        builder = std::make_unique<XmlCreateReport>(&deaf);
        QVERIFY(builder->CreateXmlFromSchema(run.SchemaPath(), run.ReportFolder() + QLatin1String("/own.xml"), true));
    } else {
        control->SetShowCommentDialog(true);
        QVERIFY(control->SlotToReport());
    }
    const QPointer<QWidget> dialog = Dialogs().value(0);
    OnHide onHide([&] {
        builder.reset();
        control.reset();
    });
    dialog->installEventFilter(&onHide);
    end(dialog);
    QVERIFY(control == nullptr && builder == nullptr);
    EndDeferred();
    QVERIFY(dialog.isNull());
}

void TestLifetimes::ListChangesWhileAValueIsRead_data()
{
    QTest::addColumn<QString>("removed");
    QTest::newRow("an earlier item") << "Z";
    QTest::newRow("the item itself") << "A";
    QTest::newRow("all") << "";
}

// A number goes into a text on the third try, for which the item is read again.
void TestLifetimes::ListChangesWhileAValueIsRead()
{
    QFETCH(QString, removed);
    const ControlRun run;
    OneValueTree tree;
    const auto control = run.MakeControl();
    AddText(*control, "Z", "earlier");
    control->AddReportData(QStringLiteral("A"), QStringLiteral("A"), QString(), 1, QString(), 0, QString());
    AddText(*control, "A", "later");
    tree.m_oValue.m_fnRead = [&] {
        if (removed.isEmpty()) {
            control->ClearReportData();
        } else {
            control->DeleteReportData(removed);
        }
    };
    QVERIFY(control->SlotToReport());
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>own</A></R>"));
}

void TestLifetimes::ListIsClearedInARefusal()
{
    class Clearing : public VCReporting
    {
    public:
        using VCReporting::VCReporting;
        void XmlUpdate(XmlEvent *event) override
        {
            if (event->GetType() == XmlEvent::EVENT_ERROR) {
                ClearReportData();
            }
            VCReporting::XmlUpdate(event);
        }
    };
    const ControlRun run;
    Clearing control(run.SchemaPath(), run.ReportFolder(), nullptr, true, nullptr, false, QPixmap());
    AddText(control, "A", "text", 3);
    QVERIFY(control.SlotToReport());
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>text</A></R>"));
}

void TestLifetimes::ValueThrows()
{
    const ControlRun run;
    OneValueTree tree;
    const auto control = run.MakeControl();
    control->AddReportData(QStringLiteral("A"), QStringLiteral("A"), QString(), 1, QString(), 0, QString());
    tree.m_oValue.m_fnRead = [] { throw std::runtime_error("no value"); };
    bool isThrown = false;
    try {
        control->SlotToReport();
    } catch (const std::runtime_error &) {
        isThrown = true;
    }
    QVERIFY(isThrown);
    tree.m_oValue.m_fnRead = [] {};
    QVERIFY(control->SlotToReport());
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>own</A></R>"));
}

void TestLifetimes::LivesWithoutItsTimer()
{
    const ControlRun run;
    const auto control = run.MakeControl();
    delete control->findChild<QTimer *>();
    control->EnableReportButton(false);
    QVERIFY(!control->GetReportButton()->isEnabled());
    control->EnableReportButton(true);
    QVERIFY(control->GetReportButton()->isEnabled());
}

void TestLifetimes::DialogStaysOnTheScreen()
{
    const ControlRun run(QStringLiteral("<xs:element name='Level' type='xs:string'/>"));
    const auto control = run.MakeControl();
    control->SetShowCommentDialog(true);
    for (const QString &text : { QString(3000, QLatin1Char('W')), QStringLiteral("line\n").repeated(200) }) {
        control->ClearReportData();
        control->AddExplicitReportData(QStringLiteral("Level"), text, 1, QString(), 0, QString());
        QVERIFY(control->SlotToReport());
        const QWidget *dialog = Dialogs().last();
        const QSize available = QGuiApplication::primaryScreen()->availableSize();
        QVERIFY2(dialog->width() <= available.width() && dialog->height() <= available.height(),
                 qPrintable(QStringLiteral("%1 x %2").arg(dialog->width()).arg(dialog->height())));
        for (QWidget *shown : Dialogs()) {
            shown->hide();
        }
    }
}

// The walk over the items ends at the first that serves, so it must not look at the others either.
void TestLifetimes::ManyItemsOfOneNameCostNothing()
{
    const ControlRun run(QStringLiteral("<xs:element name='A' type='xs:string' maxOccurs='2000'/>"));
    const auto control = run.MakeControl();
    AddText(*control, "A", "first", 2000);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(control->SlotToReport());
    const qint64 withOne = timer.restart();
    for (int i = 0; i < 20000; ++i) {
        AddText(*control, "A", "further");
    }
    timer.restart();
    QVERIFY(control->SlotToReport());
    QVERIFY2(timer.elapsed() < 5 * withOne + 200, qPrintable(QString::number(timer.elapsed())));
}

QTEST_MAIN(TestLifetimes)
#include "tst_lifetimes.moc"
