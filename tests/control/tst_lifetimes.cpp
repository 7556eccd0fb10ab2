#include "support/controlrun.h"

#include "control/reportdata.h"
#include "events/xmlevent.h"
#include "host/quilmar.h"
#include "report/xmlcreatereport.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
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

/// A tree of one value, which does something while its number is read.
class OneValueTree : public values::Tree, public values::ValueBase, public values::IValueNumeric
{
public:
    OneValueTree()
        : ValueBase(QStringLiteral("A"), QStringLiteral("A"))
    {
        Install(this);
    }
    ~OneValueTree() override { Install(nullptr); }
    values::ValueBase *FindValue(QString) override { return this; }
    values::TreeItem *FindItem(QString) override { return nullptr; }
    QString GetText() override { return QStringLiteral("own"); }
    double GetNumber() override
    {
        m_fnRead();
        return 7.5;
    }

    std::function<void()> m_fnRead;
};

/// A control and its surroundings.
struct Desk : ControlRun
{
    explicit Desk(bool hasDialog, const QString &content = QStringLiteral("<xs:element name='A' type='xs:string'/>"))
        : ControlRun(content)
    {
        m_pControl->SetShowCommentDialog(hasDialog);
        m_pControl->setParent(&m_oWindow);
        m_oWindow.show();
    }
    void AddText(const char *name, const char *text, int maxOccurs = 1) const
    {
        m_pControl->AddExplicitReportData(QLatin1String(name), text, maxOccurs, QString(), 0, QString());
    }
    void AddValue() const
    {
        m_pControl->AddReportData(QStringLiteral("A"), QStringLiteral("A"), QString(), 1, QString(), 0, QString());
    }

    QWidget m_oWindow;
    std::unique_ptr<VCReporting> m_pControl = MakeControl();
    QPointer<QToolButton> m_pButton = m_pControl->GetReportButton();
};

/// Whether the object goes as soon as the application comes to it.
bool IsEnded(const QPointer<QWidget> &object)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return object.isNull();
}

QPointer<QWidget> Dialog()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("CommentDialogImpl")) {
            return widget;
        }
    }
    return nullptr;
}

void Press(const QWidget *dialog, const char *button)
{
    QTest::mouseClick(dialog->findChild<QPushButton *>(QLatin1String(button)), Qt::LeftButton);
}

/// What a host does in a slot, or when a comment dialog has such an event: at once, or in an event loop of its own.
class Call : public QObject
{
    Q_OBJECT

public:
    Call(std::function<void()> call, bool isInALoop, QEvent::Type type = QEvent::None)
        : m_fnCall(std::move(call))
        , m_bInALoop(isInALoop)
        , m_eType(type)
    {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == m_eType && watched->inherits("CommentDialogImpl")) {
            m_eType = QEvent::None;
            Run();
        }
        return false;
    }

public Q_SLOTS:
    void Run()
    {
        QEventLoop loop;
        if (m_bInALoop) {
            QTimer::singleShot(0, &loop, [&] {
                m_fnCall();
                QTimer::singleShot(0, &loop, &QEventLoop::quit);
            });
            loop.exec();
        } else {
            m_fnCall();
        }
    }

private:
    std::function<void()> m_fnCall;
    bool m_bInALoop;
    QEvent::Type m_eType;
};

} // namespace

class TestLifetimes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void EndsInASlot_data();
    void EndsInASlot();
    void EndsWhileThePollTakesTheFocus();
    void EndsWhileADialogShows();
    void EndsWhileADialogHides_data();
    void EndsWhileADialogHides();
    void EndsWithTheDialogBefore();
    void ListChangesWhileAValueIsRead_data();
    void ListChangesWhileAValueIsRead();
    void ListIsClearedInARefusal();
    void ValueThrows();
    void TextsMayOutliveTheLibrary();
    void LivesWithoutItsTimer();
    void DialogStaysOnTheScreen();
    void ManyItemsOfOneNameCostNothing();
};

void TestLifetimes::EndsInASlot_data()
{
    QTest::addColumn<QByteArray>("signal");
    for (const char *signal : { SIGNAL(PrepareToReport()), SIGNAL(ReportSuccessful()), SIGNAL(pressed()),
                                SIGNAL(released()), SIGNAL(clicked()) }) {
        QTest::newRow(signal) << QByteArray(signal);
    }
}

