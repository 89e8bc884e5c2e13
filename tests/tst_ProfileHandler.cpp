#include "ColorUtils.h"
#include "HuelockProfileFactory.h"
#include "ProfileHandler.h"
#include "TestSupport.h"
#include "TrelColor.h"
#include "Tristimulus.h"
#include "TristimulusFactory.h"

#include <QBuffer>
#include <QTranslator>
#include <QXmlAttributes>

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

using Profile = ColorUtils::HuelockProfileID;
using Numbers = QVector<double>;

struct Data
{
    Numbers x;
    Numbers y;
    Numbers z;
    QStringList names;

    bool operator==(const Data &other) const
    {
        return x == other.x && y == other.y && z == other.z && names == other.names;
    }
};

Tristimulus *tristimulus(int profile)
{
    return TristimulusFactory::getInstance()->getTristimulus(Profile(profile), ColorUtils::CONFIG_RGB);
}

Data dataOf(int profile)
{
    Tristimulus *stored = tristimulus(profile);
    return {stored->getX(), stored->getY(), stored->getZ(), stored->getChannelNames()};
}

/// The registry is the process's: puts back what a test does to the profiles that a database can reach.
class Restorer
{
public:
    Restorer()
    {
        for (int profile = -1; profile <= 11; ++profile)
            m_before.insert(profile, dataOf(profile));
    }

    ~Restorer()
    {
        for (auto data = m_before.begin(); data != m_before.end(); ++data) {
            Tristimulus *stored = tristimulus(data.key());
            stored->setX(data->x);
            stored->setY(data->y);
            stored->setZ(data->z);
            stored->setChannelNames(data->names);
            stored->calculatePolygon();
        }
    }

    Restorer(const Restorer &) = delete;
    Restorer &operator=(const Restorer &) = delete;

    QList<int> changed() const
    {
        QList<int> profiles;
        for (auto data = m_before.begin(); data != m_before.end(); ++data) {
            if (!(dataOf(data.key()) == data.value()))
                profiles.append(data.key());
        }
        return profiles;
    }

private:
    QMap<int, Data> m_before;
};

/// Collects debug lines while it lives; other messages go on.
class DebugLog
{
public:
    DebugLog()
    {
        s_lines.clear();
        s_next = qInstallMessageHandler(handle);
    }

    ~DebugLog()
    {
        qInstallMessageHandler(s_next);
    }

    DebugLog(const DebugLog &) = delete;
    DebugLog &operator=(const DebugLog &) = delete;

    QStringList lines() const
    {
        return s_lines;
    }

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type == QtDebugMsg)
            s_lines.append(text.trimmed());
        else
            s_next(type, context, text);
    }

    static QStringList s_lines;
    static QtMessageHandler s_next;
};

QStringList DebugLog::s_lines;
QtMessageHandler DebugLog::s_next = nullptr;

bool parse(const QByteArray &document)
{
    QBuffer buffer;
    buffer.setData(document);
    buffer.open(QIODevice::ReadOnly);
    return TristimulusFactory::getInstance()->parseXML(&buffer);
}

QByteArray channel(int index, const QByteArray &name, double x)
{
    return "<Channel name=\"" + name + "\" index=\"" + QByteArray::number(index) + "\" X=\"" + QByteArray::number(x)
           + "\" Y=\"" + QByteArray::number(x + 1) + "\" Z=\"" + QByteArray::number(x + 2) + "\"/>";
}

QByteArray profile(int index, const QByteArray &channels)
{
    return "<Profile name=\"any\" index=\"" + QByteArray::number(index) + "\">" + channels + "</Profile>";
}

QByteArray profiles(const QByteArray &content)
{
    return "<Profiles>" + content + "</Profiles>";
}

// What channel() makes of the first values of its channels.
Data dataWith(const Numbers &x, const QStringList &names)
{
    Data data{x, x, x, names};
    for (double &value : data.y)
        value += 1;
    for (double &value : data.z)
        value += 2;
    return data;
}

const QByteArray ABC = channel(0, "A", 10) + channel(1, "B", 20) + channel(2, "C", 30);
const Data ABC_DATA{{10, 20, 30}, {11, 21, 31}, {12, 22, 32}, {"A", "B", "C"}};

QString debugText(const Numbers &values)
{
    QString text;
    QDebug(&text) << values;
    return text.trimmed();
}

