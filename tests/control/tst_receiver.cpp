#include "mainwindow.h"
#include "measurement.h"
#include "panelfile.h"

#include "control/vcreporting.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTableWidget>
#include <QTextEdit>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest>

/// The example program, driven as an operator drives it.
class TestReceiver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void ShowsWhatThePanelHolds();
    void TakesAComment();
    void ReportsEachSignal();
    void TellsWhyTheButtonIsDisabled();
    void NeedsNoMouse();
    void KeepsItsPanel();

private:
    template <typename Widget>
    Widget *Find(const char *name)
    {
        return m_pWindow->findChild<Widget *>(QLatin1String(name));
    }
    QToolButton *Button() { return m_pWindow->GetControl().GetReportButton(); }
    QString InTree(const char *element);

    // In the order of construction; the window goes first.
    std::unique_ptr<QTemporaryDir> m_pFolder;
    std::unique_ptr<Measurement> m_pMeasurement;
    std::unique_ptr<MainWindow> m_pWindow;
    QString m_sSchema;
};

void TestReceiver::init()
{
    m_pWindow.reset();
    m_pMeasurement.reset();
    m_pFolder = std::make_unique<QTemporaryDir>();
    QDir(m_pFolder->path()).mkdir(QStringLiteral("reports"));
    for (const char *name : { "measurement.xsd", "units.xsd" }) {
        QVERIFY(QFile::copy(QStringLiteral(EXAMPLE_SCHEMA_DIR "/") + QLatin1String(name),
                            m_pFolder->filePath(QLatin1String(name))));
    }
    m_sSchema = m_pFolder->filePath(QStringLiteral("measurement.xsd"));
    m_pMeasurement = std::make_unique<Measurement>();
    m_pWindow = std::make_unique<MainWindow>(*m_pMeasurement, m_sSchema, m_pFolder->filePath(QStringLiteral("reports")),
                                             m_pFolder->filePath(QStringLiteral("panel.xml")));
    m_pWindow->show();
    QApplication::setActiveWindow(m_pWindow.get());
}

QString TestReceiver::InTree(const char *element)
{
    const auto found = Find<QTreeWidget>("reportTree")->findItems(QLatin1String(element), Qt::MatchRecursive);
    return found.isEmpty() ? QStringLiteral("none") : found.last()->text(1).trimmed();
}

void TestReceiver::ShowsWhatThePanelHolds()
{
    auto *frequency = Find<QDoubleSpinBox>("Measurement/Frequency");
    frequency->selectAll();
    QTest::keyClicks(frequency, QStringLiteral("433.92\t"));
    Find<QComboBox>("Measurement/Bandwidth")->setCurrentText(QStringLiteral("2 MHz"));
    Find<QComboBox>("Measurement/Modulation")->setCurrentText(QStringLiteral("AM"));
    QTest::mouseClick(Find<QCheckBox>("Receiver/Preamplifier"), Qt::LeftButton);
    auto *station = Find<QLineEdit>("Station/Name");
    station->selectAll();
    QTest::keyClicks(station, QStringLiteral("A < B"));
    QTest::mouseClick(Button(), Qt::LeftButton);

    QCOMPARE(Find<QListWidget>("reports")->count(), 1);
    QVERIFY(m_pWindow->statusBar()->currentMessage().endsWith(QLatin1String(".xml.")));
    QCOMPARE(InTree("Frequency"), QStringLiteral("433.92 MHz"));
    QCOMPARE(InTree("Bandwidth"), QStringLiteral("2000 kHz"));
    QCOMPARE(InTree("Depth"), QStringLiteral("80 %"));
    QCOMPARE(InTree("FM"), QStringLiteral("none"));
    QCOMPARE(InTree("Preamplifier"), QStringLiteral("true"));
    QVERIFY(Find<QPlainTextEdit>("reportText")->toPlainText().contains(QLatin1String("<Name>A &lt; B</Name>")));
}

void TestReceiver::TakesAComment()
{
    QTest::mouseClick(Find<QCheckBox>("comment"), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    QVERIFY(Find<QCheckBox>("comment")->isChecked());
    QTest::mouseClick(Button(), Qt::LeftButton);
    QCOMPARE(Find<QListWidget>("reports")->count(), 0);
    QWidgetList dialogs = QApplication::topLevelWidgets();
    dialogs.erase(std::remove_if(dialogs.begin(), dialogs.end(),
                                 [](const QWidget *widget) {
                                     return widget->objectName() != QLatin1String("ToReportCommentDialog");
                                 }),
                  dialogs.end());
    QCOMPARE(dialogs.size(), 1);
    QWidget *dialog = dialogs.first();
    QTest::keyClicks(dialog->findChild<QTextEdit *>(), QStringLiteral("drifts"));
    QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("m_pSaveButton")), Qt::LeftButton);
    // The folder's watcher brings it.
    QTRY_COMPARE(Find<QListWidget>("reports")->count(), 1);
    QCOMPARE(InTree("Comment"), QStringLiteral("drifts"));
}

