#include "ColorMime.h"
#include "FixtureTable.h"
#include "PaneTest.h"
#include "Theme.h"

#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QSpinBox>
#include <QUndoStack>
#include <QVBoxLayout>

class tst_FixtureTable : public TrelTest
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override;

private Q_SLOTS:
    void typesANumber();
    void refusesATypedNumber();
    void typingOutlastsAFade();
    void choosesFromAList();
    void choosesForAllSelectedRows();
    void namesOneRowOnly();
    void selectsWithTheMouse();
    void takesDrops_data();
    void takesDrops();
    void takesAColorOfAnotherProgram();
    void refusesOtherDrags();
    void keepsUidsOfTheLibrary();
    void copiesAndPastes();
    void asksForRemoval();
    void barsFollowTheLight();
    void tabLeavesTheTable();
    void pictures();

private:
    QPoint placeOf(int row, int column = 0) const;
    void beginEditing(int row, Patch::Column column);
    int barPixels(int row, QChar channel) const;
    template <typename Editor>
    Editor *editor() const;

    std::unique_ptr<QUndoStack> m_undo;
    std::unique_ptr<Patch> m_patch;
    std::unique_ptr<FixtureTable> m_table;
};

void tst_FixtureTable::setUp()
{
    qRegisterMetaType<QVector<TrelColor>>("QVector<TrelColor>"); // for the spies
    m_undo = std::make_unique<QUndoStack>();
    m_patch = std::make_unique<Patch>(m_undo.get());
    QVector<Fixture> fixtures;
    for (int i = 0; i < 4; ++i) {
        Fixture fixture = Fixture::withDefaults(ColorUtils::WASHLINE_PZ6_RGBW);
        fixture.name = QStringLiteral("Wash %1").arg(i + 1);
        fixture.address = 1 + 4 * i;
        fixtures.append(fixture);
    }
    m_patch->reset(fixtures);
    m_table = std::make_unique<FixtureTable>(m_patch.get());
    QVERIFY(PaneTest::present(*m_table, QSize(1300, 300)));
    m_table->setFocus();
}

void tst_FixtureTable::tearDown()
{
    m_table.reset();
    m_patch.reset();
    m_undo.reset();
}

QPoint tst_FixtureTable::placeOf(int row, int column) const
{
    return m_table->visualRect(m_patch->index(row, column)).center();
}

void tst_FixtureTable::beginEditing(int row, Patch::Column column)
{
    m_table->setCurrentIndex(m_patch->index(row, column));
    QTest::keyClick(m_table.get(), Qt::Key_F2);
}

/// How many pixels the bar of this channel has in the colour of its kind.
int tst_FixtureTable::barPixels(int row, QChar channel) const
{
    const QRect cell = m_table->visualRect(m_patch->index(row, Patch::OutputColumn));
    const QImage picture = m_table->viewport()->grab(cell).toImage();
    const QRgb color = Theme::channelColor(channel).rgb();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixel(x, y) == color ? 1 : 0;
    }
    return count;
}

template <typename Editor>
Editor *tst_FixtureTable::editor() const
{
    return m_table->viewport()->findChild<Editor *>();
}

void tst_FixtureTable::typesANumber()
{
    beginEditing(1, Patch::AddressColumn);
    auto *box = editor<QSpinBox>();
    QVERIFY(box);
    box->selectAll();
    QTest::keyClicks(box, "300");
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_COMPARE(m_patch->fixtures().at(1).address, 300);
    QCOMPARE(m_undo->count(), 1);
}

void tst_FixtureTable::refusesATypedNumber()
{
    QSignalSpy refusals(m_patch.get(), &Patch::refused);
    beginEditing(1, Patch::AddressColumn);
    auto *box = editor<QSpinBox>();
    QVERIFY(box);
    box->selectAll();
    QTest::keyClicks(box, "510");
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_COMPARE(refusals.size(), 1);
    QCOMPARE(m_patch->fixtures().at(1).address, 5);
}

void tst_FixtureTable::typingOutlastsAFade()
{
    beginEditing(1, Patch::AddressColumn);
    auto *box = editor<QSpinBox>();
    QVERIFY(box);
    box->selectAll();
    QTest::keyClicks(box, "3");
    m_patch->setLive(m_patch->idsOf({1}), TrelColor("#102030"));
    m_patch->assign({1}, {{TrelColor("#102030"), QString()}}, false); // its end
    QTest::keyClicks(box, "00");
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_COMPARE(m_patch->fixtures().at(1).address, 300);
}

void tst_FixtureTable::choosesFromAList()
{
    beginEditing(2, Patch::ModeColumn);
    auto *box = editor<QComboBox>();
    QVERIFY(box);
    QCOMPARE(box->count(), 3);
    QCOMPARE(box->currentText(), QString("RGBW In/Out"));
    box->setCurrentIndex(box->findData(int(ColorUtils::RGB_IN_OUT)));
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_COMPARE(m_patch->fixtures().at(2).mode, ColorUtils::RGB_IN_OUT);
    QCOMPARE(m_patch->fixtures().at(1).mode, ColorUtils::RGBW_IN_OUT);
}