/// A stream that goes on and on: \a head, then \a filler again and again up to a hundred million bytes.
class EndlessDevice : public QIODevice
{
public:
    EndlessDevice(const QByteArray &head, const QByteArray &filler)
        : m_head(head)
        , m_filler(filler)
    {
        open(QIODevice::ReadOnly);
    }

    bool isSequential() const override
    {
        return true;
    }
    qint64 delivered() const
    {
        return m_delivered;
    }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 count = qMin(size, END - m_delivered);
        for (qint64 i = 0; i < count; ++i)
            data[i] = at(m_delivered + i);
        m_delivered += count;
        return count;
    }

    qint64 writeData(const char *, qint64) override
    {
        return -1;
    }

private:
    static constexpr qint64 END = 100000000;

    char at(qint64 position) const
    {
        if (position < m_head.size())
            return m_head.at(int(position));
        return m_filler.at(int((position - m_head.size()) % m_filler.size()));
    }

    QByteArray m_head;
    QByteArray m_filler;
    qint64 m_delivered = 0;
};

/// Gives one byte at a time, and an error where the data end if told so.
class DrippingDevice : public QIODevice
{
public:
    DrippingDevice(const QByteArray &content, qint64 atEnd)
        : m_content(content)
        , m_atEnd(atEnd)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override
    {
        return true;
    }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        if (m_position == m_content.size())
            return m_atEnd;
        if (size < 1)
            return 0;
        *data = m_content.at(m_position++);
        return 1;
    }

    qint64 writeData(const char *, qint64) override
    {
        return -1;
    }

private:
    QByteArray m_content;
    qint64 m_atEnd;
    int m_position = 0;
};

class ShoutingTranslator : public QTranslator
{
public:
    QString translate(const char *, const char *text, const char *, int) const override
    {
        return QString::fromUtf8(text).toUpper();
    }

    bool isEmpty() const override
    {
        return false;
    }
};

void namesAsGiven()
{
    int count = 1;
    char name[] = "test";
    char *arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    ShoutingTranslator translator;
    QCoreApplication::installTranslator(&translator);
    parse(profiles(profile(7, channel(0, "Red", 1))));
    if (dataOf(7).names != QStringList("Red") || dataOf(8).names.value(0) != "RED")
        std::exit(1);
}

const ChildCases childCases{
    {"highest index first",
     [] { parse(profiles(profile(7, channel(2, "C", 3) + channel(1, "B", 2) + channel(0, "A", 1)))); }},
    {"gap", [] { parse(profiles(profile(7, channel(0, "A", 1) + channel(2, "C", 3)))); }},
    {"negative index", [] { parse(profiles(profile(7, channel(0, "A", 1) + channel(-1, "B", 2)))); }},
    {"smallest index", [] { parse(profiles(profile(7, channel(INT_MIN, "A", 1)))); }},
    {"largest index", [] { parse(profiles(profile(7, channel(INT_MAX, "A", 1)))); }},
    {"counted anew in each profile", [] { parse(profiles(profile(7, ABC) + profile(8, channel(3, "D", 40)))); }},
    {"outside before", [] { parse(profiles(channel(1, "A", 1))); }},
    {"outside after", [] { parse(profiles(profile(7, ABC) + channel(4, "E", 1))); }},
    {"names as given", namesAsGiven},
};

} // namespace

Q_DECLARE_METATYPE(Data)

class tst_ProfileHandler : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void ignores_data();
    void ignores();
    void reachableProfiles_data();
    void reachableProfiles();
    void indexOutOfRange_data();
    void indexOutOfRange();
    void fatalChannelIndex_data();
    void fatalChannelIndex();
    void debugLinesAreTheVectors();
    void dataKeepTheirPlace();
    void gamutFollows();
    void laterProfilesWin();
    void namesAreNotTranslated();
    void devices_data();
    void devices();
    void brokenAfterAProfile_data();
    void brokenAfterAProfile();
    void entityDeclarations_data();
    void entityDeclarations();
    void limits_data();
    void limits();
    void endlessDocuments_data();
    void endlessDocuments();
    void handlerAnswers();
    void handlerComparesTheQualifiedName();

    void odd47_nestingIsNotChecked();
    void odd48_profilesMinusOneAndTen();
};

