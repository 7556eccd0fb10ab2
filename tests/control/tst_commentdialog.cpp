#include "support/controlrun.h"

#include "control/commentdialogimpl.h"
#include "report/xmlcreatereport.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTextEdit>
#include <QtTest>

namespace {

QString Leaf(const char *name, const char *attributes = "")
{
    return QStringLiteral("<xs:element name='%1' minOccurs='0'><xs:complexType><xs:simpleContent>"
                          "<xs:extension base='xs:string'>%2</xs:extension></xs:simpleContent></xs:complexType>"
                          "</xs:element>")
        .arg(QLatin1String(name), QLatin1String(attributes));
}

// What is done once the event loop runs again.
void Later(const std::function<void()> &action)
{
    auto *timer = new QTimer(QCoreApplication::instance());
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, action] {
        timer->deleteLater();
        action();
    });
    timer->start();
}

// Answers the next question box, and notes what it asked.
QString s_question;
void AnswerNext(QMessageBox::StandardButton answer)
{
    Later([answer] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box != nullptr);
        s_question = box->windowTitle() + QLatin1Char('|') + box->text();
        QTest::mouseClick(box->button(answer), Qt::LeftButton);
    });
}

QList<CommentDialogImpl *> OpenDialogs()
{
    QList<CommentDialogImpl *> dialogs;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->objectName() == QLatin1String("ToReportCommentDialog")) {
            dialogs << qobject_cast<CommentDialogImpl *>(widget);
        }
    }
    return dialogs;
}

void CloseByFrame(QWidget *dialog)
{
    dialog->close();
}

} // namespace

class TestCommentDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void HasItsForm();
    void ShowsTheMainValues_data();
    void ShowsTheMainValues();
    void SavesWhatTheOperatorEnds_data();
    void SavesWhatTheOperatorEnds();
    void CancelKeepsEverything();
    void AppearsForAnUnreadableSchema();
    void GoesWithItsBuilder();
    void OutlivesItsControl_data();
    void OutlivesItsControl();
    void GoesOnceItIsSuperseded();
    void EndsWithTheApplication();

private:
    // The dialog of a new report.
    CommentDialogImpl *Open(bool isReadable = true);

    std::unique_ptr<ControlRun> m_pRun;
    std::unique_ptr<VCReporting> m_pControl;
};

void TestCommentDialog::init()
{
    m_pRun = std::make_unique<ControlRun>();
    m_pControl = m_pRun->MakeControl();
    m_pControl->SetShowCommentDialog(true);
}

void TestCommentDialog::cleanup()
{
    m_pControl.reset();
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        widget->hide();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
    m_pRun.reset();
}

CommentDialogImpl *TestCommentDialog::Open(bool isReadable)
{
    const QList<CommentDialogImpl *> before = OpenDialogs();
    const bool isRead = m_pControl->SlotToReport();
    for (CommentDialogImpl *dialog : OpenDialogs()) {
        if (!before.contains(dialog) && isRead == isReadable) {
            return dialog;
        }
    }
    qFatal("no comment dialog has opened");
}

void TestCommentDialog::HasItsForm()
{
    CommentDialogImpl *dialog = Open();
    QVERIFY(dialog->isSizeGripEnabled() && !dialog->isModal() && dialog->parent() == nullptr);
    QCOMPARE(dialog->windowFlags() & ~Qt::WindowType_Mask,
             Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);

    // The editor has the focus, and the tab key leads on to the buttons.
    QCOMPARE(dialog->focusWidget(), static_cast<QWidget *>(dialog->m_pTextEdit));
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
    QCOMPARE(dialog->focusWidget(), static_cast<QWidget *>(dialog->m_pSaveButton));
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
    QCOMPARE(dialog->focusWidget(), static_cast<QWidget *>(dialog->m_pNoCommentButton));
}

void TestCommentDialog::ShowsTheMainValues_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("shown");
    const QString unit = Leaf("Frequency", "<xs:attribute name='Unit' type='xs:string'/>")
        + Leaf("Level", "<xs:attribute name='Unit' type='xs:string'/>");
    QTest::newRow("with units, Level without")
        << unit + Leaf("Bandwidth") + Leaf("Azimuth") << QStringLiteral("7 u|7|7|7 °");
    QTest::newRow("second names") << Leaf("Signal_Level") + Leaf("DFAzimuth") << QStringLiteral("---|---|7|7 °");
    QTest::newRow("the first name counts") << Leaf("Signal_Level") + Leaf("Level") << QStringLiteral("---|---|8|---");
    QTest::newRow("nothing") << Leaf("A") << QStringLiteral("---|---|---|---");
}

