#include "PaneTest.h"
#include "Patch.h"
#include "ProjectFile.h"
#include "ProjectSwatches.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QUndoStack>

#include <optional>

class tst_Patch : public TrelTest
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override;

private Q_SLOTS:
    void addsAndRemovesWithUndo();
    void refusesWhatDoesNotFit_data();
    void refusesWhatDoesNotFit();
    void editsACellWithUndo_data();
    void editsACellWithUndo();
    void aProfileBringsItsDefaults();
    void editsManyRowsInOneStep();
    void offersWhatACellCanTake();
    void calibrationIsFixedWhereTheModeLeavesNoChoice();
    void aModeThatOneFixtureLacksChangesNone();
    void fixturesOfAllKindsKeepTheirSlots();
    void aRefusedModeLeavesAProjectThatCanBeRead();
    void refusesCalibrationWithoutAChoice();
    void refusesToAddAModeThatTheProfileLacks();
    void duplicatesAtFreePlaces();
    void duplicatesNothingWhereThereIsNoRoom();
    void findsFreeAddresses();
    void assignsColors();
    void mergesColorsOfOneGesture();
    void showsLiveColorsWithoutChangingItsOwn();
    void makesFrames();
    void showsOverlaps();
    void followsItsSwatch();
    void exposedSwatchesComeAndGoWithUndo();
    void exposesBesideACopyInAnotherList();
    void namesHoldWhatFilesHold();
    void resetForgetsTheSteps();

private:
    int add(const QString &name, ColorUtils::HuelockProfileID profile, int universe, int address);
    void addOneOfEachKind();
    QVariant shown(int row, Patch::Column column, int role = Qt::DisplayRole) const;

    std::unique_ptr<QUndoStack> m_undo;
    std::unique_ptr<Patch> m_patch;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void tst_Patch::setUp()
{
    m_undo = std::make_unique<QUndoStack>();
    m_patch = std::make_unique<Patch>(m_undo.get());
    m_tester = std::make_unique<QAbstractItemModelTester>(m_patch.get(),
                                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void tst_Patch::tearDown()
{
    m_undo->clear();
    m_tester.reset();
    m_patch.reset();
    TrelColorLibrary::cleanup();
}

int tst_Patch::add(const QString &name, ColorUtils::HuelockProfileID profile, int universe, int address)
{
    Fixture fixture = Fixture::withDefaults(profile);
    fixture.name = name;
    fixture.universe = universe;
    fixture.address = address;
    return m_patch->add({fixture}) ? m_patch->rowCount() - 1 : -1;
}

/// A wash, which can be driven as RGBW but is not, and two fixtures that cannot.
void tst_Patch::addOneOfEachKind()
{
    add("Wash", ColorUtils::WASHLINE_PZ6_RGBW, 1, 1);
    add("Pixel", ColorUtils::GENERIC_RGB, 1, 5);
    add("House", ColorUtils::GENERIC_SINGLE_CHANNEL, 1, 8);
    QVERIFY(m_patch->setValues({0}, Patch::ModeColumn, int(ColorUtils::RGB_IN_RGBW_OUT)));
}

QVariant tst_Patch::shown(int row, Patch::Column column, int role) const
{
    return m_patch->index(row, column).data(role);
}

void tst_Patch::addsAndRemovesWithUndo()
{
    add("One", ColorUtils::GENERIC_RGB, 1, 1);
    add("Two", ColorUtils::GENERIC_RGB, 1, 4);
    add("Three", ColorUtils::GENERIC_RGB, 1, 7);
    const QVector<quint32> ids = m_patch->idsOf({0, 1, 2});
    m_patch->remove({0, 2});
    QCOMPARE(m_patch->rowCount(), 1);
    QCOMPARE(shown(0, Patch::NameColumn).toString(), QString("Two"));
    QCOMPARE(m_patch->rowOf(ids.at(0)), -1);
    m_undo->undo();
    QCOMPARE(m_patch->idsOf({0, 1, 2}), ids); // at their places, as they were
    m_undo->undo();
    QCOMPARE(m_patch->rowCount(), 2);
    m_undo->redo();
    m_undo->redo();
    QCOMPARE(m_patch->idsOf({0}), ids.mid(1, 1));
}

void tst_Patch::refusesWhatDoesNotFit_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("slot 0") << int(Patch::AddressColumn) << QVariant(0);
    QTest::newRow("beyond the end") << int(Patch::AddressColumn) << QVariant(510);
    QTest::newRow("negative universe") << int(Patch::UniverseColumn) << QVariant(-1);
    QTest::newRow("universe too high") << int(Patch::UniverseColumn) << QVariant(65536);
    QTest::newRow("no name") << int(Patch::NameColumn) << QVariant("  ");
    QTest::newRow("resolution that needs more slots") << int(Patch::ResolutionColumn) << QVariant(2);
}

void tst_Patch::refusesWhatDoesNotFit()
{
    QFETCH(int, column);
    QFETCH(QVariant, value);
    add("Wash", ColorUtils::WASHLINE_PZ6_RGBW, 1, 509);
    const Fixture before = m_patch->fixtures().first();
    QSignalSpy refusals(m_patch.get(), &Patch::refused);
    const int steps = m_undo->count();
    QVERIFY(!m_patch->setData(m_patch->index(0, column), value, Qt::EditRole));
    QCOMPARE(refusals.size(), 1);
    QVERIFY(!refusals.first().first().toString().isEmpty());
    QVERIFY(m_patch->fixtures().first() == before);
    QCOMPARE(m_undo->count(), steps);
}

void tst_Patch::editsACellWithUndo_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("name") << int(Patch::NameColumn) << QVariant(" Front   left ") << "Front left";
    QTest::newRow("universe") << int(Patch::UniverseColumn) << QVariant(0) << "0";
    QTest::newRow("address") << int(Patch::AddressColumn) << QVariant(509) << "509";
    QTest::newRow("mode") << int(Patch::ModeColumn) << QVariant(int(ColorUtils::RGB_IN_RGBW_OUT))
                          << "RGB In / RGBW Out";
    QTest::newRow("calibration") << int(Patch::CalibrationColumn) << QVariant(0) << "Off";
    QTest::newRow("resolution") << int(Patch::ResolutionColumn) << QVariant(2) << "16 bit";
    QTest::newRow("curve") << int(Patch::CurveColumn) << QVariant(2) << "Tungsten/Incandescent";
    QTest::newRow("on-board curve") << int(Patch::OnboardCurveColumn) << QVariant(0) << "Linear (Default)";
}