void tst_ProfileHandler::reads_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("id");
    QTest::addColumn<Data>("expected");
    const auto row = [](const char *name, const QByteArray &document, const Data &expected, int id = 7) {
        QTest::newRow(name) << document << id << expected;
    };
    const auto oneChannel = [](const QByteArray &attributes) {
        return profiles(profile(7, "<Channel " + attributes + "/>"));
    };
    row("three channels", profiles(profile(7, ABC)), ABC_DATA);
    row("indexes 0, 0, 0 reverse the order",
        profiles(profile(7, channel(0, "A", 10) + channel(0, "B", 20) + channel(0, "C", 30))),
        dataWith({30, 20, 10}, {"C", "B", "A"}));
    row("inserted in the middle", profiles(profile(7, channel(0, "A", 10) + channel(1, "B", 20) + channel(1, "C", 30))),
        dataWith({10, 30, 20}, {"A", "C", "B"}));
    row("fewer channels than before", profiles(profile(1, channel(0, "A", 10))), dataWith({10}, {"A"}), 1);
    row("more channels than before", profiles(profile(7, ABC + channel(3, "D", 40))),
        dataWith({10, 20, 30, 40}, {"A", "B", "C", "D"}));
    row("no channels", profiles(profile(7, "")), Data());
    row("empty element", profiles("<Profile index=\"7\"/>"), Data());

    row("missing channel attributes", profiles(profile(7, "<Channel/>")), {{0}, {0}, {0}, {""}});
    row("missing X", oneChannel("Y='2' Z='3'"), {{0}, {2}, {3}, {""}});
    row("missing Y", oneChannel("X='1' Z='3'"), {{1}, {0}, {3}, {""}});
    row("missing Z", oneChannel("X='1' Y='2'"), {{1}, {2}, {0}, {""}});
    row("attributes in any order", oneChannel("Z='3' X='1' name='A' Y='2' index='0'"), {{1}, {2}, {3}, {"A"}});
    row("numbers with sign, fraction, exponent", oneChannel("X='-1.5' Y='2.5e3' Z='+1E-3'"),
        {{-1.5}, {2500}, {0.001}, {""}});
    row("texts that are no numbers", oneChannel("X='one' Y='1,5' Z='0x10' index='zero'"), {{0}, {0}, {0}, {""}});
    row("index with a fraction is 0", profiles(profile(7, channel(0, "A", 10) + "<Channel index='1.0' X='1'/>")),
        {{1, 10}, {0, 11}, {0, 12}, {"", "A"}});
    row("lower-case attributes are others", oneChannel("x='1' y='2' z='3' Name='A' Index='5'"), {{0}, {0}, {0}, {""}});
    row("full precision", oneChannel("X='490.1758' Y='0.1' Z='1.7976931348623157e308'"),
        {{490.1758}, {0.1}, {1.7976931348623157e308}, {""}});

    row("profile without index is 0", profiles("<Profile>" + ABC + "</Profile>"), ABC_DATA, 0);
    row("profile index that is no number is 0", profiles("<Profile index='seven'>" + ABC + "</Profile>"), ABC_DATA, 0);
    row("profile index in hexadecimal is 0", profiles("<Profile index='0x7'>" + ABC + "</Profile>"), ABC_DATA, 0);
    row("profile index beyond int is 0", profiles("<Profile index='4294967303'>" + ABC + "</Profile>"), ABC_DATA, 0);
    row("prefixed index attribute is another", profiles("<Profile xmlns:p='urn:x' p:index='7'>" + ABC + "</Profile>"),
        ABC_DATA, 0);
    row("profile without name", profiles("<Profile index='7'>" + ABC + "</Profile>"), ABC_DATA);

    row("text is ignored",
        profiles("text" + profile(7, "1" + channel(0, "A", 10) + "2<Channel index='1' X='1'>5</Channel>3") + "4"),
        {{10, 1}, {11, 0}, {12, 0}, {"A", ""}});
    row("comments, instructions, CDATA are ignored",
        profiles("<!-- <Profile index='8'/> --><?go on?>" + profile(7, "<![CDATA[<Channel/>]]>" + ABC)), ABC_DATA);
    row("unknown elements are ignored",
        profiles("<Fixture index='8'/>" + profile(7, "<channel index='3'/><Emitter>" + ABC + "</Emitter>")), ABC_DATA);
    row("default namespace", "<Profiles xmlns='urn:x'>" + profile(7, ABC) + "</Profiles>", ABC_DATA);
    row("document type without entities", "<!DOCTYPE Profiles>" + profiles(profile(7, ABC)), ABC_DATA);
    row("character references", oneChannel("name='&#65;&amp;&#x42;&lt;' X='&#49;'"), {{1}, {0}, {0}, {"A&B<"}});
    row("name as given", profiles(profile(7, channel(0, "  r\xc3\xb6t ", 10))),
        dataWith({10}, {QString::fromUtf8("  r\xc3\xb6t ")}));
    row("XML declaration", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + profiles(profile(7, ABC)), ABC_DATA);
    row("byte order mark", "\xef\xbb\xbf" + profiles(profile(7, ABC)), ABC_DATA);
    const QString wide = QChar(0xfeff) + QString::fromLatin1(profiles(profile(7, ABC)));
    row("UTF-16", QByteArray(reinterpret_cast<const char *>(wide.utf16()), int(wide.size()) * 2), ABC_DATA);
    row("Latin-1 as declared",
        "<?xml version='1.0' encoding='ISO-8859-1'?>" + profiles(profile(7, channel(0, "r\xf6t", 10))),
        dataWith({10}, {QString::fromUtf8("r\xc3\xb6t")}));
}

