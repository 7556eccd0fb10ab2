#include "support/desk.h"

#include "control/commentdialogimpl.h"
#include "host/ostrel.h"
#include "report/xmlcreatereport.h"

#include <QLabel>
#include <QMessageBox>
#include <QTextEdit>

namespace {

// The form and the control's button in a language, and what it shows of a report with elements "Name=text", or with the
// unit u "Name:text".
constexpr const char *kFormRows[][4] = {
    { "values", "is Frequency:7 Level:7 Bandwidth=7 Azimuth=7",
      "Frequency:|7 u|Level:|7|Bandwidth:|7|Time:|2024/05/06 07:08:09|Azimuth:|7 °|Comment:|Save|No Comment|"
      "To Report (Shift+F10)",
      "Warning|You have enterd a comment. Would you like to save it?" },
    { "second names, behind the first, german", "de_AT Signal_Level=7 Level=8 DFAzimuth=7 Bandwidth:7",
      "Frequenz:|---|Pegel:|8|Bandbreite:|7 u|Zeit:|2024/05/06 07:08:09|Azimut:|7 °|&Kommentar:|&Speichern|"
      "&Ohne Kommentar|Bericht erstellen (Umschalt+F10)",
      "Warnung|Sie haben einen Kommentar eingegeben. Möchten Sie ihn speichern?" },
    { "english, without its misspelling", "en_GB Level=8",
      "Frequency:|---|Level:|8|Bandwidth:|---|Time:|2024/05/06 07:08:09|Azimuth:|---|&Comment:|&Save|&No Comment|"
      "To Report (Shift+F10)",
      "Warning|You have entered a comment. Would you like to save it?" },
};

// How the operator ends a dialog with what comment, and what then is in the report.
constexpr const char *kEndRows[][4] = {
    { "save", "m_pSaveButton", " a <b> c ", "<R><A>v</A><Comment> a <b> c </Comment></R>" },
    { "save nothing", "m_pSaveButton", "", "<R><A>v</A></R>" },
    { "no comment", "m_pNoCommentButton", "typed", "<R><A>v</A></R>" },
    { "close without a word", "close", "", "<R><A>v</A></R>" },
    { "close and save", "Yes", "typed", "<R><A>v</A><Comment>typed</Comment></R>" },
    { "close and drop", "No", "typed", "<R><A>v</A></R>" },
    { "close and go on", "Cancel", "typed", "" },
    { "escape", "escape", "typed", "" },
};

/// The dialog of a new report.
CommentDialogImpl *Open(VCReporting &control)
{
    control.SetShowCommentDialog(true);
    control.SlotToReport();
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == QLatin1String("ToReportCommentDialog") && !widget->property("seen").toBool()) {
            widget->setProperty("seen", true);
            return qobject_cast<CommentDialogImpl *>(widget);
        }
    }
    qFatal("no comment dialog has opened");
}

/// Presses a button or escape, or closes the dialog by its frame and answers its question; the result is what it asked.
QString End(QDialog *dialog, const QString &how)
{
    QString question;
    if (how.startsWith(QLatin1String("m_p"))) {
        Press(dialog, how.toLatin1().constData());
    } else if (how == QLatin1String("escape")) {
        QTest::keyClick(dialog, Qt::Key_Escape);
    } else {
        QTimer::singleShot(0, dialog, [how, &question] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                question = box->windowTitle() + QLatin1Char('|') + box->text();
                for (QAbstractButton *button : box->buttons()) {
                    if (button->text().remove(QLatin1Char('&')) == how) {
                        return button->click();
                    }
                }
                box->done(QMessageBox::Cancel);
            }
        });
        dialog->close();
        QCoreApplication::processEvents();
    }
    return question;
}

} // namespace

class TestCommentDialog : public QObject
{
    Q_OBJECT

private:
    static void EndDeferred() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    std::unique_ptr<Desk> m_pDesk;

private Q_SLOTS:
    void init()
    {
        m_pDesk = std::make_unique<Desk>();
        m_pDesk->AddText("A", "v");
    }

