#include "support/desk.h"
#include "support/scriptedreceiver.h"

#include "control/reportdata.h"
#include "host/quilmar.h"
#include "report/xmlcreatereport.h"

#include <QEventLoop>
#include <QScreen>
#include <QTimer>
#include <QtTest>

#include <stdexcept>

// Hosts that take away what is in use: in slots, while Qt hides a dialog, while a value is read. The suite runs this
// under valgrind as well, which sees what Qt itself does with freed memory.

// Pointers must not become truth values.
static_assert(std::is_constructible_v<ExplicitReportData, char *>);
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

void AddValue(VCReporting &control)
{
    control.AddReportData(QStringLiteral("A"), QStringLiteral("A"), QString(), 1, QString(), 0, QString());
}

/// Whether the object goes as soon as the application comes to it.
bool IsEnded(const QPointer<QWidget> &object)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return object.isNull();
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

    /// Has a control end in a slot, at once or in an event loop of the slot's own; the signal is of the control, of its
    /// button, which has the focus, or of the application.
    static void EndIn(const char *signal, bool isInALoop, void (*act)(Desk &))
    {
        Desk desk;
        QApplication::setActiveWindow(&desk.m_oToolBar);
        desk.m_pButton->setFocus();
        const Call call([&] { desk.m_pControl.reset(); }, isInALoop);
        for (QObject *sender : QObjectList { desk.m_pControl.get(), desk.m_pButton, qApp }) {
            if (sender->metaObject()->indexOfSignal(QMetaObject::normalizedSignature(signal + 1)) >= 0) {
                connect(sender, signal, &call, SLOT(Run()));
            }
        }
        act(desk);
        QVERIFY2(desk.m_pControl == nullptr && IsEnded(desk.m_pButton.data()), signal);
    }