void tst_ProfileHandler::reads()
{
    QFETCH(QByteArray, document);
    QFETCH(int, id);
    QFETCH(Data, expected);
    const Restorer restorer;
    QVERIFY(parse(document));
    const Data actual = dataOf(id);
    QCOMPARE(actual.x, expected.x);
    QCOMPARE(actual.y, expected.y);
    QCOMPARE(actual.z, expected.z);
    QCOMPARE(actual.names, expected.names);
    QCOMPARE(tristimulus(id)->numChannels(), int(expected.names.size()));
    QCOMPARE(restorer.changed(), QList<int>{id});
}

void tst_ProfileHandler::ignores_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::newRow("empty database") << QByteArray("<Profiles/>");
    QTest::newRow("another document") << QByteArray("<html><body index='7'/></html>");
    QTest::newRow("prefixed Profile") << profiles("<p:Profile xmlns:p='urn:x' index='7'>" + channel(0, "A", 1)
                                                  + "</p:Profile>");
    QTest::newRow("lower-case profile") << profiles("<profile index='7'/>");
    QTest::newRow("upper-case profile") << profiles("<PROFILE index='7'/>");
    QTest::newRow("longer name") << profiles("<Profile2 index='7'/>");
    QTest::newRow("channels only") << profiles(ABC);
    QTest::newRow("profile as text") << profiles("&lt;Profile index='7'/&gt;");
    QTest::newRow("profile in a comment") << profiles("<!--" + profile(7, ABC) + "-->");
    QTest::newRow("profile in CDATA") << profiles("<![CDATA[" + profile(7, ABC) + "]]>");
}

void tst_ProfileHandler::ignores()
{
    QFETCH(QByteArray, document);
    const Restorer restorer;
    const DebugLog log;
    QVERIFY(parse(document));
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(restorer.changed(), QList<int>());
}

void tst_ProfileHandler::reachableProfiles_data()
{
    QTest::addColumn<int>("id");
    for (int id = -1; id <= 10; ++id)
        QTest::newRow(QByteArray::number(id).constData()) << id;
}

void tst_ProfileHandler::reachableProfiles()
{
    QFETCH(int, id);
    const Restorer restorer;
    QVERIFY(parse(profiles(profile(id, ABC))));
    QVERIFY(dataOf(id) == ABC_DATA);
    QCOMPARE(restorer.changed(), QList<int>{id});
}

void tst_ProfileHandler::indexOutOfRange_data()
{
    QTest::addColumn<int>("id");
    for (const int id : {-2, 11, 12, INT_MIN, INT_MAX})
        QTest::newRow(QByteArray::number(id).constData()) << id;
}

void tst_ProfileHandler::indexOutOfRange()
{
    QFETCH(int, id);
    const Restorer restorer;
    const QString invalid = "invalid profile definition";
    {
        const DebugLog log;
        QVERIFY(parse(profiles(profile(id, ABC))));
        QCOMPARE(log.lines(), QStringList(invalid));
    }
    QCOMPARE(restorer.changed(), QList<int>());

    // Only that profile is skipped.
    const DebugLog log;
    QVERIFY(parse(profiles(profile(id, ABC) + profile(7, ABC) + profile(id, ""))));
    QCOMPARE(int(log.lines().size()), 5);
    QCOMPARE(log.lines().first(), invalid);
    QCOMPARE(log.lines().last(), invalid);
    QCOMPARE(restorer.changed(), QList<int>{7});
    QVERIFY(dataOf(7) == ABC_DATA);
}

void tst_ProfileHandler::fatalChannelIndex_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"highest index first", "gap", "negative index", "smallest index", "largest index",
                             "counted anew in each profile"})
        QTest::newRow(name) << QString(name);
}

