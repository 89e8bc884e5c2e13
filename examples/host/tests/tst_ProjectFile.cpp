#include "PaneTest.h"
#include "ProjectFile.h"
#include "ProjectSwatches.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

#include <csignal>

#include <sys/resource.h>

namespace {

/// As long as it lives, no file grows beyond so many bytes: a disk that is full in the middle of a write.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_handlerBefore(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }

    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handlerBefore);
    }

private:
    void (*m_handlerBefore)(int);
    rlimit m_before{};
};

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

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
    void tellsHowFarItIs();
    void saysWhyAFileCannotBeRead();
    void keepsTheOldFileWhereItCannotWrite();
    void keepsTheOldFileWhereWritingEndsHalfWay_data();
    void keepsTheOldFileWhereWritingEndsHalfWay();

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
    const auto project = [](const QByteArray &line2) {
        return QByteArray("<TrelProject>\n") + line2 + "\n</TrelProject>";
    };
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
    const auto colors = [&project](const char *uid, const char *other) {
        const QByteArray value = "value=\"aRgb;1;0;#ffffffff93932929\"/>";
        return project("<ColorLibrary name=\"Project Swatches\">\n<Color name=\"A\" " + QByteArray(uid) + value
                       + "\n<Color name=\"B\" " + QByteArray(other) + value + "</ColorLibrary>");
    };
    QTest::newRow("colour without uid") << colors("", "uid=\"{1}\" ") << "uid" << 3;
    QTest::newRow("uid without braces") << colors("uid=\"{1}\" ", "uid=\"warm\" ") << "warm" << 4;
    QTest::newRow("uid twice") << colors("uid=\"{1}\" ", "uid=\"{1}\" ") << "{1}" << 4;
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

void tst_ProjectFile::tellsHowFarItIs()
{
    QVector<Fixture> many(1000, fixtures().first());
    ProjectFile::Fault fault;
    QVector<int> reports;
    const auto content = ProjectFile::parse(ProjectFile::documentOf(many), fault, [&reports](int done, int total) {
        reports.append(done);
        QCOMPARE(total, 1000);
    });
    QVERIFY2(content, qPrintable(fault.reason));
    QVERIFY(reports.size() > 2);
    QVERIFY(std::is_sorted(reports.cbegin(), reports.cend()));
    QCOMPARE(reports.last(), 1000);
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

void tst_ProjectFile::keepsTheOldFileWhereWritingEndsHalfWay_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("at the end, when the buffer is written") << 2;
    QTest::newRow("on the way, since it is more than a buffer holds") << 300;
}

void tst_ProjectFile::keepsTheOldFileWhereWritingEndsHalfWay()
{
    QFETCH(int, count);
    const QTemporaryDir folder;
    const QString path = folder.filePath("show.trelproject");
    const Fixture fixture = fixtures().first();
    const QVector<Fixture> more(count, fixture);
    ProjectFile::Fault fault;
    QVERIFY(ProjectFile::write(path, {fixture}, fault));
    const QByteArray before = bytesOf(path);
    bool isWritten = true;
    {
        const FileSizeLimit limit(64);
        isWritten = ProjectFile::write(path, more, fault);
    }
    QVERIFY(!isWritten);
    QVERIFY(!fault.reason.isEmpty());
    QCOMPARE(bytesOf(path), before);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList("show.trelproject"));
    QVERIFY(ProjectFile::write(path, more, fault)); // once there is room
    QCOMPARE(bytesOf(path), ProjectFile::documentOf(more));
}

PANE_TEST_MAIN(tst_ProjectFile)

#include "tst_ProjectFile.moc"