private Q_SLOTS:
    void EndsInASlot()
    {
        for (const char *signal : { SIGNAL(PrepareToReport()), SIGNAL(ReportSuccessful()), SIGNAL(pressed()),
                                    SIGNAL(released()), SIGNAL(clicked()) }) {
            for (const bool isInALoop : { false, true }) {
                EndIn(signal, isInALoop, [](Desk &desk) { desk.Press(); });
                EndIn(signal, isInALoop, [](Desk &desk) { QTest::keyClick(desk.m_pButton, Qt::Key_Space); });
            }
        }
        // A key that is held while the button loses the focus, or is disabled; a shortcut.
        EndIn(SIGNAL(released()), false, [](Desk &desk) {
            QTest::keyPress(desk.m_pButton, Qt::Key_Space);
            desk.m_pButton->clearFocus();
        });
        EndIn(SIGNAL(released()), false, [](Desk &desk) {
            QTest::keyPress(desk.m_pButton, Qt::Key_Space);
            desk.m_pButton->setEnabled(false);
        });
        EndIn(SIGNAL(pressed()), false, [](Desk &desk) {
            desk.m_pButton->setShortcut(Qt::Key_F9);
            QTest::keyClick(&desk.m_oToolBar, Qt::Key_F9);
        });
    }

    void EndsInThePoll()
    {
        const char *told = SIGNAL(ReportDirAndSchemaAvailable(bool));
        EndIn(told, false, [](Desk &desk) { desk.Poll(); });
        EndIn(told, false, [](Desk &desk) { desk.m_pControl->EnableReportButton(true); });
        // Disabled by the host, or for want of the schema, the button loses the focus.
        const char *moved = SIGNAL(focusChanged(QWidget *, QWidget *));
        EndIn(moved, false, [](Desk &desk) { desk.m_pControl->EnableReportButton(false); });
        EndIn(moved, false, [](Desk &desk) {
            QFile::remove(desk.SchemaPath());
            desk.m_pControl->EnableReportButton(true);
        });
    }

    void EndsWhileADialogShows()
    {
        Desk desk;
        desk.m_pControl->SetShowCommentDialog(true);
        const Call onShow([&] { desk.m_pControl.reset(); }, false, QEvent::Show);
        desk.m_pControl->SlotToReport();
        const QPointer<QWidget> dialog = Dialog();
        QVERIFY(desk.m_pControl == nullptr && dialog->isVisible());
        Press(dialog, "m_pNoCommentButton");
        QVERIFY(IsEnded(dialog));
        QCOMPARE(desk.Reports().size(), 1);
    }

    void EndsInItsFate()
    {
        const Desk desk;
        ScriptedReceiver receiver;
        auto report = std::make_unique<XmlCreateReport>(&receiver);
        report->SetFateHandler([&report](const ReportOutcome &) { report.reset(); });
        QVERIFY(report->CreateXmlFromSchema(desk.SchemaPath(), desk.ReportFolder() + QLatin1String("/r.xml"), true));
        delete Dialog();
        QVERIFY(report == nullptr);
    }

    void EndsWhileADialogHides()
    {
        ScriptedReceiver receiver;
        for (int way = 0; way < 12; ++way) {
            Desk desk;
            desk.m_pControl->SetShowCommentDialog(true);
            std::unique_ptr<XmlCreateReport> builder;
            if (way % 2 == 0) {
                QVERIFY(desk.m_pControl->SlotToReport());
            } else {
                builder = std::make_unique<XmlCreateReport>(&receiver);
                builder->CreateXmlFromSchema(desk.SchemaPath(), desk.ReportFolder() + QLatin1String("/own.xml"), true);
            }
            const QPointer<QWidget> dialog = Dialog();
            const auto endOwner = [&] {
                builder.reset();
                desk.m_pControl.reset();
                dialog->close(); // there is nothing to save any more
            };
            const Call onHide(endOwner, way % 4 > 1, QEvent::Hide);
            if (way < 4) {
                Press(dialog, "m_pSaveButton");
            } else if (way < 8) {
                QTest::keyClick(dialog, Qt::Key_Escape);
            } else {
                dialog->close();
            }
            QVERIFY2(desk.m_pControl == nullptr && builder == nullptr && IsEnded(dialog), QByteArray::number(way));
        }
    }

    void EndsWithTheDialogBefore()
    {
        Desk desk;
        desk.m_pControl->SetShowCommentDialog(true);
        QVERIFY(desk.m_pControl->SlotToReport());
        const QPointer<QDialog> dialog = Dialog();
        dialog->hide();
        const Call end([&] { desk.m_pControl.reset(); }, false);
        connect(dialog, &QObject::destroyed, &end, &Call::Run);
        QVERIFY(!desk.m_pControl->SlotToReport());
        QVERIFY(desk.m_pControl == nullptr && dialog == nullptr && Dialog() == nullptr);
    }

    // A number goes into a text on the third try, for which the item is read again.
    void ListChangesWhileAValueIsRead()
    {
        for (const char *removed : { "Z", "A", "" }) {
            const Desk desk;
            OneValueTree tree;
            desk.AddText("Z", "earlier");
            AddValue(*desk.m_pControl);
            desk.AddText("A", "later");
            tree.m_fnRead = [&] {
                if (*removed == '\0') {
                    desk.m_pControl->ClearReportData();
                } else {
                    desk.m_pControl->DeleteReportData(QLatin1String(removed));
                }
            };
            QVERIFY(desk.m_pControl->SlotToReport());
            QCOMPARE(desk.LatestReport(), QStringLiteral("<R><A>own</A></R>"));
        }
    }

    void ListIsClearedInARefusal()
    {
        const Desk desk;
        desk.m_pControl->m_fnHook = [&desk](XmlEvent *event) {
            if (event->GetType() == XmlEvent::EVENT_ERROR) {
                desk.m_pControl->ClearReportData();
            }
        };
        desk.AddText("A", "text", 3);
        QVERIFY(desk.m_pControl->SlotToReport());
        QCOMPARE(desk.LatestReport(), QStringLiteral("<R><A>text</A></R>"));
    }

    void ValueThrows()
    {
        Desk desk;
        OneValueTree tree;
        AddValue(*desk.m_pControl);
        tree.m_fnRead = [] { throw std::runtime_error("no value"); };
        QVERIFY_EXCEPTION_THROWN(desk.m_pControl->SlotToReport(), std::runtime_error);
        QCOMPARE(desk.Heard(), QStringLiteral("prepare not saved"));
        tree.m_fnRead = [] {};
        QVERIFY(desk.m_pControl->SlotToReport());
        QCOMPARE(desk.LatestReport(), QStringLiteral("<R><A>own</A></R>"));
    }

    // The characters of a literal go with the library, those of any other text with its last copy.
    void TextsMayOutliveTheLibrary()
    {
        const Desk desk(QStringLiteral("<e A type=xs:boolean default=x max=2/><e B><s><r xs:string/></s></e>"));
        QStringList kept;
        desk.m_pControl->m_fnHook = [&kept](XmlEvent *event) {
            if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
                auto *begin = static_cast<ElemBeginEvent *>(event);
                const QXmlAttributes attributes = begin->GetElementAttributes();
                for (int i = 0; i < attributes.count(); ++i) {
                    kept << attributes.qName(i) << attributes.value(i);
                }
                kept << begin->GetElementName() << begin->GetElementText();
            }
        };
        desk.m_pControl->SetShowCommentDialog(true);
        desk.m_pControl->AddExplicitReportData(QStringLiteral("A"), true, 2, QString(), 0, QString());
        QVERIFY(desk.m_pControl->SlotToReport() && kept.contains(QLatin1String("default")));
        kept << Dialog()->objectName();
        for (QString &text : kept) {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
            const bool isLiteral = text.data_ptr()->ref.isStatic();
#else
            const bool isLiteral = text.data_ptr().d_ptr() == nullptr;
#endif
            QVERIFY2(text.isEmpty() || !isLiteral, qPrintable(text));
        }
        Dialog()->hide();
    }

    void LivesWithoutItsTimer()
    {
        const Desk desk;
        delete desk.m_pControl->findChild<QTimer *>();
        desk.m_pControl->EnableReportButton(false);
        QVERIFY(!desk.m_pButton->isEnabled());
        desk.m_pControl->EnableReportButton(true);
        QVERIFY(desk.m_pButton->isEnabled());
    }

    void DialogStaysOnTheScreen()
    {
        for (const QString &text : { QString(3000, QLatin1Char('W')), QStringLiteral("line\n").repeated(200) }) {
            const Desk desk(QStringLiteral("<t Level/>"));
            desk.m_pControl->SetShowCommentDialog(true);
            desk.AddText("Level", qPrintable(text));
            QVERIFY(desk.m_pControl->SlotToReport());
            const QSize available = QGuiApplication::primaryScreen()->availableSize();
            QCOMPARE(Dialog()->size().boundedTo(available), Dialog()->size());
            Dialog()->hide();
        }
    }
};

QTEST_MAIN(TestLifetimes)
#include "tst_lifetimes.moc"