void tst_ProfileHandler::fatalChannelIndex()
{
    QFETCH(QString, name);
    QVERIFY(diesWith(name, "QVector<T>::insert"));
    QVERIFY(diesWith(name, "index out of range"));
}

void tst_ProfileHandler::debugLinesAreTheVectors()
{
    const Restorer restorer;
    const DebugLog log;
    const QByteArray channels = "<Channel X='1' Y='3' Z='5'/><Channel index='1' X='2.5' Y='490.1758' Z='6e10'/>";
    QVERIFY(parse(profiles(profile(7, channels) + profile(8, ""))));
    const QString empty = debugText({});
    QCOMPARE(log.lines(),
             QStringList({debugText({1, 2.5}), debugText({3, 490.1758}), debugText({5, 6e10}), empty, empty, empty}));
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCOMPARE(log.lines().at(1), QString("QVector(3, 490.176)"));
#else
    QCOMPARE(log.lines().at(1), QString("QList(3, 490.176)"));
#endif
}

void tst_ProfileHandler::dataKeepTheirPlace()
{
    const Restorer restorer;
    Tristimulus *before = tristimulus(ColorUtils::STRAND_BEAM_KVX);
    QVERIFY(parse(profiles(profile(ColorUtils::STRAND_BEAM_KVX, ABC))));
    QCOMPARE(tristimulus(ColorUtils::STRAND_BEAM_KVX), before);
    const HueLockProfile *stored = HuelockProfileFactory::instance()->getProfile(ColorUtils::STRAND_BEAM_KVX);
    QCOMPARE(stored->getTristimulus(), before);
    QCOMPARE(stored->getChannelNames(), QStringList({"A", "B", "C"}));
    // Name and channel configuration are not the database's.
    QCOMPARE(stored->name(), QString("Strand/Beam KVX"));
    QCOMPARE(stored->getChannelConfiguration(), ColorUtils::CONFIG_RGBAW);
}

void tst_ProfileHandler::gamutFollows()
{
    const Restorer restorer;
    const QByteArray channels = "<Channel X='0.75' Y='0.125' Z='0.125'/>"
                                "<Channel index='1' X='0.125' Y='0.75' Z='0.125'/>"
                                "<Channel index='2' X='0.125' Y='0.125' Z='0.75'/>";
    for (const int id : {-1, 0, 1, 7, 10}) {
        QVERIFY(parse(profiles(profile(id, channels))));
        QVERIFY(tristimulus(id)->inside(0.25, 0.25));
        double x = 0.0;
        double y = 0.0;
        QVERIFY(!tristimulus(id)->closestPtOnGamut(0.6875, 0.6875, x, y));
        QVERIFY(x == 0.4375);
        QVERIFY(y == 0.4375);
    }
    QVERIFY(parse(profiles(profile(7, ""))));
    QVERIFY(!tristimulus(7)->inside(0.25, 0.25));
}

void tst_ProfileHandler::laterProfilesWin()
{
    const Restorer restorer;
    QVERIFY(parse(profiles(profile(7, ABC) + profile(8, ABC) + profile(7, channel(0, "D", 40)))));
    QVERIFY(dataOf(7) == dataWith({40}, {"D"}));
    QVERIFY(dataOf(8) == ABC_DATA);
    QVERIFY(parse(profiles(profile(8, channel(0, "E", 50)))));
    QVERIFY(dataOf(7) == dataWith({40}, {"D"}));
    QVERIFY(dataOf(8) == dataWith({50}, {"E"}));
}

void tst_ProfileHandler::namesAreNotTranslated()
{
    const ChildResult result = runChild("names as given");
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
}

void tst_ProfileHandler::devices_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<qint64>("atEnd");
    QTest::addColumn<bool>("expected");
    const QByteArray whole = profiles(profile(7, ABC));
    QTest::newRow("byte by byte") << whole << qint64(0) << true;
    QTest::newRow("long document byte by byte") << whole + QByteArray(200000, ' ') << qint64(0) << true;
    QTest::newRow("ends too early") << whole.chopped(1) << qint64(-1) << false;
    QTest::newRow("fails in the middle") << profiles(profile(7, ABC) + "<Profile").chopped(11) << qint64(-1) << false;
}