void tst_FixtureTable::choosesForAllSelectedRows()
{
    m_table->setCurrentIndex(m_patch->index(2, Patch::CurveColumn));
    m_table->selectRows({0, 2});
    m_table->edit(m_patch->index(2, Patch::CurveColumn));
    auto *box = editor<QComboBox>();
    QVERIFY(box);
    box->setCurrentIndex(box->findData(1));
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_COMPARE(m_patch->fixtures().at(0).curve, 1);
    QCOMPARE(m_patch->fixtures().at(1).curve, 0);
    QCOMPARE(m_patch->fixtures().at(2).curve, 1);
    QCOMPARE(m_undo->count(), 1);
}

void tst_FixtureTable::namesOneRowOnly()
{
    m_table->selectAll();
    m_table->edit(m_patch->index(3, Patch::NameColumn));
    auto *line = editor<QLineEdit>();
    QVERIFY(line);
    line->selectAll();
    QTest::keyClicks(line, "Back");
    QTest::keyClick(line, Qt::Key_Return);
    QTRY_COMPARE(m_patch->fixtures().at(3).name, QString("Back"));
    QCOMPARE(m_patch->fixtures().at(0).name, QString("Wash 1"));
}

void tst_FixtureTable::selectsWithTheMouse()
{
    QSignalSpy changes(m_table.get(), &FixtureTable::selectedRowsChanged);
    QTest::mouseClick(m_table->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(2));
    QTest::mouseClick(m_table->viewport(), Qt::LeftButton, Qt::ControlModifier, placeOf(0));
    QCOMPARE(m_table->selectedRows(), (QVector<int>{0, 2}));
    QCOMPARE(changes.size(), 2);
}

void tst_FixtureTable::takesDrops_data()
{
    QTest::addColumn<QVector<int>>("selected");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("colors");
    QTest::addColumn<QVector<int>>("targets");
    QTest::newRow("one onto a row") << QVector<int>{} << 2 << 1 << QVector<int>{2};
    QTest::newRow("one onto a row beside the selection") << QVector<int>{0, 1} << 2 << 1 << QVector<int>{2};
    QTest::newRow("one onto the selection") << QVector<int>{0, 1} << 1 << 1 << QVector<int>{0, 1};
    QTest::newRow("two onto the selection") << QVector<int>{0, 1} << 1 << 2 << QVector<int>{1, 2};
    QTest::newRow("three near the end") << QVector<int>{} << 2 << 3 << QVector<int>{2, 3};
    QTest::newRow("one below all rows") << QVector<int>{3} << -1 << 1 << QVector<int>{3};
}

void tst_FixtureTable::takesDrops()
{
    QFETCH(QVector<int>, selected);
    QFETCH(int, row);
    QFETCH(int, colors);
    m_table->selectRows(selected);
    QSignalSpy drops(m_table.get(), &FixtureTable::colorsDropped);
    const QVector<NamedColor> all = {{TrelColor("red"), "A"}, {TrelColor("#00ff00"), "B"}, {TrelColor("blue"), "C"}};
    const std::unique_ptr<QMimeData> data(ColorMime::fromColors(all.mid(0, colors)));
    const QPoint place = row < 0 ? m_table->viewport()->rect().bottomLeft() + QPoint(5, -5) : placeOf(row);
    QVERIFY(PaneTest::drop(*m_table->viewport(), place, *data));
    QCOMPARE(drops.size(), 1);
    QTEST(drops.first().at(0).value<QVector<int>>(), "targets");
    QCOMPARE(int(drops.first().at(1).value<QVector<TrelColor>>().size()), colors);
}

void tst_FixtureTable::takesAColorOfAnotherProgram()
{
    QSignalSpy drops(m_table.get(), &FixtureTable::colorsDropped);
    QMimeData text;
    text.setText("#336699");
    QVERIFY(PaneTest::drop(*m_table->viewport(), placeOf(0), text));
    QMimeData color;
    color.setColorData(QColor("#336699"));
    QVERIFY(PaneTest::drop(*m_table->viewport(), placeOf(0), color));
    QCOMPARE(drops.size(), 2);
    for (const QList<QVariant> &drop : qAsConst(drops))
        QCOMPARE(drop.at(1).value<QVector<TrelColor>>().first().name8(), QString("#336699"));
}

