#include "ColorUtils.h"
#include "HuelockProfileFactory.h"
#include "TestSupport.h"
#include "TrelColor.h"
#include "Tristimulus.h"
#include "TristimulusFactory.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTranslator>

#include <array>
#include <cstdio>
#include <optional>

namespace {

using Profile = ColorUtils::HuelockProfileID;

constexpr char NO_DATABASE[] = "could not open huelock profile database";

QByteArray hex(double value)
{
    std::array<char, 40> text{};
    const int length = std::snprintf(text.data(), text.size(), " %a", value);
    return QByteArray(text.data(), length);
}

QByteArray line(const QByteArray &title, const QVector<double> &values)
{
    QByteArray text = title;
    for (const double value : values)
        text += hex(value);
    return text + '\n';
}

QByteArray line(const QByteArray &title, const QString &text)
{
    return title + ' ' + text.toUtf8() + '\n';
}

template <typename Number>
QByteArray numbers(const QByteArray &title, const QVector<Number> &values)
{
    QByteArray text = title;
    for (const Number value : values)
        text += ' ' + QByteArray::number(int(value));
    return text + '\n';
}

QByteArray describeProfile(Profile id)
{
    const HueLockProfile *profile = HuelockProfileFactory::instance()->getProfile(id);
    QVector<int> modes{profile->getChannelConfiguration(), profile->getDefaultOnboardCurve(),
                       profile->getDefaultIOModeID()};
    for (const ColorUtils::IOModeID mode : profile->getAvailableIOModeIDs())
        modes << mode << profile->getDefaultIsHuelockEnabled(mode);
    return line("profile", profile->name()) + numbers("modes", modes)
           + line("listed as", ColorUtils::huelockProfileIDNameMap().value(id));
}

QByteArray describeGamut(const Tristimulus *data)
{
    QVector<double> points;
    QByteArray pattern = "inside ";
    for (int column = 0; column <= 12; ++column) {
        for (int row = 0; row <= 12; ++row) {
            const double wantedX = column / 13.0;
            const double wantedY = row / 13.0;
            double x = 0.0;
            double y = 0.0;
            data->closestPtOnGamut(wantedX, wantedY, x, y);
            points << x << y;
            pattern += data->inside(wantedX, wantedY) ? '1' : '0';
        }
    }
    return pattern + '\n' + line("closest", points);
}

QByteArray describeData(Profile id)
{
    Tristimulus *data = HuelockProfileFactory::instance()->getProfile(id)->getTristimulus();
    const auto configuration = ColorUtils::nChannelConfigurationForHuelockProfileID(id);
    const bool same = data == TristimulusFactory::getInstance()->getTristimulus(id, configuration);
    return line("data", QString(same ? "shared" : "apart")) + line("X", data->getX()) + line("Y", data->getY())
           + line("Z", data->getZ()) + line("names", data->getChannelNames().join(",")) + describeGamut(data);
}

QVector<double> yxy(const TrelColor &color)
{
    return {color.getY(), color.getx(), color.gety()};
}

QByteArray describeColors(Profile id)
{
    const auto configuration = ColorUtils::nChannelConfigurationForHuelockProfileID(id);
    const TrelColor rgb = TrelColor::fromRgbF(1.0, 0.5, 0.25, 1.0, id);
    const TrelColor hsv = TrelColor::fromHsvF(0.6, 0.5, 0.75, 1.0, id);
    const TrelColor chromaticity = TrelColor::fromxyY(0.4, 0.35, 0.5, id);
    QVector<unsigned int> levels;
    chromaticity.toNChannel16(configuration, id).getNChannel16(&levels);
    const QList<unsigned char> bytes = ColorUtils::updateBuffer(
        0, ColorUtils::defaultCurveTypeForHuelockProfileID(id), chromaticity, false,
        ColorUtils::configChannelCount(configuration), 1, ColorUtils::defaultIOModeIDForHuelockProfileID(id), id);
    return line("RGB as Yxy", yxy(rgb.toYxy())) + line("HSV as Yxy", yxy(hsv.toYxy())) + numbers("levels", levels)
           + numbers("bytes", QVector<unsigned char>(bytes.begin(), bytes.end())) + line("text", chromaticity.name());
}

QByteArray titleOf(int id)
{
    return "== " + QByteArray::number(id) + '\n';
}

void printDigest()
{
    QByteArray digest;
    for (int number = 0; number <= 9; ++number) {
        const Profile id = Profile(number);
        digest += titleOf(number) + describeProfile(id) + describeData(id) + describeColors(id);
    }
    std::fwrite(digest.constData(), 1, size_t(digest.size()), stdout);
}

class ChildApplication
{
private:
    int m_count = 1;
    char m_name[9] = "start-up";
    char *m_arguments[2] = {m_name, nullptr};
    QCoreApplication m_application{m_count, m_arguments};
};

void profilesFirst()
{
    HuelockProfileFactory::instance();
}

void profileNamesFirst()
{
    ColorUtils::huelockProfileIDNameMap();
}

void tristimuliFirst()
{
    TristimulusFactory::getInstance();
}

void borrowedTristimulusFirst()
{
    TristimulusFactory::getInstance()->getTristimulus(ColorUtils::GENERIC_RGB, ColorUtils::CONFIG_RGBAW);
}

void unknownTristimulusFirst()
{
    TristimulusFactory::getInstance()->getTristimulus(Profile(42), ColorUtils::CONFIG_RGBW);
}

void toYxyFirst()
{
    TrelColor::fromRgbF(1.0, 0.5, 0.25, 1.0, ColorUtils::FLOODBAR_KQ2_RGBW).toYxy();
}

void toLevelsFirst()
{
    TrelColor::fromxyY(0.3, 0.4, 0.5).toNChannel16(ColorUtils::CONFIG_RGBAW, ColorUtils::STRAND_BEAM_KVX);
}

void textFirst()
{
    TrelColor::fromxyY(0.3, 0.4, 0.5).name8();
}

enum Application { NoApplication, ApplicationBefore, ApplicationAfter };

template <void (*first)(), Application when>
void startUp()
{
    std::optional<ChildApplication> application;
    if (when == ApplicationBefore)
        application.emplace();
    first();
    if (when == ApplicationAfter)
        application.emplace();
    printDigest();
}

/// Notes every text that is translated, hence every object that is named.
class Recorder : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        if (qstrcmp(context, "QObject") == 0)
            m_texts.append(text);
        return QString();
    }

    bool isEmpty() const override
    {
        return false;
    }
    QList<QByteArray> texts() const
    {
        return m_texts;
    }