void TestCommentDialog::ShowsTheMainValues()
{
    QFETCH(QString, content);
    const ControlRun run(content);
    m_pControl = run.MakeControl();
    m_pControl->SetShowCommentDialog(true);
    for (const char *name : { "Frequency", "Bandwidth", "Azimuth", "Signal_Level", "DFAzimuth", "Level" }) {
        const bool isSecond = qstrcmp(name, "Level") == 0 && content.contains(QLatin1String("Signal_Level"));
        m_pControl->AddReportData(QLatin1String(name), QString(), QLatin1String(isSecond ? "8" : "7"), 1, QString(), 0,
                                  QStringLiteral("u"));
    }
    const CommentDialogImpl *dialog = Open();
    QStringList shown;
    for (const QLabel *label :
         { dialog->m_pFrequencyLabel, dialog->m_pBandwidthLabel, dialog->m_pLevelLabel, dialog->m_pAzimuthLabel }) {
        shown << label->text();
    }
    QTEST(shown.join(QLatin1Char('|')), "shown");
    QCOMPARE(dialog->m_pTimeLabel->text(), QStringLiteral("2024/05/06 07:08:09"));
    QCOMPARE(dialog->windowTitle(), QStringLiteral("ToReport - 2024/05/06 07:08:09"));
}

using End = void (*)(CommentDialogImpl *);
Q_DECLARE_METATYPE(End)

void TestCommentDialog::SavesWhatTheOperatorEnds_data()
{
    QTest::addColumn<QString>("comment");
    QTest::addColumn<End>("end");
    QTest::addColumn<QString>("report");

    const End save = [](CommentDialogImpl *dialog) { QTest::mouseClick(dialog->m_pSaveButton, Qt::LeftButton); };
    const End noComment = [](CommentDialogImpl *dialog) {
        QTest::mouseClick(dialog->m_pNoCommentButton, Qt::LeftButton);
    };
    const End close = [](CommentDialogImpl *dialog) { CloseByFrame(dialog); };
    const End yes = [](CommentDialogImpl *dialog) {
        AnswerNext(QMessageBox::Yes);
        CloseByFrame(dialog);
    };
    const End no = [](CommentDialogImpl *dialog) {
        AnswerNext(QMessageBox::No);
        CloseByFrame(dialog);
    };
    const End escape = [](CommentDialogImpl *dialog) { QTest::keyClick(dialog->m_pTextEdit, Qt::Key_Escape); };
    const QString plain = QStringLiteral("<R><A type='string'/></R>");
    const QString full = QStringLiteral("<R><A type='string'/><Comment> a <b> c </Comment></R>");

    QTest::newRow("save") << " a <b> c " << save << full;
    QTest::newRow("save nothing") << "" << save << plain;
    QTest::newRow("no comment") << " a <b> c " << noComment << plain;
    QTest::newRow("close without a word") << "" << close << plain;
    QTest::newRow("close and save") << " a <b> c " << yes << full;
    QTest::newRow("close and drop") << " a <b> c " << no << plain;
    QTest::newRow("escape") << "" << escape << "";
}

void TestCommentDialog::SavesWhatTheOperatorEnds()
{
    QFETCH(QString, comment);
    QFETCH(End, end);
    QFETCH(QString, report);
    CommentDialogImpl *dialog = Open();
    QVERIFY(m_pRun->Reports().isEmpty());
    QTest::keyClicks(dialog->m_pTextEdit, comment);
    s_question.clear();
    end(dialog);
    QVERIFY(dialog->isHidden());
    QCOMPARE(m_pRun->Reports().size(), report.isEmpty() ? 0 : 1);
    QCOMPARE(m_pRun->LatestReport(), report);
    if (!s_question.isEmpty()) {
        QCOMPARE(s_question, QStringLiteral("Warning|You have enterd a comment. Would you like to save it?"));
    }
    // What has been saved is not saved again.
    if (!report.isEmpty()) {
        dialog->show();
        dialog->m_pTextEdit->setPlainText(QStringLiteral("late"));
        QVERIFY(dialog->close());
        QCOMPARE(m_pRun->LatestReport(), report);
    }
}

void TestCommentDialog::CancelKeepsEverything()
{
    CommentDialogImpl *dialog = Open();
    QTest::keyClicks(dialog->m_pTextEdit, QStringLiteral("typed"));
    AnswerNext(QMessageBox::Cancel);
    QVERIFY(!dialog->close());
    QVERIFY(dialog->isVisible());
    QCOMPARE(dialog->m_pTextEdit->toPlainText(), QStringLiteral("typed"));
    QVERIFY(m_pRun->Reports().isEmpty());
}

