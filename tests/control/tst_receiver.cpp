#include "commentplacer.h"
#include "mainwindow.h"
#include "measurement.h"
#include "operatorlanguage.h"
#include "support/files.h"
#include "support/rows.h"

#include "control/vcreporting.h"

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTabBar>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>

namespace {

/// A language, and in it: the window's title, a field, one of Qt's own buttons.
constexpr const char *kLanguageRows[][2] = {
    { "de_CH", "Überwachungsempfänger|98.100000 MHz|genehmigt|&Ja" },
    { "fr", "Récepteur de surveillance|98,100000 MHz|autorisé|&Oui" },
    { "C", "Monitoring receiver|98.100000 MHz|licensed|&Yes" },
};

QString SchemaPath()
{
    return QStringLiteral(EXAMPLE_SCHEMA_DIR "/measurement.xsd");
}

QStringList FindTexts(const QWidget &window)
{
    QStringList texts;
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        texts << widget->property("text").toString() << widget->property("title").toString();
        const auto *tabs = qobject_cast<const QTabBar *>(widget);
        for (int i = 0; tabs != nullptr && i < tabs->count(); ++i) {
            texts << tabs->tabText(i);
        }
    }
    return texts;
}

} // namespace

/// The example program, driven as an operator drives it.
class TestReceiver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ShowsWhatThePanelHolds()
    {
        const QTemporaryDir folder;
        const QDir reports(folder.filePath(QStringLiteral("reports")));
        reports.mkpath(QStringLiteral("."));
        Measurement measurement;
        MainWindow window(measurement, SchemaPath(), reports.path(), folder.filePath(QStringLiteral("panel.xml")));
        window.show();
        QApplication::setActiveWindow(&window);
        auto *frequency = window.findChild<QDoubleSpinBox *>(QStringLiteral("Measurement/Frequency"));
        frequency->selectAll();
        QTest::keyClicks(frequency, QStringLiteral("433.92\t"));
        window.findChild<QComboBox *>(QStringLiteral("Measurement/Modulation"))->setCurrentText(QStringLiteral("AM"));
        for (int i = 0; i < 2; ++i) {
            QTest::mouseClick(window.findChild<QPushButton *>(QStringLiteral("addSignal")), Qt::LeftButton);
        }
        auto *table = window.findChild<QTableWidget *>(QStringLiteral("signals"));
        table->item(1, 0)->setText(QStringLiteral("7.5"));
        table->item(1, 2)->setText(QStringLiteral("400"));
        QTest::mouseClick(window.GetControl().GetReportButton(), Qt::LeftButton);
        const QString report = window.findChild<QPlainTextEdit *>(QStringLiteral("reportText"))->toPlainText();
        QVERIFY(report.contains(QLatin1String("<Frequency Unit=\"MHz\">7.5<")));
        QVERIFY(window.statusBar()->currentMessage().contains(QLatin1String("/Signal[2]/Level")));
        QTest::keyClick(&window, Qt::Key_F10, Qt::ShiftModifier);

        QCOMPARE(window.findChild<QListWidget *>(QStringLiteral("reports"))->count(), 2);
        const auto *tree = window.findChild<QTreeWidget *>(QStringLiteral("reportTree"));
        for (const auto &[element, text] : { std::pair("Frequency", "433.92 MHz"), std::pair("Depth", "80 %") }) {
            const auto found = tree->findItems(QLatin1String(element), Qt::MatchRecursive);
            QCOMPARE(found.isEmpty() ? QString() : found.first()->text(1).trimmed(), QLatin1String(text));
        }
        QVERIFY(QDir(reports).removeRecursively());
        QMetaObject::invokeMethod(window.GetControl().findChild<QTimer *>(), "timeout");
        QVERIFY(
            window.findChild<QLabel *>(QStringLiteral("availability"))->text().startsWith(QLatin1String("No reports")));
        window.close();
        QVERIFY(QFile::exists(folder.filePath(QStringLiteral("panel.xml"))));
    }

    void SpeaksTheLanguage_data() { AddRows(kLanguageRows); }
    void SpeaksTheLanguage()
    {
        QFETCH(QStringList, row);
        const OperatorLanguage language(QString::fromLatin1(QTest::currentDataTag()));
        const QTemporaryDir folder;
        Measurement measurement;
        MainWindow window(measurement, SchemaPath(), folder.path(), QString());
        window.show();
        QApplication::setActiveWindow(&window);
        auto *field = window.findChild<QDoubleSpinBox *>(QStringLiteral("Measurement/Frequency"));
        const QStringList texts { window.windowTitle(), field->text(),
                                  window.findChild<QComboBox *>(QStringLiteral("Measurement/Status"))->currentText(),
                                  QCoreApplication::translate("QPlatformTheme", "&Yes") };
        QCOMPARE(texts.join(QLatin1Char('|')), row.first());
        for (const char *number : { "94.5", "94,5" }) {
            field->clear();
            QTest::keyClicks(field, QString::fromLatin1(number));
            QCOMPARE(measurement.GetNumber(field->objectName()), 94.5e6);
        }
        // Each key leads to one place.
        QStringList keys;
        for (const QString &text : FindTexts(window)) {
            keys << QKeySequence::mnemonic(text).toString();
        }
        keys.removeAll(QString());
        QVERIFY(keys.size() > 20);
        QCOMPARE(keys.removeDuplicates(), 0);
    }

    void GoesToAnotherFolder()
    {
        const QTemporaryDir folder;
        Measurement measurement;
        MainWindow window(measurement, SchemaPath(), folder.path() + QStringLiteral("/none"), QString());
        // The last one saved comes first, not the last name.
        for (const char *name : { "note", "2024-05-06_07-08-09-10" }) {
            WriteFile(folder.filePath(QLatin1String(name) + QStringLiteral(".xml")), name);
            QTest::qWait(20);
        }
        window.statusBar()->showMessage(QStringLiteral("Saved"));
        window.SetReportFolder(folder.path());
        QCOMPARE(window.findChild<QPlainTextEdit *>(QStringLiteral("reportText"))->toPlainText(),
                 QStringLiteral("2024-05-06_07-08-09-10"));
        QVERIFY(window.statusBar()->currentMessage().isEmpty());
        window.SetSchema(folder.filePath(QStringLiteral("note.xml")));
        const auto *line = window.findChild<QLabel *>(QStringLiteral("availability"));
        QVERIFY(line->text().contains(QLatin1String("does not end in")));
        window.SetSchema(SchemaPath());
        // Nothing hides a dialog that waits.
        window.GetControl().SetShowCommentDialog(true);
        QVERIFY(window.GetControl().SlotToReport() && window.GetControl().SlotToReport());
        const QList<QWidget *> dialogs = CommentPlacer::FindDialogs();
        QVERIFY(dialogs.size() == 2 && (dialogs.first()->pos() - dialogs.last()->pos()).manhattanLength() > 100);
    }
};

QTEST_MAIN(TestReceiver)
#include "tst_receiver.moc"