private:
    mutable QList<QByteArray> m_texts;
};

template <void (*first)()>
void recordNames()
{
    const ChildApplication application;
    Recorder recorder;
    QCoreApplication::installTranslator(&recorder);
    first();
    const QByteArray texts = recorder.texts().join('|');
    std::fwrite(texts.constData(), 1, size_t(texts.size()), stdout);
}

const QStringList ORDERS{"profiles first",
                         "profile names first",
                         "tristimuli first",
                         "borrowed tristimulus first",
                         "unknown tristimulus first",
                         "to Yxy first",
                         "to levels first",
                         "text first"};

#define BOTH(name, first)                                                                                              \
    {name, startUp<first, NoApplication>},                                                                             \
    {                                                                                                                  \
        name " with application", startUp<first, ApplicationBefore>                                                    \
    }

const ChildCases childCases{
    BOTH("profiles first", profilesFirst),
    BOTH("profile names first", profileNamesFirst),
    BOTH("tristimuli first", tristimuliFirst),
    BOTH("borrowed tristimulus first", borrowedTristimulusFirst),
    BOTH("unknown tristimulus first", unknownTristimulusFirst),
    BOTH("to Yxy first", toYxyFirst),
    BOTH("to levels first", toLevelsFirst),
    BOTH("text first", textFirst),
    {"application after profiles", startUp<profilesFirst, ApplicationAfter>},
    {"names of profiles first", recordNames<profilesFirst>},
    {"names of profile names first", recordNames<profileNamesFirst>},
    {"names of tristimuli first", recordNames<tristimuliFirst>},
    {"names of to Yxy first", recordNames<toYxyFirst>},
    {"names of to levels first", recordNames<toLevelsFirst>},
    {"names of text first", recordNames<textFirst>},
};

const char REFERENCE[] = "tristimuli first";

const QByteArray PIXELNODE = "<Profile name='PixelNode RGB' index='7'>"
                             "<Channel name='Rot' index='0' X='400.5' Y='200' Z='10'/>"
                             "<Channel name='Gruen' index='1' X='150' Y='500' Z='90'/>"
                             "<Channel name='Blau' index='2' X='140' Y='90' Z='700'/></Profile>";
const QByteArray COVELINE = "<Profile name='Tessel CoveLine' index='2'>"
                            "<Channel name='Red' index='0' X='520' Y='250' Z='10'/>"
                            "<Channel name='Green' index='1' X='188' Y='580' Z='63'/>"
                            "<Channel name='Blue' index='2' X='181' Y='98' Z='950'/>"
                            "<Channel name='Lime' index='3' X='319' Y='400' Z='134'/>"
                            "<Channel name='White' index='4' X='334' Y='338' Z='190'/></Profile>";
