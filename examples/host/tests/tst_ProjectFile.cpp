#include "PaneTest.h"
#include "ProjectFile.h"
#include "ProjectSwatches.h"

#include <QFile>
#include <QTemporaryDir>

class tst_ProjectFile : public TrelTest
{
    Q_OBJECT

protected:
    void tearDown() override;

private Q_SLOTS:
    void comesBackAsItWas();
    void isTheSameTextEveryTime();
    void keepsWhatNoColourUses();
    void leavesOutAnEmptySection();
    void saysWhereTheFaultIs_data();
    void saysWhereTheFaultIs();
    void aFaultyFileChangesNothing();
    void saysWhyAFileCannotBeRead();
    void keepsTheOldFileWhereItCannotWrite();

private:
    static QVector<Fixture> fixtures();
};

void tst_ProjectFile::tearDown()
{
    TrelColorLibrary::cleanup();
}

QVector<Fixture> tst_ProjectFile::fixtures()
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    Fixture wash = Fixture::withDefaults(ColorUtils::WASHLINE_PZ6_RGBW);
    wash.name = QStringLiteral("Wash “links” <1> & ü 漢");
    wash.resolution = 2;
    wash.curve = 2;
    wash.onboardCurve = 0;
    wash.universe = 65535;
    wash.address = 505;
    wash.isCalibrated = false;
    wash.color = TrelColor("aYxy;1;0;65535;0.5;0.4476;0.4075");
    wash.uid = library->createColorWithName(wash.color, "Warm, very", QString(), ProjectSwatches::listId(), "v1");
    Fixture beam = Fixture::withDefaults(ColorUtils::STRAND_BEAM_KVX);
    beam.name = QStringLiteral("Beam");
    beam.setMode(ColorUtils::RGBAW_IN_OUT);
    beam.color = TrelColor("aNchannel;2;1;65535;1;2;3;4;5;0");
    return {wash, beam};
}

void tst_ProjectFile::comesBackAsItWas()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("show.trelproject");
    const QVector<Fixture> before = fixtures();
    ProjectFile::Fault fault;
    QVERIFY(ProjectFile::write(path, before, fault));
    TrelColorLibrary::Instance()->clear(ProjectSwatches::listId());

    std::optional<ProjectFile::Content> content = ProjectFile::read(path, fault);
    QVERIFY2(content, qPrintable(fault.reason));
    QCOMPARE(int(content->fixtures.size()), 2);
    for (int i = 0; i < 2; ++i)
        QVERIFY(content->fixtures.at(i) == before.at(i));
    QVERIFY(!TrelColorLibrary::Instance()->containsUid(before.first().uid)); // reading alone changes nothing
    QVERIFY(ProjectFile::adoptColors(*content, fault));
    QCOMPARE(TrelColorLibrary::Instance()->pathOfUid(before.first().uid), QString("Project Swatches/Warm, very"));
}

void tst_ProjectFile::isTheSameTextEveryTime()
{
    const QVector<Fixture> before = fixtures();
    const QByteArray text = ProjectFile::documentOf(before);
    ProjectFile::Fault fault;
    std::optional<ProjectFile::Content> content = ProjectFile::parse(text, fault);
    QVERIFY2(content, qPrintable(fault.reason));
    QVERIFY(ProjectFile::adoptColors(*content, fault));
    QCOMPARE(ProjectFile::documentOf(content->fixtures), text);
    QVERIFY(text.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<TrelProject version=\"1.0\">\n"));
}

void tst_ProjectFile::keepsWhatNoColourUses()
{
    TrelColorLibrary::Instance()->createColor(TrelColor("red"), QString(), ProjectSwatches::listId(), QString(),
                                              QString());
    QVERIFY(ProjectFile::documentOf({}).contains("<Color name=\"Color\""));
}

void tst_ProjectFile::leavesOutAnEmptySection()
{
    const QByteArray text = ProjectFile::documentOf({});
    QVERIFY(!text.contains("ColorLibrary"));
    TrelColorLibrary::Instance()->createColor(TrelColor("red"), QString(), ProjectSwatches::listId(), QString(),
                                              QString());
    ProjectFile::Fault fault;
    std::optional<ProjectFile::Content> content = ProjectFile::parse(text, fault);
    QVERIFY(content && ProjectFile::adoptColors(*content, fault));
    QVERIFY(TrelColorLibrary::Instance()->getColorUids(ProjectSwatches::listId()).isEmpty()); // of the project before
}