void tst_Patch::editsACellWithUndo()
{
    QFETCH(int, column);
    QFETCH(QVariant, value);
    add("Wash", ColorUtils::WASHLINE_PZ6_RGBW, 1, 1);
    const QString before = shown(0, Patch::Column(column)).toString();
    QVERIFY(m_patch->index(0, column).flags() & Qt::ItemIsEditable);
    QVERIFY(m_patch->setData(m_patch->index(0, column), value, Qt::EditRole));
    QTEST(shown(0, Patch::Column(column)).toString(), "text");
    m_undo->undo();
    QCOMPARE(shown(0, Patch::Column(column)).toString(), before);
    m_undo->redo();
    QTEST(shown(0, Patch::Column(column)).toString(), "text");
    const int steps = m_undo->count();
    QVERIFY(m_patch->setData(m_patch->index(0, column), value, Qt::EditRole));
    QCOMPARE(m_undo->count(), steps); // nothing to undo
}

void tst_Patch::aProfileBringsItsDefaults()
{
    add("Wash", ColorUtils::WASHLINE_PZ6_RGBW, 1, 1);
    QVERIFY(m_patch->setValues({0}, Patch::ProfileColumn, int(ColorUtils::TESSEL_COVELINE)));
    QCOMPARE(shown(0, Patch::ModeColumn).toString(), QString("RGB In / RGBWW Out"));
    QCOMPARE(shown(0, Patch::OutputColumn, Patch::LettersRole).toString(), QString("RGBWW"));
    m_undo->undo();
    QCOMPARE(shown(0, Patch::ModeColumn).toString(), QString("RGBW In/Out"));
}

void tst_Patch::editsManyRowsInOneStep()
{
    for (int i = 0; i < 3; ++i)
        add(QString::number(i), ColorUtils::GENERIC_RGB, 1, 1 + 3 * i);
    const int steps = m_undo->count();
    QVERIFY(m_patch->setValues({0, 2}, Patch::UniverseColumn, 4));
    QCOMPARE(m_undo->count(), steps + 1);
    QCOMPARE(m_patch->universes(), (QVector<int>{1, 4}));
    m_undo->undo();
    QCOMPARE(m_patch->universes(), QVector<int>{1});
    QVERIFY(!m_patch->setValues({0, 1, 2}, Patch::ColorColumn, "red"));
}