const QByteArray GENERIC = "<Profile name='Generic RGB' index='0'>"
                           "<Channel name='R' index='0' X='0.4' Y='0.25' Z='0.02'/>"
                           "<Channel name='G' index='1' X='0.35' Y='0.7' Z='0.1'/>"
                           "<Channel name='B' index='2' X='0.2' Y='0.05' Z='0.9'/></Profile>";

QByteArray dataLines(const QVector<double> &x, const QVector<double> &y, const QVector<double> &z, const QString &names)
{
    return "data shared\n" + line("X", x) + line("Y", y) + line("Z", z) + line("names", names);
}

const QByteArray PIXELNODE_BUILT_IN =
    dataLines({442.9544, 160.8801, 150}, {199, 504, 90}, {10.5046, 92.5591, 760}, "Red,Green,Blue");
const QByteArray PIXELNODE_REPLACED = dataLines({400.5, 150, 140}, {200, 500, 90}, {10, 90, 700}, "Rot,Gruen,Blau");
const QByteArray COVELINE_BUILT_IN = dataLines({510, 188, 181, 319, 334}, {250, 581, 98, 391, 338},
                                               {10, 63, 943, 134, 188}, "Red,Green,Blue,Mint,White");
const QByteArray COVELINE_REPLACED = dataLines({520, 188, 181, 319, 334}, {250, 580, 98, 400, 338},
                                               {10, 63, 950, 134, 190}, "Red,Green,Blue,Lime,White");
const QByteArray GENERIC_BUILT_IN = dataLines({0.4123152, 0.35765, 0.18025}, {0.2126, 0.7153, 0.0721},
                                              {0.0193273, 0.1192167, 0.9493167}, "Red,Green,Blue");
const QByteArray GENERIC_REPLACED = dataLines({0.4, 0.35, 0.2}, {0.25, 0.7, 0.05}, {0.02, 0.1, 0.9}, "R,G,B");

QByteArray section(const QByteArray &digest, int id)
{
    const int begin = int(digest.indexOf(titleOf(id)));
    if (begin < 0)
        return QByteArray();
    const int end = int(digest.indexOf("== ", begin + 1));
    return end < 0 ? digest.mid(begin) : digest.mid(begin, end - begin);
}

QList<QByteArray> messages(const ChildResult &result)
{
    QList<QByteArray> lines;
    for (const QByteArray &text : result.err.split('\n')) {
        if (!text.trimmed().isEmpty())
            lines.append(text.trimmed());
    }
    return lines;
}

} // namespace

class tst_StartUp : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void builtInData();
    void everythingIsMadeOnce_data();
    void everythingIsMadeOnce();
    void ordersWithoutDatabase_data();
    void ordersWithoutDatabase();
    void ordersWithDatabase_data();
    void ordersWithDatabase();
    void databaseNeedsAnApplication_data();
    void databaseNeedsAnApplication();
    void applicationThatComesLater();
    void databaseThatIsAFolder();
    void brokenDatabase_data();
    void brokenDatabase();
    void databaseOfUnknownProfiles();

private:
    void writeDatabase(const QByteArray &profiles);
    void removeDatabase();
    ChildResult run(const QString &name)
    {
        return runChild(name, m_program);
    }

    QTemporaryDir m_folder;
    QString m_program;
    QString m_database;
    QByteArray m_builtIn;
};

// The database lies one folder above the program's own: a copy of this program gets such a place for itself.
void tst_StartUp::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QVERIFY(QDir(m_folder.path()).mkdir("bin"));
    m_program = m_folder.filePath("bin/program");
    m_database = m_folder.filePath("FixtureProfiles.xml");
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), m_program));
    const ChildResult result = run(REFERENCE);
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
    m_builtIn = result.out;
    QCOMPARE(int(m_builtIn.count("== ")), 10);
}

void tst_StartUp::writeDatabase(const QByteArray &profiles)
{
    QFile file(m_database);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QVERIFY(file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Profiles>" + profiles + "</Profiles>\n") > 0);
}

void tst_StartUp::removeDatabase()
{
    QVERIFY(!QFile::exists(m_database) || QFile::remove(m_database));
}

void tst_StartUp::builtInData()
{
    QVERIFY(section(m_builtIn, 0).contains(GENERIC_BUILT_IN));
    QVERIFY(section(m_builtIn, 2).contains(COVELINE_BUILT_IN));
    QVERIFY(section(m_builtIn, 7).contains(PIXELNODE_BUILT_IN));
    QCOMPARE(int(m_builtIn.count("data shared\n")), 10);
}

void tst_StartUp::everythingIsMadeOnce_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : childCases.keys()) {
        if (name.startsWith("names of "))
            QTest::newRow(qPrintable(name)) << name;
    }
}