void tst_ProfileHandler::devices()
{
    QFETCH(QByteArray, content);
    QFETCH(qint64, atEnd);
    QFETCH(bool, expected);
    const Restorer restorer;
    DrippingDevice device(content, atEnd);
    QCOMPARE(TristimulusFactory::getInstance()->parseXML(&device), expected);
    QVERIFY(dataOf(7) == ABC_DATA);
    QCOMPARE(restorer.changed(), QList<int>{7});
}

void tst_ProfileHandler::brokenAfterAProfile_data()
{
    QTest::addColumn<QByteArray>("tail");
    const QByteArray unfinished = "<Profile index='8'>" + ABC;
    QTest::newRow("nothing more") << QByteArray();
    QTest::newRow("unfinished profile") << unfinished;
    QTest::newRow("unfinished tag") << unfinished + "</Profile";
    QTest::newRow("wrong end tag") << unfinished + "</Profiles></Profile>";
    QTest::newRow("attribute without quotes") << "<Profile index=8>" + ABC + "</Profile></Profiles>";
    QTest::newRow("bare ampersand") << unfinished + "<Channel name='&'/></Profile></Profiles>";
    QTest::newRow("less-than in an attribute") << unfinished + "<Channel name='<'/></Profile></Profiles>";
    QTest::newRow("second root element") << QByteArray("</Profiles><Profiles>") + profile(8, ABC) + "</Profiles>";
    QTest::newRow("text after the root element") << QByteArray("</Profiles>more");
    QTest::newRow("65 levels of nesting")
        << QByteArray("<a>").repeated(64) + profile(8, ABC) + QByteArray("</a>").repeated(64) + "</Profiles>";
    QTest::newRow("a million levels of nesting") << QByteArray("<a>").repeated(1000000);
    QTest::newRow("a million nested profiles") << QByteArray("<Profile index='8'>").repeated(1000000);
    QTest::newRow("long attribute") << "<a b='" + QByteArray(300000, 'a') + "'/>" + profile(8, ABC) + "</Profiles>";
    QTest::newRow("long text") << QByteArray(300000, 'a') + profile(8, ABC) + "</Profiles>";
    QTest::newRow("long comment") << "<!--" + QByteArray(300000, 'a') + "-->" + profile(8, ABC) + "</Profiles>";
    QTest::newRow("many elements") << QByteArray("<a/>").repeated(75000) + profile(8, ABC) + "</Profiles>";
}

void tst_ProfileHandler::brokenAfterAProfile()
{
    QFETCH(QByteArray, tail);
    const Restorer restorer;
    const DebugLog log;
    QVERIFY(!parse("<Profiles>" + profile(7, ABC) + tail));
    QVERIFY(dataOf(7) == ABC_DATA);
    QCOMPARE(restorer.changed(), QList<int>{7});
    // The broken rest adds no message of its own.
    QCOMPARE(int(log.lines().size()), 3);
}

void tst_ProfileHandler::entityDeclarations_data()
{
    QTest::addColumn<QByteArray>("document");
    const auto row = [](const char *name, const QByteArray &declarations, const QByteArray &content = {}) {
        QTest::newRow(name) << "<!DOCTYPE Profiles [" + declarations + "]><Profiles>" + profile(7, ABC) + content
                                   + "</Profiles>";
    };
    QByteArray laughs = "<!ENTITY lol0 \"lol\">";
    for (int level = 1; level <= 9; ++level) {
        const QByteArray below = "&lol" + QByteArray::number(level - 1) + ";";
        laughs += "<!ENTITY lol" + QByteArray::number(level) + " \"" + below.repeated(10) + "\">";
    }
    row("unused internal entity", "<!ENTITY x \"7\">");
    row("internal entity in text", "<!ENTITY x \"text\">", "&x;");
    row("internal entity in an attribute", "<!ENTITY x \"8\">", "<Profile index='&x;'/>");
    row("internal entity with markup", "<!ENTITY x \"<Profile index='8'/>\">", "&x;");
    row("external entity", "<!ENTITY x SYSTEM \"FixtureProfiles.xml\">", "&x;");
    row("public external entity", "<!ENTITY x PUBLIC \"-//x\" \"FixtureProfiles.xml\">", "&x;");
    row("unparsed entity", "<!NOTATION n SYSTEM \"n\"><!ENTITY x SYSTEM \"x\" NDATA n>");
    row("parameter entity", "<!ENTITY % x \"<!-- -->\"> %x;");
    row("external parameter entity", "<!ENTITY % x SYSTEM \"x.dtd\"> %x;");
    row("recursive entity", "<!ENTITY x \"&x;\">", "&x;");
    row("a billion laughs in text", laughs, "&lol9;");
    row("a billion laughs in an attribute", laughs, "<Channel name='&lol9;'/>");
    QTest::newRow("empty document") << QByteArray();
    QTest::newRow("white space only") << QByteArray(" \n\t ");
    QTest::newRow("no XML") << QByteArray("Profiles: 7");
    QTest::newRow("binary") << QByteArray("\0\1\2\xff\xfe\0", 6);
}

