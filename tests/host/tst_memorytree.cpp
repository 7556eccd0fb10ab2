#include "host/quilmar.h"
#include "host/tessaly.h"

#include <QTest>

using values::MemoryTree;

class MemoryTreeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void writesNumbersAsText_data();
    void writesNumbersAsText();
    void tellsKindsByDownCast();
    void listsPlacesInOrder();
    void keepsAddressesWhenValuesChange();
    void refusesWhatDoesNotFit();
    void isInstalledUntilRemovedOrDestroyed();
    void givesAButtonThatCarriesItsText();
};

void MemoryTreeTest::cleanup()
{
    values::Tree::Install(nullptr);
}

void MemoryTreeTest::writesNumbersAsText_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("text");
    QTest::newRow("unit") << 98.5 << "MHz"
                          << ""
                          << "98.5 MHz";
    QTest::newRow("no unit") << -3.0 << ""
                             << ""
                             << "-3";
    QTest::newRow("twelve digits") << 123456789.123456 << "Hz"
                                   << ""
                                   << "123456789.123 Hz";
    QTest::newRow("large") << 1e15 << ""
                           << ""
                           << "1e+15";
    QTest::newRow("given text") << 1.0 << "kHz"
                                << "one kilohertz"
                                << "one kilohertz";
}

void MemoryTreeTest::writesNumbersAsText()
{
    QFETCH(double, number);
    QFETCH(QString, unit);
    QFETCH(QString, given);
    MemoryTree tree;
    QVERIFY(tree.SetNumber(QStringLiteral("v"), number, unit, given));
    QTEST(tree.FindValue(QStringLiteral("v"))->GetText(), "text");
    QCOMPARE(dynamic_cast<values::IValueNumeric *>(tree.FindValue(QStringLiteral("v")))->GetNumber(), number);
}

void MemoryTreeTest::tellsKindsByDownCast()
{
    MemoryTree tree;
    const QString number = QStringLiteral("Receiver/Tuner/Level");
    const QString selection = QStringLiteral("Receiver/Bandwidth");
    const QString text = QStringLiteral("Receiver/Station");
    QVERIFY(tree.SetNumber(number, 1) && tree.SetSelection(selection, 3, QStringLiteral("100 kHz"))
            && tree.SetText(text, QStringLiteral("North")));

    values::ValueBase *level = tree.FindValue(number);
    QVERIFY(dynamic_cast<values::IValueNumeric *>(level) && !dynamic_cast<values::ValueSelection *>(level));
    QCOMPARE(level->GetName(), QStringLiteral("Level"));
    QCOMPARE(tree.FindValue(level->GetPathName()), level);
    auto *bandwidth = dynamic_cast<values::ValueSelection *>(tree.FindValue(selection));
    QVERIFY(bandwidth && !dynamic_cast<values::IValueNumeric *>(tree.FindValue(selection)));
    QCOMPARE(bandwidth->GetSelectionNumber(), 3.0);
    QCOMPARE(bandwidth->GetText(), QStringLiteral("100 kHz"));
    values::ValueBase *station = tree.FindValue(text);
    QVERIFY(!dynamic_cast<values::IValueNumeric *>(station) && !dynamic_cast<values::ValueSelection *>(station));

    auto *item = dynamic_cast<values::ValueItem *>(tree.FindItem(text));
    QVERIFY(item != nullptr && dynamic_cast<values::Node *>(tree.FindItem(text)) == nullptr);
    QCOMPARE(item->FindValue(QString()), station);
    QVERIFY(item->FindValue(QStringLiteral("Station")) == nullptr);
    QVERIFY(dynamic_cast<values::Node *>(tree.FindItem(QStringLiteral("Receiver/Tuner"))) != nullptr);
    QVERIFY(tree.FindValue(QStringLiteral("Receiver")) == nullptr
            && tree.FindItem(QStringLiteral("receiver")) == nullptr);
}