void TestCommentDialog::AppearsForAnUnreadableSchema()
{
    m_pRun->WriteSchema(QStringLiteral("garbage"));
    CommentDialogImpl *dialog = Open(false);
    QVERIFY(dialog != nullptr);
    QCOMPARE(dialog->m_pAzimuthLabel->text(), QStringLiteral("---"));
    // A comment has nowhere to stand, and a file that can't be written is nobody's business.
    QTest::keyClicks(dialog->m_pTextEdit, QStringLiteral("typed"));
    QVERIFY(QDir().rmdir(m_pRun->ReportFolder()));
    QTest::mouseClick(dialog->m_pSaveButton, Qt::LeftButton);
    QVERIFY(dialog->isHidden());
}

// A host's own builder ends its dialog with it, also while the dialog asks its question.
void TestCommentDialog::GoesWithItsBuilder()
{
    class Deaf : public ITagwright
    {
        void XmlUpdate(XmlEvent *) override { }
    } deaf;
    for (const bool isAsking : { false, true }) {
        auto report = std::make_unique<XmlCreateReport>(&deaf);
        QVERIFY(report->CreateXmlFromSchema(m_pRun->SchemaPath(), m_pRun->ReportFolder() + QLatin1String("\\own.xml"),
                                            true));
        QCOMPARE(report->GetCommentDialogs().size(), size_t(1));
        const QPointer<QDialog> dialog = report->GetCommentDialogs().front();
        dialog->findChild<QTextEdit *>()->setPlainText(QStringLiteral("typed"));
        if (isAsking) {
            Later([&report] { report.reset(); });
            dialog->close();
        }
        report.reset();
        QVERIFY(dialog.isNull());
        QVERIFY(m_pRun->Reports().isEmpty());
    }
}

void TestCommentDialog::OutlivesItsControl_data()
{
    QTest::addColumn<bool>("saves");
    QTest::newRow("save") << true;
    QTest::newRow("escape") << false;
}

void TestCommentDialog::OutlivesItsControl()
{
    QFETCH(bool, saves);
    auto toolBar = std::make_unique<QToolBar>();
    m_pControl = m_pRun->MakeControl(false, toolBar.get());
    m_pControl->SetShowCommentDialog(true);
    toolBar->addWidget(m_pControl.get());
    const QPointer<CommentDialogImpl> dialog = Open();
    const QPointer<VCReporting> control = m_pControl.release();
    toolBar.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(control.isNull());
    QVERIFY(dialog != nullptr && dialog->isVisible());
    QTest::keyClicks(dialog->m_pTextEdit, QStringLiteral("typed"));
    if (saves) {
        QTest::mouseClick(dialog->m_pSaveButton, Qt::LeftButton);
    } else {
        QTest::keyClick(dialog->m_pTextEdit, Qt::Key_Escape);
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(dialog.isNull());
    QCOMPARE(m_pRun->LatestReport().contains(QLatin1String("<Comment>typed</Comment>")), saves);
}

void TestCommentDialog::GoesOnceItIsSuperseded()
{
    const QPointer<CommentDialogImpl> first = Open();
    const QPointer<CommentDialogImpl> second = Open();
    QVERIFY(first != second && first->isVisible() && second->isVisible());
    // The latest stays until the next report, an earlier one goes when it has ended.
    second->close();
    first->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(first.isNull() && second != nullptr);
    const QPointer<CommentDialogImpl> third = Open();
    QVERIFY(second.isNull() && third != nullptr);
    third->close();
    m_pControl.reset();
    QVERIFY(third.isNull());
    QCOMPARE(m_pRun->Reports().size(), 3);
}

void TestCommentDialog::EndsWithTheApplication()
{
    QCOMPARE(QProcess::execute(QCoreApplication::applicationFilePath(), { QStringLiteral("--leave-open") }), 0);
    QCOMPARE(QProcess::execute(QCoreApplication::applicationFilePath(), { QStringLiteral("--outlive") }), 0);
}

namespace {

// An application that ends while a dialog is open: the dialog must go before it, unsaved, also if its control lives on.
bool LeaveOpen(int &argc, char **argv)
{
    const ControlRun run;
    bool isGone = false;
    std::unique_ptr<VCReporting> control;
    {
        const QApplication application(argc, argv);
        control = run.MakeControl();
        control->SetShowCommentDialog(true);
        control->SlotToReport();
        QObject::connect(OpenDialogs().value(0), &QObject::destroyed,
                         [&isGone] { isGone = QApplication::instance() != nullptr; });
        if (qstrcmp(argv[1], "--outlive") != 0) {
            control.reset();
        }
    }
    return isGone && run.Reports().isEmpty();
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 2 && (qstrcmp(argv[1], "--leave-open") == 0 || qstrcmp(argv[1], "--outlive") == 0)) {
        return LeaveOpen(argc, argv) ? 0 : 1;
    }
    const QApplication application(argc, argv);
    TestCommentDialog test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_commentdialog.moc"