void tst_ProfileHandler::entityDeclarations()
{
    QFETCH(QByteArray, document);
    const Restorer restorer;
    QVERIFY(!parse(document));
    QCOMPARE(restorer.changed(), QList<int>());
}

void tst_ProfileHandler::limits_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<bool>("expected");
    const auto nested = [](int levels) {
        const QByteArray core = "<Profile index='7'/>";
        return QByteArray("<a>").repeated(levels - 1) + core + QByteArray("</a>").repeated(levels - 1);
    };
    const auto ofLength = [](int length) {
        const QByteArray core = profile(7, "");
        return "<Profiles>" + core + QByteArray(length - int(core.size()) - 21, ' ') + "</Profiles>";
    };
    QTest::newRow("64 levels") << nested(64) << true;
    QTest::newRow("65 levels") << nested(65) << false;
    QTest::newRow("wide, not deep") << profiles(profile(7, "") + QByteArray("<a/>").repeated(1000)) << true;
    QTest::newRow("256 Ki characters") << ofLength(262144) << true;
    QTest::newRow("one character more") << ofLength(262145) << false;
}

void tst_ProfileHandler::limits()
{
    QFETCH(QByteArray, document);
    QFETCH(bool, expected);
    const Restorer restorer;
    QCOMPARE(parse(document), expected);
}

void tst_ProfileHandler::endlessDocuments_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("filler");
    const QByteArray start = "<Profiles>" + profile(7, ABC);
    QTest::newRow("attribute") << start + "<Profile name=\"" << QByteArray("a");
    QTest::newRow("attribute name") << start + "<Profile " << QByteArray("a");
    QTest::newRow("attributes") << start + "<Profile " << QByteArray("a='' ");
    QTest::newRow("element name") << start + "<" << QByteArray("a");
    QTest::newRow("text") << start << QByteArray("a");
    QTest::newRow("white space") << start << QByteArray(" ");
    QTest::newRow("comment") << start + "<!--" << QByteArray("a");
    QTest::newRow("CDATA") << start + "<![CDATA[" << QByteArray("a");
    QTest::newRow("instruction") << start + "<?a " << QByteArray("a");
    QTest::newRow("nested elements") << start << QByteArray("<a>");
    QTest::newRow("elements side by side") << start << QByteArray("<a/>");
    QTest::newRow("channels") << start + "<Profile index='8'>" << QByteArray("<Channel/>");
}

void tst_ProfileHandler::endlessDocuments()
{
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, filler);
    const Restorer restorer;
    EndlessDevice device(head, filler);
    QVERIFY(!TristimulusFactory::getInstance()->parseXML(&device));
    QVERIFY(dataOf(7) == ABC_DATA);
    QCOMPARE(restorer.changed(), QList<int>{7});
    // 256 Ki characters of up to four bytes, and what a device buffers ahead.
    constexpr qint64 ENOUGH = 4 * 262144 + 65536;
    QVERIFY2(device.delivered() <= ENOUGH, qPrintable(QString::number(device.delivered())));
}

// Qt 5.15 marks its SAX classes as going away; Qt 6 still ships them beside its core.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

void tst_ProfileHandler::handlerAnswers()
{
    const Restorer restorer;
    ProfileHandler handler;
    QXmlAttributes attributes;
    attributes.append("index", QString(), "index", "7");
    QVERIFY(handler.startElement(QString(), "Profiles", "Profiles", QXmlAttributes()));
    QVERIFY(handler.startElement(QString(), "Profile", "Profile", attributes));
    QVERIFY(handler.startElement(QString(), "Channel", "Channel", QXmlAttributes()));
    QVERIFY(handler.characters("text"));
    QVERIFY(handler.endElement(QString(), "Channel", "Channel"));
    QCOMPARE(restorer.changed(), QList<int>());
    QVERIFY(handler.endElement(QString(), "Profile", "Profile"));
    QCOMPARE(restorer.changed(), QList<int>{7});
    QVERIFY(handler.endElement(QString(), "Profiles", "Profiles"));
    QVERIFY(handler.startElement(QString(), "any", "any", QXmlAttributes()));
    QVERIFY(handler.endElement(QString(), "any", "any"));

    QVERIFY(handler.fatalError(QXmlParseException("broken", 1, 1)));
    QCOMPARE(handler.errorString(), QString());
}