void MemoryTreeTest::listsPlacesInOrder()
{
    MemoryTree tree;
    values::Node *node = tree.AddNode(QStringLiteral("Z/Y"));
    QVERIFY(tree.SetText(QStringLiteral("Z/Y/b"), QString()) && tree.SetText(QStringLiteral("Z/Y/a"), QString())
            && tree.AddNode(QStringLiteral("Z/Y/c")));
    QStringList names;
    for (values::TreeItem *item : node->GetTreeItems()) {
        names.append(item->GetItemName());
    }
    QCOMPARE(names, QStringList({ QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("c") }));
    QCOMPARE(tree.AddNode(QString())->GetTreeItems().size(), std::size_t(1));
    QCOMPARE(tree.AddNode(QStringLiteral("Z/Y")), node);
    QCOMPARE(node->GetItemName(), QStringLiteral("Y"));
}

void MemoryTreeTest::keepsAddressesWhenValuesChange()
{
    MemoryTree tree;
    QVERIFY(tree.SetNumber(QStringLiteral("a"), 1, QStringLiteral("V"), QStringLiteral("text")));
    values::ValueBase *value = tree.FindValue(QStringLiteral("a"));
    for (int number = 0; number < 1000; ++number) {
        QVERIFY(tree.SetNumber(QStringLiteral("n%1/v").arg(number), number));
    }
    QVERIFY(tree.SetNumber(QStringLiteral("a"), 2));
    QCOMPARE(tree.FindValue(QStringLiteral("a")), value);
    QCOMPARE(value->GetText(), QStringLiteral("2"));
}

void MemoryTreeTest::refusesWhatDoesNotFit()
{
    MemoryTree tree;
    QVERIFY(tree.SetText(QStringLiteral("a/b"), QStringLiteral("old")));
    QVERIFY(!tree.SetNumber(QStringLiteral("a/b"), 1));
    QVERIFY(!tree.SetText(QStringLiteral("a"), QString()));
    QVERIFY(!tree.SetText(QStringLiteral("a/b/c"), QString()));
    QVERIFY(tree.AddNode(QStringLiteral("a/b/c")) == nullptr);
    for (const char *path : { "", "/", "a//c", "/a", "a/" }) {
        QVERIFY(!tree.SetText(QLatin1String(path), QString()));
    }
    QCOMPARE(tree.FindValue(QStringLiteral("a/b"))->GetText(), QStringLiteral("old"));
    QCOMPARE(tree.AddNode(QStringLiteral("a"))->GetTreeItems().size(), std::size_t(1));
    QCOMPARE(tree.AddNode(QString())->GetTreeItems().size(), std::size_t(1));
}

void MemoryTreeTest::isInstalledUntilRemovedOrDestroyed()
{
    QVERIFY(values::Tree::Instance() == nullptr);
    MemoryTree kept;
    {
        MemoryTree tree;
        values::Tree::Install(&tree);
        QCOMPARE(values::Tree::Instance(), &tree);
    }
    QVERIFY(values::Tree::Instance() == nullptr);
    values::Tree::Install(&kept);
    {
        const MemoryTree other;
    }
    QCOMPARE(values::Tree::Instance(), &kept);
}

void MemoryTreeTest::givesAButtonThatCarriesItsText()
{
    static const char *const picture[] = { "2 1 1 1", "x c #ff0000", "xx" };
    QWidget parent;
    const auto button = std::make_unique<VCButton>(&parent, QStringLiteral("Report"), false);
    QCOMPARE(button->parentWidget(), &parent);
    QCOMPARE(button->text(), QStringLiteral("Report"));
    button->SetDefaultPicture(picture);
    QVERIFY(!button->icon().isNull());
    button->setEnabled(false);
    QVERIFY(!button->isEnabled());
    QVERIFY(dynamic_cast<IObserver *>(button.get()) != nullptr
            && dynamic_cast<UndoRecordingControlBase *>(button.get()) != nullptr);
}

QTEST_MAIN(MemoryTreeTest)

#include "tst_memorytree.moc"