void tst_ProjectFile::saysWhereTheFaultIs_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<int>("line");
    const auto patch = [](const char *line3) {
        return QByteArray("<TrelProject version=\"1.0\">\n<Patch>\n") + line3 + "\n</Patch>\n</TrelProject>\n";
    };
    const auto project = [](const char *line2) { return QByteArray("<TrelProject>\n") + line2 + "\n</TrelProject>"; };
    QByteArray deep;
    for (int i = 0; i < 100; ++i)
        deep += "<a>\n";
    QTest::newRow("empty") << QByteArray() << "" << 1;
    QTest::newRow("cut off") << QByteArray("<TrelProject>\n<Patch>\n") << "" << 3;
    QTest::newRow("mismatched tags") << QByteArray("<TrelProject>\n<Patch>\n</Match>") << "" << 3;
    QTest::newRow("entities") << QByteArray("<!DOCTYPE a [\n<!ENTITY b \"c\">\n]>\n<TrelProject/>") << "type" << 3;
    QTest::newRow("deep") << deep << "deep" << 65;
    QTest::newRow("other document") << QByteArray("\n<svg/>") << "svg" << 2;
    QTest::newRow("newer version") << QByteArray("<TrelProject version=\"2\"/>") << "newer" << 1;
    QTest::newRow("no number") << patch("<Fixture name=\"A\" address=\"one\"/>") << "one" << 3;
    QTest::newRow("address 0") << patch("<Fixture name=\"A\" address=\"0\"/>") << "512" << 3;
    QTest::newRow("beyond the universe") << patch("<Fixture name=\"A\" address=\"511\"/>") << "513" << 3;
    QTest::newRow("unknown profile") << patch("<Fixture name=\"A\" profile=\"10\"/>") << "profile" << 3;
    QTest::newRow("mode of another profile")
        << patch("<Fixture name=\"A\" profile=\"7\" mode=\"2\"/>") << "mode 2" << 3;
    QTest::newRow("huge number") << patch("<Fixture name=\"A\" curve=\"99999999999\"/>") << "curve" << 3;
    QTest::newRow("no name") << patch("<Fixture/>") << "name" << 3;
    QTest::newRow("no colour") << patch("<Fixture name=\"A\" color=\"{1}tea\"/>") << "tea" << 3;
    QTest::newRow("empty list") << project("<ColorLibrary name=\"Project Swatches\"/>") << "empty" << 2;
    QTest::newRow("colour without value") << project("<ColorLibrary><Color name=\"A\"/></ColorLibrary>") << "" << 2;
}

void tst_ProjectFile::saysWhereTheFaultIs()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, reason);
    if (text.contains("tea"))
        expectWarning("TrelColor::setNamedColor: Unknown color name 'tea'");
    ProjectFile::Fault fault;
    QVERIFY(!ProjectFile::parse(text, fault));
    QTEST(fault.line, "line");
    QVERIFY(!fault.reason.isEmpty());
    QVERIFY2(fault.reason.contains(reason), qPrintable(fault.reason));
}

void tst_ProjectFile::aFaultyFileChangesNothing()
{
    const QByteArray before = ProjectFile::documentOf(fixtures());
    QByteArray damaged = before;
    damaged.replace("address=\"1\"", "address=\"1000\"");
    QVERIFY(damaged != before);
    ProjectFile::Fault fault;
    QVERIFY(!ProjectFile::parse(damaged, fault));
    const QVector<Fixture> none;
    QVERIFY(ProjectFile::documentOf(none).contains("Warm, very"));
}

void tst_ProjectFile::saysWhyAFileCannotBeRead()
{
    const QTemporaryDir folder;
    ProjectFile::Fault fault;
    QVERIFY(!ProjectFile::read(folder.filePath("missing"), fault));
    QVERIFY(!fault.reason.isEmpty());
    QCOMPARE(fault.line, 0);
    fault = {};
    QVERIFY(!ProjectFile::read(folder.path(), fault));
    QVERIFY(!fault.reason.isEmpty());
    QFile large(folder.filePath("large"));
    QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(65 * 1024 * 1024));
    fault = {};
    QVERIFY(!ProjectFile::read(large.fileName(), fault));
    QVERIFY(fault.reason.contains("large"));
}

void tst_ProjectFile::keepsTheOldFileWhereItCannotWrite()
{
    const QTemporaryDir folder;
    ProjectFile::Fault fault;
    QVERIFY(!ProjectFile::write(folder.filePath("no/such/folder/show"), {}, fault));
    QVERIFY(!fault.reason.isEmpty());
    QVERIFY(!ProjectFile::write(folder.path(), {}, fault));
    QVERIFY(QFileInfo(folder.path()).isDir());
}

PANE_TEST_MAIN(tst_ProjectFile)

#include "tst_ProjectFile.moc"