void tst_Patch::offersWhatACellCanTake()
{
    add("Wash", ColorUtils::WASHLINE_PZ6_RGBW, 1, 1);
    QCOMPARE(int(m_patch->choices(m_patch->index(0, Patch::ProfileColumn)).size()), 10);
    const QVector<Patch::Choice> modes = m_patch->choices(m_patch->index(0, Patch::ModeColumn));
    QCOMPARE(int(modes.size()), 3);
    QCOMPARE(modes.at(1).value, int(ColorUtils::RGB_IN_RGBW_OUT));
    QCOMPARE(int(m_patch->choices(m_patch->index(0, Patch::CurveColumn)).size()), 3);
    QVERIFY(m_patch->choices(m_patch->index(0, Patch::AddressColumn)).isEmpty());
}

void tst_Patch::calibrationIsFixedWhereTheModeLeavesNoChoice()
{
    add("Beam", ColorUtils::STRAND_BEAM_KVX, 1, 1);
    QVERIFY(!(m_patch->index(0, Patch::CalibrationColumn).flags() & Qt::ItemIsEditable));
    m_patch->setValues({0}, Patch::ModeColumn, int(ColorUtils::RGB_IN_OUT));
    QVERIFY(m_patch->index(0, Patch::CalibrationColumn).flags() & Qt::ItemIsEditable);
    QVERIFY(!(m_patch->index(0, Patch::BytesColumn).flags() & Qt::ItemIsEditable));
}

void tst_Patch::aModeThatOneFixtureLacksChangesNone()
{
    addOneOfEachKind();
    const QVector<Fixture> before = m_patch->fixtures();
    const int steps = m_undo->count();
    QSignalSpy refusals(m_patch.get(), &Patch::refused);
    QVERIFY(!m_patch->setValues({0, 1, 2}, Patch::ModeColumn, int(ColorUtils::RGBW_IN_OUT)));
    QCOMPARE(refusals.size(), 1);
    QCOMPARE(refusals.first().first().toString(), QString("The profile of “Pixel” does not offer that."));
    QVERIFY(m_patch->fixtures() == before);
    QCOMPARE(m_undo->count(), steps);
    QVERIFY(m_patch->setValues({0}, Patch::ModeColumn, int(ColorUtils::RGBW_IN_OUT))); // alone, the wash takes it
    QCOMPARE(refusals.size(), 1);
}

void tst_Patch::fixturesOfAllKindsKeepTheirSlots()
{
    addOneOfEachKind();
    m_patch->setValues({0, 1, 2}, Patch::ModeColumn, int(ColorUtils::RGBW_IN_OUT));
    m_patch->assign({0, 1, 2}, {{TrelColor("aYxy;1;0;65535;0.5;0.3127;0.329"), QString()}}, false);
    const int slotsOf[] = {4, 3, 1};
    for (int row = 0; row < 3; ++row)
        QCOMPARE(int(shown(row, Patch::BytesColumn).toString().split(' ').size()), slotsOf[row]);
}

void tst_Patch::aRefusedModeLeavesAProjectThatCanBeRead()
{
    addOneOfEachKind();
    m_patch->setValues({0, 1, 2}, Patch::ModeColumn, int(ColorUtils::RGBW_IN_OUT));
    m_patch->assign({0, 1, 2}, {{TrelColor("aYxy;1;0;65535;0.5;0.3127;0.329"), QString()}}, false);
    ProjectFile::Fault fault;
    const std::optional<ProjectFile::Content> content =
        ProjectFile::parse(ProjectFile::documentOf(m_patch->fixtures()), fault);
    QVERIFY2(content, qPrintable(fault.reason));
    QVERIFY(content->fixtures == m_patch->fixtures());
}

void tst_Patch::refusesCalibrationWithoutAChoice()
{
    addOneOfEachKind();
    QVERIFY(m_patch->setValues({0}, Patch::ModeColumn, int(ColorUtils::RGBW_IN_OUT))); // in which there is one
    const QVector<Fixture> before = m_patch->fixtures();
    QVERIFY(before.first().isCalibrated);
    const int steps = m_undo->count();
    QSignalSpy refusals(m_patch.get(), &Patch::refused);
    QVERIFY(!m_patch->setValues({0, 2}, Patch::CalibrationColumn, int(false)));
    QVERIFY(!m_patch->setData(m_patch->index(2, Patch::CalibrationColumn), int(true), Qt::EditRole));
    QCOMPARE(refusals.size(), 2);
    for (const QList<QVariant> &refusal : qAsConst(refusals))
        QCOMPARE(refusal.first().toString(), QString("The profile of “House” does not offer that."));
    QVERIFY(m_patch->fixtures() == before);
    QCOMPARE(m_undo->count(), steps);
}