void TestReceiver::ReportsEachSignal()
{
    QTest::mouseClick(Find<QPushButton>("addSignal"), Qt::LeftButton);
    Find<QComboBox>("Measurement/Modulation")->setCurrentText(QStringLiteral("AM"));
    QTest::mouseClick(Find<QPushButton>("addSignal"), Qt::LeftButton);
    QTest::mouseClick(Find<QPushButton>("addSignal"), Qt::LeftButton);
    QTest::mouseClick(Find<QPushButton>("removeSignal"), Qt::LeftButton);
    Find<QTableWidget>("signals")->item(1, 0)->setText(QStringLiteral("7.5"));
    Find<QTableWidget>("signals")->item(1, 2)->setText(QStringLiteral("400"));
    QTest::mouseClick(Button(), Qt::LeftButton);
    const QString text = Find<QPlainTextEdit>("reportText")->toPlainText();
    QCOMPARE(text.count(QLatin1String("<Signal ")), 2);
    QVERIFY(text.indexOf(QLatin1String("<Frequency Unit=\"MHz\">98.1<")) < text.indexOf(QLatin1String("<FM>")));
    QVERIFY(text.indexOf(QLatin1String("<Frequency Unit=\"MHz\">7.5<")) < text.indexOf(QLatin1String("<AM>")));
    QVERIFY(
        m_pWindow->statusBar()->currentMessage().contains(QLatin1String("/Signal[2]/Level: \"400\" was not written")));
}

void TestReceiver::TellsWhyTheButtonIsDisabled()
{
    const auto *text = Find<QLabel>("availability");
    auto *timer = m_pWindow->GetControl().findChild<QTimer *>();
    QVERIFY(text->text().startsWith(QLatin1String("Ready.")));
    QVERIFY(QFile::rename(m_sSchema, m_sSchema + QLatin1Char('~')));
    QMetaObject::invokeMethod(timer, "timeout");
    QVERIFY(!Button()->isEnabled());
    QCOMPARE(text->text(), QStringLiteral("No reports: the schema %1 does not exist.").arg(m_sSchema));
    QVERIFY(QFile::rename(m_sSchema + QLatin1Char('~'), m_sSchema));
    QVERIFY(QDir(m_pFolder->filePath(QStringLiteral("reports"))).removeRecursively());
    QMetaObject::invokeMethod(timer, "timeout");
    QVERIFY(!Button()->isEnabled());
    QVERIFY(text->text().startsWith(QLatin1String("No reports: the folder")));
    QVERIFY(QDir(m_pFolder->path()).mkdir(QStringLiteral("reports")));
    QMetaObject::invokeMethod(timer, "timeout");
    QVERIFY(Button()->isEnabled());
    QTest::mouseClick(Button(), Qt::LeftButton);
    QCOMPARE(Find<QListWidget>("reports")->count(), 1);
}

void TestReceiver::NeedsNoMouse()
{
    QSet<QWidget *> wanted { Button(), Find<QWidget>("comment"), Find<QWidget>("schema"), Find<QWidget>("reports"),
                             Find<QWidget>("reportTree") };
    for (const char *path :
         { "Station/Name", "Station/Operator", "Station/Country", "Receiver/Detector", "Receiver/Attenuation",
           "Receiver/Preamplifier", "Measurement/Frequency", "Measurement/Bandwidth", "Measurement/Level",
           "Measurement/Azimuth", "Measurement/Modulation", "Measurement/Status" }) {
        wanted.insert(Find<QWidget>(path));
    }
    bool isPressed = false;
    for (int i = 0; i < 40 && !wanted.isEmpty(); ++i) {
        QTest::keyClick(m_pWindow.get(), Qt::Key_Tab);
        QWidget *focus = m_pWindow->focusWidget();
        wanted.remove(focus);
        if (focus == Button() && !isPressed) {
            QTest::keyClick(focus, Qt::Key_Space);
            isPressed = true;
        }
    }
    QVERIFY(wanted.isEmpty());
    QCOMPARE(Find<QListWidget>("reports")->count(), 1);
    QTest::keyClick(m_pWindow.get(), Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(Find<QListWidget>("reports")->count(), 2);
}

void TestReceiver::KeepsItsPanel()
{
    m_pMeasurement->SetNumber(QStringLiteral("Measurement/Frequency"), 433.92e6);
    m_pMeasurement->SetText(QStringLiteral("Measurement/Bandwidth"), QStringLiteral("9 kHz"));
    m_pMeasurement->SetText(QStringLiteral("Station/Name"), QStringLiteral("<Süd> & \"x\""));
    m_pMeasurement->SetText(QStringLiteral("Receiver/Preamplifier"), QStringLiteral("on"));
    m_pWindow->close();
    m_pWindow.reset();
    m_pMeasurement.reset();

    Measurement restored;
    panelfile::Restore(restored, m_pFolder->filePath(QStringLiteral("panel.xml")));
    QCOMPARE(restored.GetNumber(QStringLiteral("Measurement/Frequency")), 433.92e6);
    QCOMPARE(restored.GetText(QStringLiteral("Measurement/Bandwidth")), QStringLiteral("9 kHz"));
    QCOMPARE(restored.GetText(QStringLiteral("Station/Name")), QStringLiteral("<Süd> & \"x\""));
    QCOMPARE(restored.GetText(QStringLiteral("Receiver/Preamplifier")), QStringLiteral("on"));
    QCOMPARE(restored.GetText(QStringLiteral("Measurement/Level")), QStringLiteral("42.5 dBµV"));

    panelfile::Restore(restored, m_pFolder->filePath(QStringLiteral("none.xml")));
    QCOMPARE(restored.GetNumber(QStringLiteral("Measurement/Frequency")), 433.92e6);
}

QTEST_MAIN(TestReceiver)
#include "tst_receiver.moc"