void tst_StartUp::everythingIsMadeOnce()
{
    QFETCH(QString, name);
    removeDatabase();
    const ChildResult result = run(name);
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
    // The registries call each other while they fill; neither may come to be twice, nor any of their objects.
    const QList<QByteArray> inOrder{"Generic RGB",       "Strand/Beam KVX",   "Tessel CoveLine",   "Generic RGBW",
                                    "Single Channel",    "WashLine PZ6 RGBA", "WashLine PZ6 RGBW", "FloodBar KQ2 RGBA",
                                    "FloodBar KQ2 RGBW", "PixelNode RGB"};
    const QList<QByteArray> texts = result.out.split('|');
    QList<QByteArray> made;
    for (const QByteArray &text : texts) {
        if (inOrder.contains(text))
            made.append(text);
    }
    QCOMPARE(made, inOrder);
    QCOMPARE(int(texts.count("Red")), 10);
}

static void addOrderRows(const QStringList &suffixes)
{
    QTest::addColumn<QString>("name");
    for (const QString &order : ORDERS) {
        for (const QString &suffix : suffixes)
            QTest::newRow(qPrintable(order + suffix)) << order + suffix;
    }
}

void tst_StartUp::ordersWithoutDatabase_data()
{
    addOrderRows({"", " with application"});
}

void tst_StartUp::ordersWithoutDatabase()
{
    QFETCH(QString, name);
    removeDatabase();
    const ChildResult result = run(name);
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
    QCOMPARE(messages(result), QList<QByteArray>{NO_DATABASE});
    QCOMPARE(result.out, m_builtIn);
}

void tst_StartUp::ordersWithDatabase_data()
{
    addOrderRows({" with application"});
}

void tst_StartUp::ordersWithDatabase()
{
    QFETCH(QString, name);
    writeDatabase(PIXELNODE + GENERIC + COVELINE);
    const ChildResult result = run(name);
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
    QCOMPARE(int(messages(result).size()), 9); // X, Y and Z of three profiles
    QVERIFY(section(result.out, 0).contains(GENERIC_REPLACED));
    QVERIFY(section(result.out, 2).contains(COVELINE_REPLACED));
    QVERIFY(section(result.out, 7).contains(PIXELNODE_REPLACED));
    QCOMPARE(int(result.out.count("data shared\n")), 10);
    QCOMPARE(result.out, run(QString(REFERENCE) + " with application").out);
}

void tst_StartUp::databaseNeedsAnApplication_data()
{
    addOrderRows({""});
}

void tst_StartUp::databaseNeedsAnApplication()
{
    QFETCH(QString, name);
    writeDatabase(PIXELNODE);
    const ChildResult result = run(name);
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
    QCOMPARE(messages(result), QList<QByteArray>{NO_DATABASE});
    QCOMPARE(result.out, m_builtIn);
}

void tst_StartUp::applicationThatComesLater()
{
    writeDatabase(PIXELNODE);
    const ChildResult result = run("application after profiles");
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
    QCOMPARE(messages(result), QList<QByteArray>{NO_DATABASE});
    QCOMPARE(result.out, m_builtIn);
}

void tst_StartUp::databaseThatIsAFolder()
{
    removeDatabase();
    QVERIFY(QDir().mkdir(m_database));
    const ChildResult result = run("tristimuli first with application");
    QVERIFY(QDir().rmdir(m_database));
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
    QCOMPARE(messages(result), QList<QByteArray>{NO_DATABASE});
    QCOMPARE(result.out, m_builtIn);
}

void tst_StartUp::brokenDatabase_data()
{
    addOrderRows({" with application"});
}

void tst_StartUp::brokenDatabase()
{
    QFETCH(QString, name);
    QByteArray unfinished = COVELINE;
    unfinished.chop(3);
    writeDatabase(PIXELNODE + unfinished);
    const ChildResult result = run(name);
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
    QCOMPARE(int(messages(result).size()), 3);
    QVERIFY(section(result.out, 7).contains(PIXELNODE_REPLACED));
    for (int id = 0; id <= 9; ++id)
        QCOMPARE(section(result.out, id) == section(m_builtIn, id), id != 7);
}

void tst_StartUp::databaseOfUnknownProfiles()
{
    QByteArray minusOne = PIXELNODE;
    QByteArray eleven = PIXELNODE;
    writeDatabase(minusOne.replace("index='7'", "index='-1'") + eleven.replace("index='7'", "index='11'"));
    const ChildResult result = run("profiles first with application");
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
    QCOMPARE(int(messages(result).size()), 4);
    QCOMPARE(messages(result).last(), QByteArray("invalid profile definition"));
    QCOMPARE(result.out, m_builtIn);
}

TREL_TEST_MAIN(tst_StartUp, childCases)
#include "tst_StartUp.moc"