void tst_ProfileHandler::handlerComparesTheQualifiedName()
{
    const Restorer restorer;
    QXmlAttributes attributes;
    attributes.append("index", QString(), "index", "7");
    ProfileHandler handler;
    QVERIFY(handler.startElement("urn:x", "Profile", "p:Profile", attributes));
    QVERIFY(handler.startElement("urn:x", "Channel", "p:Channel", QXmlAttributes()));
    QVERIFY(handler.endElement("urn:x", "Profile", "p:Profile"));
    QCOMPARE(restorer.changed(), QList<int>());

    QVERIFY(handler.startElement(QString(), "other", "Profile", attributes));
    QVERIFY(handler.startElement(QString(), "other", "Channel", QXmlAttributes()));
    QVERIFY(handler.endElement(QString(), "other", "Profile"));
    QVERIFY(dataOf(7) == (Data{{0}, {0}, {0}, {""}}));
}

QT_WARNING_POP

void tst_ProfileHandler::odd47_nestingIsNotChecked()
{
    const Restorer restorer;
    // Between two profiles indexes count on, and the next profile begins from nothing.
    QVERIFY(parse(profiles(channel(0, "before", 1) + profile(7, ABC) + channel(3, "after", 1) + channel(4, "after", 1)
                           + profile(8, ABC))));
    QVERIFY(dataOf(7) == ABC_DATA);
    QVERIFY(dataOf(8) == ABC_DATA);
    QVERIFY(diesWith("outside before", "index out of range"));
    QVERIFY(diesWith("outside after", "index out of range"));

    // A profile within a profile takes over; the outer end applies the inner one again.
    const DebugLog log;
    QVERIFY(parse(
        profiles("<Profile index='5'>" + ABC + profile(6, channel(0, "D", 40)) + channel(1, "E", 50) + "</Profile>")));
    QVERIFY(dataOf(6) == dataWith({40, 50}, {"D", "E"}));
    QCOMPARE(restorer.changed(), (QList<int>{6, 7, 8}));
    QCOMPARE(int(log.lines().size()), 6);

    QVERIFY(parse("<Channel index='0'>" + profile(9, ABC) + "</Channel>"));
    QVERIFY(dataOf(9) == ABC_DATA);
}

void tst_ProfileHandler::odd48_profilesMinusOneAndTen()
{
    const Restorer restorer;
    // Channel 1 sends what the built-in data let channel 3 send.
    const QByteArray mirrored = "<Channel name='B' X='0.18025' Y='0.0721' Z='0.9493167'/>"
                                "<Channel name='G' index='1' X='0.35765' Y='0.7153' Z='0.1192167'/>"
                                "<Channel name='R' index='2' X='0.4123152' Y='0.2126' Z='0.0193273'/>";
    constexpr double SUM = 0.18025 + 0.0721 + 0.9493167;
    const TrelColor blue(0.18025 / SUM, 0.0721 / SUM);
    const auto levels = [&blue] {
        QVector<unsigned int> result;
        blue.toNChannel16(ColorUtils::CONFIG_RGB, TrelColor::OWN_PROFILE).getNChannel16(&result);
        return result;
    };
    QCOMPARE(levels(), (QVector<unsigned int>{65535, 0, 0, 65535}));
    QVERIFY(parse(profiles(profile(-1, mirrored) + profile(10, mirrored))));
    QCOMPARE(levels(), (QVector<unsigned int>{65535, 65535, 0, 0}));
    QCOMPARE(dataOf(-1).names, QStringList({"B", "G", "R"}));
    QCOMPARE(dataOf(10).names, QStringList({"B", "G", "R"}));
    QCOMPARE(restorer.changed(), (QList<int>{-1, 10}));

    // No profile has them: questions go to generic RGB, whose data stay.
    for (const int id : {-1, 10}) {
        QCOMPARE(ColorUtils::huelockProfileIDName(Profile(id)), QString("Generic RGB"));
        QCOMPARE(HuelockProfileFactory::instance()->getProfile(Profile(id))->getChannelNames(),
                 QStringList({"Red", "Green", "Blue"}));
    }
}

TREL_TEST_MAIN(tst_ProfileHandler, childCases)
#include "tst_ProfileHandler.moc"