void TestLifetimes::EndsInASlot()
{
    QFETCH(QByteArray, signal);
    for (const int way : { 0, 1, 2, 3 }) {
        Desk desk(false);
        const Call end([&] { desk.m_pControl.reset(); }, way > 1);
        const bool isControls = desk.m_pControl->metaObject()->indexOfSignal(signal.constData() + 1) >= 0;
        connect(isControls ? static_cast<QObject *>(desk.m_pControl.get()) : desk.m_pButton.data(), signal, &end,
                SLOT(Run()));
        if (way % 2 == 0) {
            QTest::mouseClick(desk.m_pButton, Qt::LeftButton);
        } else {
            QTest::keyClick(desk.m_pButton, Qt::Key_Space);
        }
        QVERIFY(desk.m_pControl == nullptr && IsEnded(desk.m_pButton.data()));
    }
}

void TestLifetimes::EndsWhileThePollTakesTheFocus()
{
    for (const bool isPoll : { true, false }) {
        Desk desk(false);
        QApplication::setActiveWindow(&desk.m_oWindow);
        desk.m_pButton->setFocus();
        const Call end([&] { desk.m_pControl.reset(); }, false);
        connect(qApp, &QApplication::focusChanged, &end, &Call::Run);
        QFile::remove(desk.SchemaPath());
        desk.m_pControl->EnableReportButton(isPoll);
        QVERIFY(desk.m_pControl == nullptr && IsEnded(desk.m_pButton.data()));
    }
}

void TestLifetimes::EndsWhileADialogShows()
{
    Desk desk(true);
    const Call onShow([&] { desk.m_pControl.reset(); }, false, QEvent::Show);
    desk.m_pControl->SlotToReport();
    const QPointer<QWidget> dialog = Dialog();
    QVERIFY(desk.m_pControl == nullptr && dialog->isVisible());
    Press(dialog, "m_pNoCommentButton");
    QVERIFY(IsEnded(dialog));
    QCOMPARE(desk.Reports().size(), 1);
}

void TestLifetimes::EndsWhileADialogHides_data()
{
    QTest::addColumn<int>("end");
    QTest::newRow("save") << 0;
    QTest::newRow("escape") << 1;
    QTest::newRow("frame") << 2;
}

void TestLifetimes::EndsWhileADialogHides()
{
    QFETCH(int, end);
    struct Deaf : ITagwright
    {
        void XmlUpdate(XmlEvent *) override { }
    } deaf;
    for (const int way : { 0, 1, 2, 3 }) {
        Desk desk(true);
        std::unique_ptr<XmlCreateReport> builder;
        if (way % 2 == 0) {
            QVERIFY(desk.m_pControl->SlotToReport());
        } else {
            builder = std::make_unique<XmlCreateReport>(&deaf);
            builder->CreateXmlFromSchema(desk.SchemaPath(), desk.ReportFolder() + QLatin1String("/own.xml"), true);
        }
        const QPointer<QWidget> dialog = Dialog();
        const auto endOwner = [&] {
            builder.reset();
            desk.m_pControl.reset();
            dialog->close(); // there is nothing to save any more
        };
        const Call onHide(endOwner, way > 1, QEvent::Hide);
        if (end == 0) {
            Press(dialog, "m_pSaveButton");
        } else if (end == 1) {
            QTest::keyClick(dialog, Qt::Key_Escape);
        } else {
            dialog->close();
        }
        QVERIFY(desk.m_pControl == nullptr && builder == nullptr && IsEnded(dialog));
    }
}

void TestLifetimes::EndsWithTheDialogBefore()
{
    Desk desk(true);
    QVERIFY(desk.m_pControl->SlotToReport());
    Dialog()->hide();
    const Call end([&] { desk.m_pControl.reset(); }, false);
    connect(Dialog(), &QObject::destroyed, &end, &Call::Run);
    QVERIFY(!desk.m_pControl->SlotToReport());
    QVERIFY(desk.m_pControl == nullptr && Dialog() == nullptr);
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
    const Desk desk(false);
    OneValueTree tree;
    desk.AddText("Z", "earlier");
    desk.AddValue();
    desk.AddText("A", "later");
    tree.m_fnRead = [&] {
        if (removed.isEmpty()) {
            desk.m_pControl->ClearReportData();
        } else {
            desk.m_pControl->DeleteReportData(removed);
        }
    };
    QVERIFY(desk.m_pControl->SlotToReport());
    QCOMPARE(desk.LatestReport(), QStringLiteral("<R><A>own</A></R>"));
}