void tst_Patch::refusesToAddAModeThatTheProfileLacks()
{
    Fixture wash = Fixture::withDefaults(ColorUtils::WASHLINE_PZ6_RGBW);
    wash.name = QStringLiteral("Wash");
    Fixture house = Fixture::withDefaults(ColorUtils::GENERIC_SINGLE_CHANNEL);
    house.name = QStringLiteral("House");
    house.address = 5;
    house.mode = ColorUtils::RGBW_IN_OUT;
    QSignalSpy refusals(m_patch.get(), &Patch::refused);
    QVERIFY(!m_patch->add({wash, house}));
    QCOMPARE(refusals.size(), 1);
    QCOMPARE(refusals.first().first().toString(), QString("The profile of “House” has no mode 2."));
    QCOMPARE(m_patch->rowCount(), 0);
    QCOMPARE(m_undo->count(), 0);
}

void tst_Patch::duplicatesAtFreePlaces()
{
    add("Pixel", ColorUtils::PIXELNODE_RGB_CLASS, 1, 1);
    add("Other", ColorUtils::GENERIC_RGB, 1, 4);
    const int steps = m_undo->count();
    m_patch->duplicate({0, 1});
    QCOMPARE(m_undo->count(), steps + 1);
    QCOMPARE(shown(2, Patch::NameColumn).toString(), QString("Pixel 2"));
    QCOMPARE(shown(2, Patch::AddressColumn).toInt(), 7);
    QCOMPARE(shown(3, Patch::AddressColumn).toInt(), 10);
    m_undo->undo();
    QCOMPARE(m_patch->rowCount(), 2);
}

void tst_Patch::duplicatesNothingWhereThereIsNoRoom()
{
    QVector<Fixture> fixtures;
    for (int i = 0; i < 51; ++i) {
        Fixture fixture = Fixture::withDefaults(ColorUtils::STRAND_BEAM_KVX);
        fixture.name = QString::number(i);
        fixture.resolution = 2;
        fixture.address = 1 + 10 * i;
        fixtures.append(fixture);
    }
    QVERIFY(m_patch->add(fixtures));
    QSignalSpy refusals(m_patch.get(), &Patch::refused);
    m_patch->duplicate({0});
    QCOMPARE(refusals.size(), 1);
    QCOMPARE(m_patch->rowCount(), 51);
    QCOMPARE(m_undo->count(), 1);
}

void tst_Patch::findsFreeAddresses()
{
    QCOMPARE(m_patch->freeAddress(1, 512), 1);
    QCOMPARE(m_patch->freeAddress(1, 513), 0);
    add("One", ColorUtils::GENERIC_RGB, 1, 3);
    add("Two", ColorUtils::GENERIC_RGB, 1, 9);
    QCOMPARE(m_patch->freeAddress(1, 2), 1);
    QCOMPARE(m_patch->freeAddress(1, 3), 6);
    QCOMPARE(m_patch->freeAddress(1, 4), 12);
    QCOMPARE(m_patch->freeAddress(1, 502), 0);
    QCOMPARE(m_patch->freeAddress(2, 4), 1);
    QCOMPARE(m_patch->freeName("One"), QString("One 2"));
    QCOMPARE(m_patch->freeName("Three"), QString("Three"));
}

void tst_Patch::assignsColors()
{
    for (int i = 0; i < 3; ++i)
        add(QString::number(i), ColorUtils::GENERIC_RGB, 1, 1 + 3 * i);
    const int steps = m_undo->count();
    m_patch->assign({0, 1, 2}, {{TrelColor("red"), QString()}, {TrelColor("blue"), QString()}}, false);
    QCOMPARE(shown(0, Patch::BytesColumn).toString(), QString("255 0 0"));
    QCOMPARE(shown(1, Patch::BytesColumn).toString(), QString("0 0 255"));
    QCOMPARE(shown(2, Patch::BytesColumn).toString(), QString("0 0 255")); // the last colour goes on
    QCOMPARE(shown(0, Patch::BytesColumn, Qt::ToolTipRole).toString(), QString("Red: 255\nGreen: 0\nBlue: 0"));
    QCOMPARE(shown(0, Patch::ColorColumn, Patch::ShownColorRole).value<QColor>(), QColor(Qt::red));
    QCOMPARE(shown(0, Patch::OutputColumn, Patch::LevelsRole).value<QVector<double>>(),
             (QVector<double>{1.0, 0.0, 0.0}));
    QCOMPARE(m_undo->count(), steps + 1);
    m_undo->undo();
    QCOMPARE(shown(0, Patch::BytesColumn).toString(), QString("0 0 0"));
}