    void cleanup()
    {
        m_pDesk.reset();
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            widget->hide();
        }
        EndDeferred();
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    void HasItsForm_data() { AddRows(kFormRows); }
    void HasItsForm()
    {
        QFETCH(QStringList, row);
        QStringList elements = row.at(0).split(QLatin1Char(' '));
        TranslationCenter::Instance().SetLocale(QLocale(elements.takeFirst()));
        QString content;
        for (const QString &element : elements) {
            const bool hasUnit = element.contains(QLatin1Char(':'));
            content += QStringLiteral("<e %1><c><xs:simpleContent><x xs:string>%2</x></xs:simpleContent></c></e>")
                           .arg(element.chopped(2), QLatin1String(hasUnit ? "<a Unit type=xs:string/>" : ""));
        }
        const Desk desk(content);
        for (const QString &element : elements) {
            desk.m_pControl->AddReportData(element.chopped(2), QString(), element.right(1), 1, QString(), 0,
                                           QStringLiteral("u"));
        }
        CommentDialogImpl *dialog = Open(*desk.m_pControl);
        QStringList texts;
        for (const QLabel *label : dialog->findChildren<QLabel *>()) {
            texts << label->text();
        }
        texts << dialog->m_pSaveButton->text() << dialog->m_pNoCommentButton->text()
              << desk.m_pControl->GetReportButton()->toolTip();
        QCOMPARE(texts.join(QLatin1Char('|')), row.at(1));
        QVERIFY(!dialog->isModal());
        dialog->m_pTextEdit->setPlainText(QStringLiteral("x"));
        QCOMPARE(End(dialog, QStringLiteral("none of them")), row.at(2));
        TranslationCenter::Instance().SetLocale(QLocale::c());
    }

    void SavesWhatTheOperatorEnds_data() { AddRows(kEndRows); }
    void SavesWhatTheOperatorEnds()
    {
        QFETCH(QStringList, row);
        CommentDialogImpl *dialog = Open(*m_pDesk->m_pControl);
        QVERIFY(m_pDesk->Reports().isEmpty());
        QTest::keyClicks(dialog->m_pTextEdit, row.at(1));
        End(dialog, row.at(0));
        QCOMPARE(dialog->isVisible(), row.at(0) == QLatin1String("Cancel"));
        QCOMPARE(dialog->m_pTextEdit->toPlainText(), row.at(1));
        QCOMPARE(m_pDesk->LatestReport(), row.at(2));
        // What has been saved is not saved again.
        if (!row.at(2).isEmpty()) {
            dialog->show();
            dialog->m_pTextEdit->setPlainText(QStringLiteral("late"));
            QVERIFY(dialog->close());
            QCOMPARE(m_pDesk->LatestReport(), row.at(2));
        }
    }

    // A comment has nowhere to stand then, and a file that can't be written is nobody's business.
    void AppearsForAnUnreadableSchema()
    {
        WriteFile(m_pDesk->SchemaPath(), "garbage");
        CommentDialogImpl *dialog = Open(*m_pDesk->m_pControl);
        dialog->m_pTextEdit->setPlainText(QStringLiteral("typed"));
        QVERIFY(QDir().rmdir(m_pDesk->ReportFolder()));
        End(dialog, QStringLiteral("m_pSaveButton"));
        QVERIFY(dialog->isHidden());
    }

    // A host's own builder ends its dialog with it, here while the dialog asks its question.
    void GoesWithItsBuilder()
    {
        auto report = std::make_unique<XmlCreateReport>(m_pDesk->m_pControl.get());
        QVERIFY(report->CreateXmlFromSchema(m_pDesk->SchemaPath(), m_pDesk->ReportFolder() + QLatin1String("/own.xml"),
                                            true));
        const QPointer<QDialog> dialog = report->GetCommentDialogs().front();
        dialog->findChild<QTextEdit *>()->setPlainText(QStringLiteral("typed"));
        QTimer::singleShot(0, this, [&report] { report.reset(); });
        dialog->close();
        QVERIFY(report == nullptr && dialog.isNull() && m_pDesk->Reports().isEmpty());
    }

    // The latest stays until the next report, an earlier one goes when it has ended.
    void GoesOnceItIsSuperseded()
    {
        const QPointer<CommentDialogImpl> first = Open(*m_pDesk->m_pControl);
        const QPointer<CommentDialogImpl> second = Open(*m_pDesk->m_pControl);
        second->close();
        first->close();
        EndDeferred();
        QVERIFY(first.isNull() && second != nullptr);
        const QPointer<CommentDialogImpl> third = Open(*m_pDesk->m_pControl);
        QVERIFY(second.isNull());
        third->close();
        m_pDesk->m_pControl.reset();
        QVERIFY(third.isNull());
        QCOMPARE(m_pDesk->Reports().size(), 3);
    }
};

int main(int argc, char *argv[])
{
    // Applications that end while a dialog is open: it must go before them, unsaved, also if its control lives on.
    for (const bool outlives : { false, true }) {
        const ControlRun run;
        bool isGone = false;
        std::unique_ptr<VCReporting> control;
        {
            const QApplication application(argc, argv);
            control = run.MakeControl();
            QObject::connect(Open(*control), &QObject::destroyed,
                             [&isGone] { isGone = QApplication::instance() != nullptr; });
            if (!outlives) {
                control.reset();
            }
        }
        if (!isGone || !run.Reports().isEmpty()) {
            qFatal("a comment dialog has outlived its application, or has saved its report then");
        }
    }
    const QApplication application(argc, argv);
    TestCommentDialog test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_commentdialog.moc"