void TestLifetimes::ListIsClearedInARefusal()
{
    struct Clearing : VCReporting
    {
        using VCReporting::VCReporting;
        void XmlUpdate(XmlEvent *event) override
        {
            if (event->GetType() == XmlEvent::EVENT_ERROR) {
                ClearReportData();
            }
            VCReporting::XmlUpdate(event);
        }
    };
    Desk desk(false);
    desk.m_pControl =
        std::make_unique<Clearing>(desk.SchemaPath(), desk.ReportFolder(), nullptr, true, nullptr, false, QPixmap());
    desk.AddText("A", "text", 3);
    QVERIFY(desk.m_pControl->SlotToReport());
    QCOMPARE(desk.LatestReport(), QStringLiteral("<R><A>text</A></R>"));
}

void TestLifetimes::ValueThrows()
{
    const Desk desk(false);
    OneValueTree tree;
    desk.AddValue();
    tree.m_fnRead = [] { throw std::runtime_error("no value"); };
    QVERIFY_EXCEPTION_THROWN(desk.m_pControl->SlotToReport(), std::runtime_error);
    tree.m_fnRead = [] {};
    QVERIFY(desk.m_pControl->SlotToReport());
    QCOMPARE(desk.LatestReport(), QStringLiteral("<R><A>own</A></R>"));
}

// The characters of a literal go with the library, those of any other text with its last copy.
void TestLifetimes::TextsMayOutliveTheLibrary()
{
    struct Keeping : VCReporting
    {
        using VCReporting::VCReporting;
        void XmlUpdate(XmlEvent *event) override
        {
            if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
                auto *begin = static_cast<ElemBeginEvent *>(event);
                const QXmlAttributes attributes = begin->GetElementAttributes();
                for (int i = 0; i < attributes.count(); ++i) {
                    m_lKept << attributes.qName(i) << attributes.value(i);
                }
                m_lKept << begin->GetElementName() << begin->GetElementText();
            }
            VCReporting::XmlUpdate(event);
        }
        QStringList m_lKept;
    };
    const ControlRun run(
        QStringLiteral("<xs:element name='A' type='xs:boolean' default='x' maxOccurs='2'/><xs:element name='B'>"
                       "<xs:simpleType><xs:restriction base='xs:string'/></xs:simpleType></xs:element>"));
    Keeping control(run.SchemaPath(), run.ReportFolder(), nullptr, false, nullptr, false, QPixmap());
    control.SetShowCommentDialog(true);
    control.AddExplicitReportData(QStringLiteral("A"), true, 2, QString(), 0, QString());
    QVERIFY(control.SlotToReport() && control.m_lKept.contains(QLatin1String("default")));
    control.m_lKept << Dialog()->objectName();
    for (QString &text : control.m_lKept) {
        QVERIFY2(text.isEmpty() || !text.data_ptr()->ref.isStatic(), qPrintable(text));
    }
}

void TestLifetimes::LivesWithoutItsTimer()
{
    const Desk desk(false);
    delete desk.m_pControl->findChild<QTimer *>();
    desk.m_pControl->EnableReportButton(false);
    QVERIFY(!desk.m_pButton->isEnabled());
    desk.m_pControl->EnableReportButton(true);
    QVERIFY(desk.m_pButton->isEnabled());
}

void TestLifetimes::DialogStaysOnTheScreen()
{
    for (const QString &text : { QString(3000, QLatin1Char('W')), QStringLiteral("line\n").repeated(200) }) {
        const Desk desk(true, QStringLiteral("<xs:element name='Level' type='xs:string'/>"));
        desk.AddText("Level", qPrintable(text));
        QVERIFY(desk.m_pControl->SlotToReport());
        const QSize available = QGuiApplication::primaryScreen()->availableSize();
        QCOMPARE(Dialog()->size().boundedTo(available), Dialog()->size());
        Dialog()->hide();
    }
}

// The walk over the items ends at the first that serves, so it must not look at the others either.
void TestLifetimes::ManyItemsOfOneNameCostNothing()
{
    const Desk desk(false, QStringLiteral("<xs:element name='A' type='xs:string' maxOccurs='2000'/>"));
    desk.AddText("A", "first", 2000);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(desk.m_pControl->SlotToReport());
    const qint64 withOne = timer.restart();
    for (int i = 0; i < 20000; ++i) {
        desk.AddText("A", "further");
    }
    timer.restart();
    QVERIFY(desk.m_pControl->SlotToReport());
    QVERIFY2(timer.elapsed() < 5 * withOne + 200, qPrintable(QString::number(timer.elapsed())));
}

QTEST_MAIN(TestLifetimes)
#include "tst_lifetimes.moc"