void tst_Patch::mergesColorsOfOneGesture()
{
    add("One", ColorUtils::GENERIC_RGB, 1, 1);
    const int steps = m_undo->count();
    for (int level = 1; level <= 5; ++level)
        m_patch->assign({0}, {{TrelColor::fromRgb8(level, 0, 0), QString()}}, true);
    QCOMPARE(m_undo->count(), steps + 1);
    m_patch->endMerging();
    m_patch->assign({0}, {{TrelColor::fromRgb8(9, 0, 0), QString()}}, true);
    QCOMPARE(m_undo->count(), steps + 2);
    m_undo->undo();
    QCOMPARE(shown(0, Patch::BytesColumn).toString(), QString("5 0 0"));
    m_undo->undo();
    QCOMPARE(shown(0, Patch::BytesColumn).toString(), QString("0 0 0"));
}

void tst_Patch::showsLiveColorsWithoutChangingItsOwn()
{
    add("One", ColorUtils::GENERIC_RGB, 1, 1);
    add("Two", ColorUtils::GENERIC_RGB, 1, 4);
    const int steps = m_undo->count();
    m_patch->setLive(m_patch->idsOf({0, 1}) << 99, TrelColor("#102030"));
    QCOMPARE(shown(0, Patch::BytesColumn).toString(), QString("16 32 48"));
    QCOMPARE(m_patch->frame(1).mid(3, 3), QByteArray("\x10\x20\x30", 3));
    QVERIFY(isSameColor(m_patch->fixtures().first().color, TrelColor("black")));
    m_patch->assign({1}, {{TrelColor("red"), QString()}}, false); // what is assigned counts
    QCOMPARE(shown(1, Patch::BytesColumn).toString(), QString("255 0 0"));
    QCOMPARE(m_undo->count(), steps + 1);
    m_patch->reset(m_patch->fixtures());
    QCOMPARE(shown(0, Patch::BytesColumn).toString(), QString("0 0 0"));
}

void tst_Patch::makesFrames()
{
    add("One", ColorUtils::GENERIC_RGB, 1, 510);
    m_patch->assign({0}, {{TrelColor("#010203"), QString()}}, false);
    QCOMPARE(m_patch->frame(1), QByteArray(509, '\0') + QByteArray("\1\2\3", 3));
    QCOMPARE(m_patch->frame(2), QByteArray(512, '\0'));
    m_patch->setValues({0}, Patch::UniverseColumn, 2);
    QCOMPARE(m_patch->frame(1), QByteArray(512, '\0'));
    QCOMPARE(m_patch->frame(2).right(3), QByteArray("\1\2\3", 3));
}

void tst_Patch::showsOverlaps()
{
    add("One", ColorUtils::GENERIC_RGB, 1, 1);
    add("Two", ColorUtils::GENERIC_RGB, 1, 4);
    QVERIFY(m_patch->faultOf(0).isEmpty());
    m_patch->setValues({1}, Patch::AddressColumn, 3);
    QVERIFY(m_patch->faultOf(0).contains("Two"));
    QVERIFY(shown(1, Patch::AddressColumn, Patch::FaultRole).toString().contains("One"));
    m_patch->assign({0, 1}, {{TrelColor("#010203"), QString()}, {TrelColor("#040506"), QString()}}, false);
    QCOMPARE(m_patch->frame(1).left(5), QByteArray("\1\2\4\5\6", 5));
    m_patch->setValues({1}, Patch::UniverseColumn, 2);
    QVERIFY(m_patch->faultOf(0).isEmpty());
}

void tst_Patch::followsItsSwatch()
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    const QString uid =
        library->createColor(TrelColor("red"), QString(), ProjectSwatches::listId(), QString(), QString());
    add("One", ColorUtils::GENERIC_RGB, 1, 1);
    m_patch->assign({0}, {{TrelColor("red"), uid}}, false);
    QVERIFY(library->set(uid, TrelColor("#000102")));
    QCOMPARE(shown(0, Patch::BytesColumn).toString(), QString("0 1 2"));
    QVERIFY(shown(0, Patch::ColorColumn, Qt::ToolTipRole).toString().startsWith(ProjectSwatches::listId()));
    m_undo->undo();
    QCOMPARE(shown(0, Patch::BytesColumn).toString(), QString("0 0 0"));
    m_undo->redo();
    QCOMPARE(shown(0, Patch::BytesColumn).toString(), QString("0 1 2")); // the swatch as it is now
    QVERIFY(library->remove(uid));
    QCOMPARE(shown(0, Patch::BytesColumn).toString(), QString("0 1 2"));
}