void tst_FixtureTable::refusesOtherDrags()
{
    QSignalSpy drops(m_table.get(), &FixtureTable::colorsDropped);
    QMimeData noColor;
    noColor.setText("a cup of tea");
    QVERIFY(!PaneTest::drop(*m_table->viewport(), placeOf(0), noColor));
    QMimeData picture;
    picture.setData("image/png", "…");
    QVERIFY(!PaneTest::drop(*m_table->viewport(), placeOf(0), picture));
    QMimeData color;
    color.setText("#336699");
    QVERIFY(!PaneTest::drop(*m_table->viewport(), m_table->viewport()->rect().bottomLeft() + QPoint(5, -5), color));
    m_patch->reset({});
    QVERIFY(!PaneTest::drop(*m_table->viewport(), QPoint(5, 5), color));
    QVERIFY(drops.isEmpty());
}

void tst_FixtureTable::keepsUidsOfTheLibrary()
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    library->createColorList("Mine", true);
    const QString uid = library->createColorWithName(TrelColor("orange"), "Dawn", QString(), "Mine", QString());
    const std::unique_ptr<QMimeData> data(ColorMime::fromLibrary({library->getIndexOfUid(uid)}));
    QSignalSpy drops(m_table.get(), &FixtureTable::colorsDropped);
    QVERIFY(PaneTest::drop(*m_table->viewport(), placeOf(0), *data));
    QCOMPARE(drops.first().at(2).toStringList(), QStringList{uid});
}

void tst_FixtureTable::copiesAndPastes()
{
    m_patch->assign({0}, {{TrelColor("#123456"), QString()}}, false);
    m_table->selectRows({0});
    QTest::keySequence(m_table.get(), QKeySequence::Copy);
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("#123456"));
    QSignalSpy drops(m_table.get(), &FixtureTable::colorsDropped);
    m_table->selectRows({1, 3});
    QTest::keySequence(m_table.get(), QKeySequence::Paste);
    QCOMPARE(drops.size(), 1);
    QCOMPARE(drops.first().at(0).value<QVector<int>>(), (QVector<int>{1, 3}));
}

void tst_FixtureTable::asksForRemoval()
{
    QSignalSpy requests(m_table.get(), &FixtureTable::removalRequested);
    m_table->clearSelection();
    QTest::keyClick(m_table.get(), Qt::Key_Delete);
    QCOMPARE(requests.size(), 0);
    m_table->selectRows({1});
    QTest::keyClick(m_table.get(), Qt::Key_Delete);
    QCOMPARE(requests.size(), 1);
}

void tst_FixtureTable::barsFollowTheLight()
{
    const QChar red('R');
    QCOMPARE(barPixels(0, red), 0);
    m_patch->setLive(m_patch->idsOf({0}), TrelColor("#800000")); // as a fade does on its way
    const int dim = barPixels(0, red);
    QVERIFY(dim > 0);
    m_patch->assign({0}, {{TrelColor("#ff0000"), QString()}}, false);
    QVERIFY(barPixels(0, red) > dim);
    QCOMPARE(barPixels(1, red), 0);
    m_undo->undo();
    QCOMPARE(barPixels(0, red), 0);
}

void tst_FixtureTable::tabLeavesTheTable()
{
    QWidget window;
    auto *before = new QLineEdit;
    auto *table = new FixtureTable(m_patch.get());
    auto *after = new QLineEdit;
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(before);
    layout->addWidget(table);
    layout->addWidget(after);
    QVERIFY(PaneTest::present(window, QSize(800, 300)));
    before->setFocus();
    QTest::keyClick(before, Qt::Key_Tab);
    QVERIFY(table->hasFocus());
    table->setCurrentIndex(m_patch->index(0, Patch::NameColumn));
    QTest::keyClick(table, Qt::Key_Tab);
    QVERIFY(after->hasFocus());
    QTest::keyClick(after, Qt::Key_Backtab);
    QVERIFY(table->hasFocus());
    table->setCurrentIndex(m_patch->index(2, Patch::ModeColumn));
    QTest::keyClick(table, Qt::Key_Backtab);
    QVERIFY(before->hasFocus());
}

void tst_FixtureTable::pictures()
{
    const QVector<PatchColor> colors = {{TrelColor("aYxy;1;0;65535;0.8;0.4476;0.4075"), QString()},
                                        {TrelColor("#00c8a0"), QString()},
                                        {TrelColor("#8f2bd8"), QString()},
                                        {TrelColor("aYxy;1;0;65535;1;0.3127;0.329"), QString()}};
    m_patch->assign({0, 1, 2, 3}, colors, false);
    m_table->fitColumns();
    m_table->selectRows({2});
    QVERIFY(PaneTest::takePictures(*m_table, "table"));
    QVERIFY(m_patch->setValues({1}, Patch::AddressColumn, 3)); // among the slots of the first one
    m_table->resize(420, 300);
    beginEditing(3, Patch::AddressColumn);
    QVERIFY(editor<QSpinBox>());
    QVERIFY(PaneTest::takePictures(*m_table, "table-narrow"));
}

PANE_TEST_MAIN(tst_FixtureTable)

#include "tst_FixtureTable.moc"
