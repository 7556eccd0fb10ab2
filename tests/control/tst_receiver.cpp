#include "mainwindow.h"
#include "measurement.h"

#include "control/vcreporting.h"

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>

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
        MainWindow window(measurement, QStringLiteral(EXAMPLE_SCHEMA_DIR "/measurement.xsd"), reports.path(),
                          folder.filePath(QStringLiteral("panel.xml")));
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
};

QTEST_MAIN(TestReceiver)
#include "tst_receiver.moc"