void tst_Patch::exposedSwatchesComeAndGoWithUndo()
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    library->createColorList("Mine", true);
    const QString source = library->createColorWithName(TrelColor("orange"), "Dawn", QString(), "Mine", "vendor 7");
    const QString uid = ProjectSwatches::expose(source, m_undo.get());
    QCOMPARE(library->getColorUids(ProjectSwatches::listId()), QStringList{uid});
    QCOMPARE(ProjectSwatches::expose(source, m_undo.get()), uid);
    QCOMPARE(m_undo->count(), 1);
    m_undo->undo();
    QVERIFY(library->getColorUids(ProjectSwatches::listId()).isEmpty());
    m_undo->redo();
    const QModelIndex copy = library->getIndexOfUid(uid);
    QCOMPARE(library->pathOfUid(uid), QString("Project Swatches/Dawn"));
    QCOMPARE(library->data(copy, TrelColorLibraryItem::OriginatingPresetRole).toString(), QString("Mine/Dawn"));
    QCOMPARE(library->data(copy, TrelColorLibraryItem::VendorIdRole).toString(), QString("vendor 7"));
    QVERIFY(isSameColor(library->get(uid), TrelColor("orange")));
    QCOMPARE(ProjectSwatches::expose("{unknown}", m_undo.get()), QString());
}

/// The library takes a copy in any list for the one that a project uses.
void tst_Patch::exposesBesideACopyInAnotherList()
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    library->createColorList("Mine", true);
    const QString source = library->createColorWithName(TrelColor("orange"), "Dawn", QString(), "Mine", QString());
    const QString copy = library->createNewSwatchUidFromUid(source, "Mine");
    QVERIFY(library->set(copy, TrelColor("blue")));
    const QString exposed = ProjectSwatches::expose(source, m_undo.get());
    QVERIFY(exposed != copy);
    QCOMPARE(library->pathOfUid(exposed), QString("Project Swatches/Dawn"));
    QVERIFY(isSameColor(library->get(exposed), TrelColor("orange")));
    const QString other = ProjectSwatches::expose(copy, m_undo.get());
    QCOMPARE(library->pathOfUid(other), QString("Project Swatches/Dawn 2"));
    QVERIFY(isSameColor(library->get(other), TrelColor("blue")));
    QCOMPARE(ProjectSwatches::exposed(source), exposed);
    QCOMPARE(ProjectSwatches::exposed(copy), other);
    QCOMPARE(ProjectSwatches::exposed(other), other);
    QVERIFY(library->set(exposed, TrelColor("green"))); // no longer what is seen in the list of the user's
    const QString again = ProjectSwatches::expose(source, m_undo.get());
    QVERIFY(isSameColor(library->get(again), TrelColor("orange")));
    QCOMPARE(ProjectSwatches::expose(source, m_undo.get()), again);
}

void tst_Patch::namesHoldWhatFilesHold()
{
    add("One", ColorUtils::GENERIC_RGB, 1, 1);
    QSignalSpy refusals(m_patch.get(), &Patch::refused);
    QVERIFY(!m_patch->setValues({0}, Patch::NameColumn, QString(QChar(1))));
    QCOMPARE(int(refusals.size()), 1);
    QVERIFY(m_patch->setValues({0}, Patch::NameColumn, QString("  Two%1  ").arg(QChar(1))));
    QCOMPARE(m_patch->fixtures().first().name, QString("Two"));
}

void tst_Patch::resetForgetsTheSteps()
{
    add("One", ColorUtils::GENERIC_RGB, 1, 1);
    QSignalSpy resets(m_patch.get(), &QAbstractItemModel::modelReset);
    m_patch->reset({});
    QCOMPARE(resets.size(), 1);
    QCOMPARE(m_patch->rowCount(), 0);
    QCOMPARE(m_undo->count(), 0);
    QVERIFY(m_undo->isClean());
}

PANE_TEST_MAIN(tst_Patch)

#include "tst_Patch.moc"
