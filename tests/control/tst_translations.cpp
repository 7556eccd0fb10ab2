#include "control/commentdialogimpl.h"
#include "control/vcreporting.h"
#include "host/ostrel.h"

#include <QApplication>
#include <QDomDocument>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

class TestTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { TranslationCenter::Instance().SetLocale(QLocale::c()); }

    void showsTheDialogInTheLanguage_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("frequency");
        QTest::addColumn<QString>("noComment");
        QTest::addColumn<QString>("button");
        QTest::newRow("german") << QLocale(QLocale::German, QLocale::Austria) << QStringLiteral("Frequenz:")
                                << QStringLiteral("Ohne Kommentar")
                                << QStringLiteral("Bericht erstellen (Umschalt+F10)");
        QTest::newRow("french") << QLocale(QLocale::French) << QString::fromUtf8("Fréquence :")
                                << QStringLiteral("Sans commentaire")
                                << QString::fromUtf8("Créer un rapport (Maj+F10)");
        QTest::newRow("no translator") << QLocale(QLocale::Icelandic) << QStringLiteral("Frequency:")
                                       << QStringLiteral("No Comment") << QStringLiteral("To Report (Shift+F10)");
    }
    void showsTheDialogInTheLanguage()
    {
        QFETCH(QLocale, locale);
        TranslationCenter::Instance().SetLocale(locale);
        CommentDialogImpl dialog;
        QTEST(dialog.findChild<QLabel *>(QStringLiteral("m_pFreqTextLabel"))->text(), "frequency");
        QTEST(dialog.findChild<QPushButton *>(QStringLiteral("m_pNoCommentButton"))->text(), "noComment");
        QToolBar toolBar;
        VCReporting control(QStringLiteral("s.xsd"), QStringLiteral("r"), &toolBar, true, nullptr, false, QPixmap());
        QTEST(control.GetReportButton()->toolTip(), "button");
    }

    void asksInTheLanguage()
    {
        TranslationCenter::Instance().SetLocale(QLocale(QLocale::German));
        CommentDialogImpl dialog;
        QDomDocument document;
        dialog.SetDocument(&document);
        dialog.ShowData();
        dialog.findChild<QTextEdit *>(QStringLiteral("m_pTextEdit"))->setPlainText(QStringLiteral("x"));
        QString asked;
        QTimer::singleShot(0, &dialog, [&asked] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            asked = box == nullptr ? QString() : box->windowTitle() + QLatin1Char('|') + box->text();
            if (box != nullptr) {
                box->button(QMessageBox::Cancel)->click();
            }
        });
        dialog.close();
        QCOMPARE(asked, QString::fromUtf8("Warnung|Sie haben einen Kommentar eingegeben. Möchten Sie ihn speichern?"));
    }
};

QTEST_MAIN(TestTranslations)
#include "tst_translations.moc"
