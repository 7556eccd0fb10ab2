#include "mainwindow.h"
#include "measurement.h"

#include "control/vcreporting.h"

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QListWidget>
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
        QTest::mouseClick(window.GetControl().GetReportButton(), Qt::LeftButton);
        QTest::keyClick(&window, Qt::Key_F10, Qt::ShiftModifier);

        QCOMPARE(window.findChild<QListWidget *>(QStringLiteral("reports"))->count(), 2);
        const auto *tree = window.findChild<QTreeWidget *>(QStringLiteral("reportTree"));
        for (const auto &[element, text] : { std::pair("Frequency", "433.92 MHz"), std::pair("Depth", "80 %") }) {
            const auto found = tree->findItems(QLatin1String(element), Qt::MatchRecursive);
            QCOMPARE(found.isEmpty() ? QString() : found.last()->text(1).trimmed(), QLatin1String(text));
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
