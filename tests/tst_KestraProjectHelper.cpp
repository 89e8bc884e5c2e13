#include "TestSupport.h"

#include <KestraProjectHelper.h>
#include <TrelColorLibrary.h>

#include <QDomDocument>
#include <QGuiApplication>
#include <QMetaMethod>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSignalSpy>
#include <QTranslator>
#include <QXmlStreamReader>

#include <cmath>
#include <cstdio>
#include <initializer_list>

namespace {

constexpr char NULL_ELEMENT[] = "Found NULL TrelColorLibrary element";
constexpr char ONE_COLOR[] = "<Color uid='{c}' name='c' value='red'/>";
constexpr int CHILD_TIMEOUT_MS = 60000;

// What readers of the same file must agree on.
constexpr char SECTION[] =
    "<ColorLibraryList>\n"
    " <ColorLibrary name=\"My list\" isUserLibrary=\"1\">\n"
    "  <Color name=\"A\" uid=\"{a}\" value=\"aRgb;1;0;#ffffffff00000000\" originatingPreset=\"l/c\" colorId=\"V1\"/>\n"
    "  <Color name=\"B\" uid=\"{b}\" value=\"aRgb;1;0;#ffff0000ffff0000\" originatingPreset=\"\" colorId=\"\"/>\n"
    " </ColorLibrary>\n"
    " <Fixture name=\"f\" uid=\"1\" address=\"2\" mode=\"3\" universe=\"4\" x=\"5\" y=\"6\" z=\"7\"/>\n"
    "</ColorLibraryList>\n";

QString character(int unicode)
{
    return QString(QChar(unicode));
}

QString characters(std::initializer_list<int> units)
{
    QString text;
    for (int unit : units)
        text += QChar(unit);
    return text;
}

bool isSurrogate(int unit)
{
    return unit >= 0xD800 && unit <= 0xDFFF;
}

// Char of XML 1.0, production [2], below the surrogate pairs.
bool isXmlCharacter(int unit)
{
    return unit == 0x9 || unit == 0xA || unit == 0xD || (unit >= 0x20 && unit <= 0xD7FF)
           || (unit >= 0xE000 && unit <= 0xFFFD);
}

QDomDocument parsed(const QByteArray &xml, bool namespaces = true)
{
    QDomDocument document;
    QString error;
    if (!document.setContent(xml, namespaces, &error))
        qFatal("not well-formed (%s): %s", qPrintable(error), xml.constData());
    return document;
}

QByteArray library(const QByteArray &attributes, const QByteArray &content)
{
    return "<ColorLibrary " + attributes + ">" + content + "</ColorLibrary>";
}

// What two documents are compared by: every node in order, attributes sorted.
QStringList nodesOf(const QDomNode &node)
{
    QStringList lines;
    QStringList attributes;
    for (int i = 0; i < node.attributes().count(); ++i) {
        const QDomNode attribute = node.attributes().item(i);
        attributes << attribute.nodeName() + "=" + attribute.nodeValue();
    }
    attributes.sort();
    lines << QStringLiteral("%1 %2 [%3] %4")
                 .arg(node.nodeType())
                 .arg(node.nodeName(), node.nodeValue(), attributes.join('|'));
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        lines << nodesOf(child);
    return lines << "end";
}

QString streamError(const QByteArray &xml)
{
    QXmlStreamReader reader(xml);
    while (!reader.atEnd())
        reader.readNext();
    return reader.errorString();
}

QDomDocument withSection()
{
    KestraProjectHelper helper;
    QDomDocument document;
    QDomElement root = document.createElement("ColorLibraryList");
    document.appendChild(root);
    bool ok = false;
    QDomElement list =
        helper.createElement(document, ok, {"{a}", "{b}"}, {"A", "B"},
                             {"aRgb;1;0;#ffffffff00000000", "aRgb;1;0;#ffff0000ffff0000"}, {"l/c", ""}, {"V1", ""});
    list.setAttribute("isUserLibrary", "1");
    list.setAttribute("name", "My list");
    root.appendChild(list);
    QDomElement fixture = document.createElement("Fixture");
    int value = 7;
    for (const char *name : {"z", "y", "x", "universe", "mode", "address", "uid"})
        fixture.setAttribute(name, value--);
    fixture.setAttribute("name", "f");
    root.appendChild(fixture);
    return document;
}

// Everything that a helper reads and emits, in one order.
class Reading
{
public:
    explicit Reading(const QByteArray &xml, double version = 1.0, const QStringList &oldUidsBefore = {})
        : oldUids(oldUidsBefore)
    {
        KestraProjectHelper helper;
        QObject::connect(&helper, &KestraProjectHelper::insertList, [this](const QString &name, bool isUserLibrary) {
            emitted << "list " + name + (isUserLibrary ? " 1" : " 0");
        });
        QObject::connect(&helper, &KestraProjectHelper::insertColor,
                         [this](const QString &uid, const QString &name, const QString &value, const QString &preset,
                                const QString &list, const QString &id) {
                             emitted << "color " + QStringList{uid, name, value, preset, list, id}.join('|');
                         });
        QObject::connect(&helper, &KestraProjectHelper::foundOldPreset,
                         [this](const QString &name) { emitted << "old preset " + name; });
        QDomDocument document = parsed(xml);
        const QStringList before = nodesOf(document);
        ok = helper.loadDocument(document, error, version, oldUids);
        documentChanged = nodesOf(document) != before;
    }

    bool ok = false;
    bool documentChanged = false;
    QString error = "untouched";
    QStringList oldUids;
    QStringList emitted;
};

class MarkingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return qstrcmp(context, "KestraProjectHelper") == 0 ? "translated: " + QString(text) : QString();
    }
    bool isEmpty() const override
    {
        return false;
    }
};

void createShort(int names, int values, int presets, int ids)
{
    const auto texts = [](int count) { return QStringList(QVector<QString>(count, "x").toList()); };
    KestraProjectHelper helper;
    QDomDocument document;
    bool ok = false;
    helper.createElement(document, ok, texts(3), texts(names), texts(values), texts(presets), texts(ids));
}

const ChildCases childCases{
    {"short names", [] { createShort(2, 3, 3, 3); }},
    {"short values", [] { createShort(3, 2, 3, 3); }},
    {"short presets", [] { createShort(3, 3, 0, 3); }},
    {"short ids", [] { createShort(3, 3, 3, 1); }},
    {"write", [] { std::fputs(KestraProjectHelper::toByteArray(withSection()).constData(), stdout); }},
    {"write what was parsed",
     [] { std::fputs(KestraProjectHelper::toByteArray(parsed(SECTION)).constData(), stdout); }},
};

// Standard output of a child case that runs under its own hash seed.
QByteArray writtenUnderSeed(const QString &name, int seed)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_HASH_SEED", QString::number(seed));
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {"--child", name});
    if (!process.waitForFinished(CHILD_TIMEOUT_MS))
        qFatal("child case %s did not end", qPrintable(name));
    return process.readAllStandardOutput();
}

} // namespace

class tst_KestraProjectHelper : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void constants();
    void signalsInOrder();

    void createElement();
    void createElementOfNothing();
    void createElementIgnoresWhatExceedsTheUids();
    void createElementLeavesTheDocument();
    void createElementLeavesOutWhatXmlCannotCarry();
    void createElementOfShortLists_data();
    void createElementOfShortLists();

    void nothingToLoad_data();
    void nothingToLoad();
    void isUserLibrary_data();
    void isUserLibrary();
    void listAttributes();
    void signalArguments();
    void listsInDocumentOrder();
    void otherElementsAreSkipped();
    void odd56_missingNameOrValueIsEmptyAttribute();
    void defaults_data();
    void defaults();
    void listNameIsMadeUnique_data();
    void listNameIsMadeUnique();
    void listNamesFollowWhatTheListenerCreates();
    void listWithoutColors_data();
    void listWithoutColors();
    void failureKeepsWhatWasEmitted();
    void errorsAreTranslated();
    void oldUids_data();
    void oldUids();
    void oldUidsOfTheFirstTwelve();
    void oldUidsOfListsThatGetAName();
    void loadsOnceMore();

    void toByteArray();
    void toByteArrayOrdersAttributes_data();
    void toByteArrayOrdersAttributes();
    void toByteArrayOfHostDocuments_data();
    void toByteArrayOfHostDocuments();
    void toByteArrayIsUtf8();
    void toByteArrayWithAnEncodingDeclared_data();
    void toByteArrayWithAnEncodingDeclared();
    void toByteArrayWithNamespaces();
    void toByteArrayOfNothing();
    void toByteArrayLeavesTheDocument();
    void sameBytesUnderEveryHashSeed();

    void writableTextOfEachUnit();
    void writableText_data();
    void writableText();
    void everyWritableTextComesBack();
    void everyUnwritableTextLoads();
};

void tst_KestraProjectHelper::constants()
{
    QCOMPARE(KESTRA_APPLICATION_ID, "Kestra");
    QCOMPARE(COLOR_LIBRARY_ROOT, "ColorLibrary");
    QCOMPARE(COLOR_LIBRARY_IS_USER_LIBRARY_ATTRIBUTE, "isUserLibrary");
    QCOMPARE(COLOR_ROOT_ELEMENT, "Color");
    QCOMPARE(COLOR_UID_ATTRIBUTE, "uid");
    QCOMPARE(COLOR_NAME_ATTRIBUTE, "name");
    QCOMPARE(COLOR_VALUE_ATTRIBUTE, "value");
    QCOMPARE(COLOR_ORIGINATING_PRESET_ATTRIBUTE, "originatingPreset");
    QCOMPARE(COLOR_VENDOR_ID_ATTRIBUTE, "colorId");
}

void tst_KestraProjectHelper::signalsInOrder()
{
    const QMetaObject &meta = KestraProjectHelper::staticMetaObject;
    QList<QByteArray> signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            signatures << meta.method(i).methodSignature();
    }
    QCOMPARE(signatures, QList<QByteArray>({"insertList(QString,bool)",
                                            "insertColor(QString,QString,QString,QString,QString,QString)",
                                            "foundOldPreset(QString)"}));
}

void tst_KestraProjectHelper::createElement()
{
    KestraProjectHelper helper;
    QDomDocument document;
    bool ok = false;
    const QDomElement list = helper.createElement(document, ok, {"u1", "u2", "u1"}, {"n1", "n2", "n3"},
                                                  {"v1", "v2", "v3"}, {"p1", "", "p3"}, {"c1", "c2", ""});
    QVERIFY(ok);
    QCOMPARE(list.tagName(), QString("ColorLibrary"));
    QCOMPARE(list.attributes().count(), 0);
    const QVector<QStringList> expected{
        {"n1", "u1", "v1", "p1", "c1"}, {"n2", "u2", "v2", "", "c2"}, {"n3", "u1", "v3", "p3", ""}};
    QCOMPARE(list.childNodes().count(), int(expected.size()));
    for (int i = 0; i < int(expected.size()); ++i) {
        const QDomElement color = list.childNodes().at(i).toElement();
        QCOMPARE(color.tagName(), QString("Color"));
        QVERIFY(!color.hasChildNodes());
        QCOMPARE(color.attributes().count(), 5);
        QStringList values;
        for (const char *name : {"name", "uid", "value", "originatingPreset", "colorId"})
            values << color.attribute(name, "missing");
        QCOMPARE(values, expected[i]);
    }
}

void tst_KestraProjectHelper::createElementOfNothing()
{
    KestraProjectHelper helper;
    QDomDocument document;
    bool ok = false;
    const QDomElement list = helper.createElement(document, ok, {}, {}, {}, {}, {});
    QVERIFY(ok);
    QCOMPARE(list.tagName(), QString("ColorLibrary"));
    QVERIFY(!list.hasAttributes() && !list.hasChildNodes());
}

void tst_KestraProjectHelper::createElementIgnoresWhatExceedsTheUids()
{
    KestraProjectHelper helper;
    QDomDocument document;
    bool ok = false;
    const QDomElement list =
        helper.createElement(document, ok, {"u"}, {"n", "x"}, {"v", "x", "y"}, {"p", "x"}, {"c", "x"});
    QVERIFY(ok);
    QCOMPARE(list.childNodes().count(), 1);
    QCOMPARE(list.firstChildElement().attribute("value"), QString("v"));
}

void tst_KestraProjectHelper::createElementLeavesTheDocument()
{
    KestraProjectHelper helper;
    QDomDocument document = parsed("<host><a/></host>");
    const QStringList before = nodesOf(document);
    bool ok = false;
    const QDomElement list = helper.createElement(document, ok, {"u"}, {"n"}, {"v"}, {"p"}, {"c"});
    QVERIFY(list.parentNode().isNull());
    QCOMPARE(nodesOf(document), before);
    QCOMPARE(list.ownerDocument(), document);
}

void tst_KestraProjectHelper::createElementLeavesOutWhatXmlCannotCarry()
{
    KestraProjectHelper helper;
    QDomDocument document;
    bool ok = false;
    const auto spoilt = [](const char *text) { return text + characters({0, 0xD800, 0x1F, 0xFFFE, 0xFFFF}) + "!"; };
    document.appendChild(
        helper.createElement(document, ok, {spoilt("u")}, {spoilt("n")}, {spoilt("v")}, {character(0)}, {spoilt("c")}));
    QCOMPARE(KestraProjectHelper::toByteArray(document),
             QByteArray("<ColorLibrary>\n"
                        " <Color name=\"n!\" uid=\"u!\" value=\"v!\" originatingPreset=\"\" colorId=\"c!\"/>\n"
                        "</ColorLibrary>\n"));
    // Also where a host writes the document by itself.
    QCOMPARE(streamError(document.toByteArray(1)), QString());
}

void tst_KestraProjectHelper::createElementOfShortLists_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"short names", "short values", "short presets", "short ids"})
        QTest::newRow(name) << QString(name);
}

void tst_KestraProjectHelper::createElementOfShortLists()
{
    QFETCH(QString, name);
    QVERIFY(diesWith(name, "index out of range"));
}

void tst_KestraProjectHelper::nothingToLoad_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("no list") << QByteArray("<host/>");
    QTest::newRow("colors outside a list") << QByteArray("<host><Color uid='u' name='n' value='red'/></host>");
    QTest::newRow("other names") << QByteArray("<host><colorLibrary/><ColorLibraryList/><ColorLibrary2/></host>");
    QTest::newRow("in a comment") << QByteArray("<host><!--<ColorLibrary/>--><![CDATA[<ColorLibrary/>]]></host>");
}

void tst_KestraProjectHelper::nothingToLoad()
{
    QFETCH(QByteArray, xml);
    const Reading reading(xml, 0.0);
    QVERIFY(reading.ok);
    QCOMPARE(reading.error, QString("untouched"));
    QCOMPARE(reading.emitted, QStringList{});
    QCOMPARE(reading.oldUids, QStringList{});

    KestraProjectHelper helper;
    QDomDocument nothing;
    QString error;
    QStringList oldUids;
    QVERIFY(helper.loadDocument(nothing, error, 0.0, oldUids));
}

void tst_KestraProjectHelper::isUserLibrary_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::addColumn<bool>("expected");
    QTest::newRow("missing") << QByteArray() << false;
    const struct
    {
        const char *value;
        bool expected;
    } rows[]{{"1", true},    {"0", false},   {"2", true},   {"-1", true},    {"010", true}, {"00", false}, {"", false},
             {"0x1", false}, {"yes", false}, {"1x", false}, {"true", false}, {"a", false},  {"1.0", false}};
    for (const auto &row : rows)
        QTest::addRow("\"%s\"", row.value) << "isUserLibrary='" + QByteArray(row.value) + "'" << row.expected;
}

void tst_KestraProjectHelper::isUserLibrary()
{
    QFETCH(QByteArray, attribute);
    QFETCH(bool, expected);
    const Reading reading(library("name='L' " + attribute, ONE_COLOR));
    QVERIFY(reading.ok);
    QCOMPARE(reading.emitted.value(0), QStringLiteral("list L %1").arg(expected));
}

void tst_KestraProjectHelper::listAttributes()
{
    const Reading reading(library("name='a &amp; &quot;b&quot; &#x263a;' other='x' uid='y'", ONE_COLOR));
    QVERIFY(reading.ok && !reading.documentChanged);
    const QString name = "a & \"b\" " + character(0x263A);
    QCOMPARE(reading.emitted, QStringList({"list " + name + " 0", "color {c}|c|red||" + name + "|"}));
    QCOMPARE(Reading(library("", ONE_COLOR)).emitted, QStringList({"list  0", "color {c}|c|red|||"}));
}

void tst_KestraProjectHelper::signalArguments()
{
    KestraProjectHelper helper;
    QSignalSpy lists(&helper, &KestraProjectHelper::insertList);
    QSignalSpy colors(&helper, &KestraProjectHelper::insertColor);
    QSignalSpy oldPresets(&helper, &KestraProjectHelper::foundOldPreset);
    QDomDocument document = parsed(
        library("isUserLibrary='1' name='L'", "<Color colorId='C' originatingPreset='P' value='V' uid='U' name='N'/>"));
    QString error;
    QStringList oldUids;
    QVERIFY(helper.loadDocument(document, error, 0.0, oldUids));
    QCOMPARE(lists.count(), 1);
    QCOMPARE(lists.takeFirst(), QVariantList({"L", true}));
    QCOMPARE(colors.count(), 1);
    QCOMPARE(colors.takeFirst(), QVariantList({"U", "N", "V", "P", "L", "C"}));
    QCOMPARE(oldPresets.count(), 0);
}

void tst_KestraProjectHelper::listsInDocumentOrder()
{
    const Reading reading(
        "<host>" + library("name='1' isUserLibrary='1'", "<Color uid='a'/><Color uid='b'/>") + "<deep><deeper>"
        + library("name='2'", "<Color uid='c'/>") + "</deeper></deep>"
        + library("name='3'", "<Color uid='d'/>" + library("name='3.1'", "<Color uid='e'/>") + "<Color uid='f'/>")
        + "</host>");
    QVERIFY(reading.ok);
    const QString rest = "|empty attribute|empty attribute||";
    QCOMPARE(reading.emitted, QStringList({"list 1 1", "color a" + rest + "1|", "color b" + rest + "1|", "list 2 0",
                                           "color c" + rest + "2|", "list 3 0", "color d" + rest + "3|",
                                           "color f" + rest + "3|", "list 3.1 0", "color e" + rest + "3.1|"}));
}

void tst_KestraProjectHelper::otherElementsAreSkipped()
{
    const Reading reading(library("name='L'", "text<Other/><!-- c -->"
                                              "<Color uid='a' name='A' value='v' more='x'><Color/></Color>"
                                              "<Group><Color uid='inner'/></Group>text<?pi?>"
                                              "<Color uid='b' name='B' value='v'/><color uid='c'/>"));
    QVERIFY(reading.ok);
    QCOMPARE(reading.emitted, QStringList({"list L 0", "color a|A|v||L|", "color b|B|v||L|"}));
}

void tst_KestraProjectHelper::odd56_missingNameOrValueIsEmptyAttribute()
{
    const Reading reading(library("name='L'", "<Color uid='a'/><Color uid='b' name='' value=''/>"));
    QVERIFY(reading.ok);
    QCOMPARE(reading.emitted,
             QStringList({"list L 0", "color a|empty attribute|empty attribute||L|", "color b||||L|"}));
}

void tst_KestraProjectHelper::defaults_data()
{
    QTest::addColumn<QByteArray>("missing");
    QTest::addColumn<QString>("expected");
    QTest::newRow("uid") << QByteArray("uid") << "color |N|V|P|L|C";
    QTest::newRow("name") << QByteArray("name") << "color U|empty attribute|V|P|L|C";
    QTest::newRow("value") << QByteArray("value") << "color U|N|empty attribute|P|L|C";
    QTest::newRow("originatingPreset") << QByteArray("originatingPreset") << "color U|N|V||L|C";
    QTest::newRow("colorId") << QByteArray("colorId") << "color U|N|V|P|L|";
}

void tst_KestraProjectHelper::defaults()
{
    QFETCH(QByteArray, missing);
    QByteArray color = "<Color uid='U' name='N' value='V' originatingPreset='P' colorId='C'/>";
    color.replace(" " + missing + "=", " not-" + missing + "=");
    const Reading reading(library("name='L'", color));
    QVERIFY(reading.ok);
    QTEST(reading.emitted.value(1), "expected");
}

void tst_KestraProjectHelper::listNameIsMadeUnique_data()
{
    QTest::addColumn<QStringList>("lists");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("free") << QStringList{} << "L"
                          << "L";
    QTest::newRow("taken") << QStringList{"L"} << "L"
                           << "L 2";
    QTest::newRow("taken twice") << QStringList{"L", "L 2"} << "L"
                                 << "L 3";
    QTest::newRow("a fixed list") << QStringList{} << "Project Swatches"
                                  << "Project Swatches 2";
    QTest::newRow("case") << QStringList{"L"} << "l"
                          << "l";
    QTest::newRow("a place marker") << QStringList{"%1"} << "%1"
                                    << "%1 2";
}

void tst_KestraProjectHelper::listNameIsMadeUnique()
{
    QFETCH(QStringList, lists);
    QFETCH(QString, name);
    QFETCH(QString, expected);
    TrelColorLibrary::cleanup();
    for (const QString &list : qAsConst(lists))
        TrelColorLibrary::Instance()->createNewLibraryIfNecessary(list, false);
    const QByteArray xml = library("name='" + name.toUtf8() + "'", "<Color uid='u' name='n' value='v'/>");
    const Reading reading("<host>" + xml + xml + "</host>");
    const int rows = TrelColorLibrary::Instance()->rowCount(TrelColorLibrary::Instance()->rootIndex());
    TrelColorLibrary::cleanup();
    QVERIFY(reading.ok);
    // Nobody created the first one.
    QCOMPARE(reading.emitted, QStringList({"list " + expected + " 0", "color u|n|v||" + expected + "|",
                                           "list " + expected + " 0", "color u|n|v||" + expected + "|"}));
    QCOMPARE(rows, 2 + int(lists.size()));
}

void tst_KestraProjectHelper::listNamesFollowWhatTheListenerCreates()
{
    TrelColorLibrary::cleanup();
    KestraProjectHelper helper;
    QStringList names;
    connect(&helper, &KestraProjectHelper::insertList, [&names](const QString &name) {
        names << name;
        TrelColorLibrary::Instance()->createNewLibraryIfNecessary(name, false);
    });
    const QByteArray xml = library("name='L'", ONE_COLOR);
    QDomDocument document = parsed("<host>" + xml + xml + xml + "</host>");
    QString error;
    QStringList oldUids;
    const bool ok = helper.loadDocument(document, error, 1.0, oldUids);
    TrelColorLibrary::cleanup();
    QVERIFY(ok);
    QCOMPARE(names, QStringList({"L", "L 2", "L 3"}));
}

void tst_KestraProjectHelper::listWithoutColors_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("text");
    QTest::newRow("other elements") << QByteArray("<color/><Colour/><COLOR/>");
    QTest::newRow("colors further down") << QByteArray("<Group><Color uid='u' name='n' value='red'/></Group>");
    QTest::newRow("comment") << QByteArray("<!--<Color/>-->");
}

void tst_KestraProjectHelper::listWithoutColors()
{
    QFETCH(QByteArray, content);
    const Reading reading(library("name='L' isUserLibrary='1'", content), 0.0, {"before"});
    QVERIFY(!reading.ok);
    QCOMPARE(reading.error, QString(NULL_ELEMENT));
    QCOMPARE(reading.emitted, QStringList{"list L 1"});
    QCOMPARE(reading.oldUids, QStringList{"before"});
}

void tst_KestraProjectHelper::failureKeepsWhatWasEmitted()
{
    const Reading reading(
        "<host>" + library("", ONE_COLOR) + library("name='B'", "") + library("name='C'", ONE_COLOR) + "</host>", 0.5);
    QVERIFY(!reading.ok);
    QCOMPARE(reading.error, QString(NULL_ELEMENT));
    QCOMPARE(reading.emitted, QStringList({"list  0", "color {c}|c|red|||", "list B 0"}));
    QCOMPARE(reading.oldUids, QStringList{"{c}"});
}

void tst_KestraProjectHelper::errorsAreTranslated()
{
    MarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const Reading reading(library("name='L'", ""));
    QVERIFY(QCoreApplication::removeTranslator(&translator));
    QCOMPARE(reading.error, "translated: " + QString(NULL_ELEMENT));
}

void tst_KestraProjectHelper::oldUids_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<double>("version");
    QTest::addColumn<QStringList>("expected");
    const QStringList none{"before"};
    const QStringList both{"before", "{a}", ""};
    QTest::newRow("no name, 0.0") << QByteArray() << 0.0 << both;
    QTest::newRow("no name, negative") << QByteArray() << -1.0 << both;
    QTest::newRow("no name, 0.95") << QByteArray() << 0.95 << both;
    QTest::newRow("no name, just below 0.96") << QByteArray() << std::nextafter(0.96, 0.0) << both;
    QTest::newRow("no name, 0.96") << QByteArray() << 0.96 << none;
    QTest::newRow("no name, 1.0") << QByteArray() << 1.0 << none;
    QTest::newRow("empty name, 0.5") << QByteArray("name=''") << 0.5 << both;
    QTest::newRow("name, 0.5") << QByteArray("name='L'") << 0.5 << none;
    QTest::newRow("blank name, 0.5") << QByteArray("name=' '") << 0.5 << none;
    QTest::newRow("user list without a name, 0.5") << QByteArray("isUserLibrary='1'") << 0.5 << both;
}

void tst_KestraProjectHelper::oldUids()
{
    QFETCH(QByteArray, attributes);
    QFETCH(double, version);
    const QByteArray xml = library(attributes, "<Color uid='{a}' name='n' value='v'/><Color name='n' value='v'/>");
    const Reading reading(xml, version, {"before"});
    QVERIFY(reading.ok);
    QTEST(reading.oldUids, "expected");
    QCOMPARE(int(reading.emitted.size()), 3);
}

void tst_KestraProjectHelper::oldUidsOfTheFirstTwelve()
{
    QByteArray colors;
    for (int i = 0; i < 14; ++i)
        colors += "<Color uid='" + QByteArray::number(i) + "'/><Other/>";
    const Reading reading(
        "<host>" + library("", colors) + library("name='L'", colors) + library("", colors) + "</host>", 0.95);
    QVERIFY(reading.ok);
    QStringList expected;
    for (int i = 0; i < 12; ++i)
        expected << QString::number(i);
    // Each list counts for itself.
    QCOMPARE(reading.oldUids, expected + expected);
    QCOMPARE(int(reading.emitted.size()), 3 * 15);
}

void tst_KestraProjectHelper::oldUidsOfListsThatGetAName()
{
    TrelColorLibrary::cleanup();
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    // A list without a name.
    library->insertRows(library->rowCount(library->rootIndex()), 1, library->rootIndex());
    const Reading reading(::library("", ONE_COLOR), 0.5);
    TrelColorLibrary::cleanup();
    QVERIFY(reading.ok);
    QCOMPARE(reading.emitted.value(0), QString("list  2 0"));
    QCOMPARE(reading.oldUids, QStringList{});
}

void tst_KestraProjectHelper::loadsOnceMore()
{
    const Reading first(SECTION);
    QVERIFY(first.ok);
    QCOMPARE(first.emitted, QStringList({"list My list 1", "color {a}|A|aRgb;1;0;#ffffffff00000000|l/c|My list|V1",
                                         "color {b}|B|aRgb;1;0;#ffff0000ffff0000||My list|"}));
    QCOMPARE(Reading(KestraProjectHelper::toByteArray(parsed(SECTION))).emitted, first.emitted);
}

void tst_KestraProjectHelper::toByteArray()
{
    QCOMPARE(KestraProjectHelper::toByteArray(withSection()), QByteArray(SECTION));
    QCOMPARE(KestraProjectHelper::toByteArray(parsed(SECTION)), QByteArray(SECTION));
}

void tst_KestraProjectHelper::toByteArrayOrdersAttributes_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, const char *xml, const QByteArray &expected) {
        QTest::newRow(name) << QByteArray(xml) << expected + "\n";
    };
    row("all of the format", "<p colorId='6' originatingPreset='5' value='4' uid='3' isUserLibrary='2' name='1'/>",
        R"(<p name="1" isUserLibrary="2" uid="3" value="4" originatingPreset="5" colorId="6"/>)");
    row("others behind, by name", "<p b='4' a='3' Z='2' uid='1' aa='5' colorId='6' _='7'/>",
        R"(<p uid="1" colorId="6" Z="2" _="7" a="3" aa="5" b="4"/>)");
    row("names that only look alike", "<p uid2='1' Name='2' value='3' NAME='4' colorid='5'/>",
        R"(<p value="3" NAME="4" Name="2" colorid="5" uid2="1"/>)");
    row("beyond ASCII", "<p \xc3\xa9='1' z='2' name='3'/>", "<p name=\"3\" z=\"2\" \xc3\xa9=\"1\"/>");
    row("greater-than in a value", "<p z='a&gt;b' a='/&gt;'/>", R"(<p a="/>" z="a>b"/>)");
    row("quotes in a value", "<p z=\"'\" a='\"'/>", R"(<p a="&quot;" z="'"/>)");
    row("what looks like an attribute in a value", "<p z='\" a=\"1' a=' name=&quot;x&quot;'/>",
        R"(<p a=" name=&quot;x&quot;" z="&quot; a=&quot;1"/>)");
    row("what looks like a tag in a value", "<p z='&lt;q b=\"1\" a=\"2\"/&gt;' a='&lt;!--'/>",
        R"(<p a="&lt;!--" z="&lt;q b=&quot;1&quot; a=&quot;2&quot;/>"/>)");
    row("entities in a value", "<p z='&amp;amp;' a='&#38;lt; &#9;&#10;&#13;'/>",
        R"(<p a="&amp;lt; &#x9;&#xa;&#xd;" z="&amp;amp;"/>)");
    row("equals signs and blanks", "<p z = '= = \"' a= ' '/>", R"(<p a=" " z="= = &quot;"/>)");
    row("comment", "<p><!-- <q z=\"1\" a=\"2\"/> ' -->\n<q z='1' a='2'/></p>",
        "<p>\n <!-- <q z=\"1\" a=\"2\"/> ' -->\n <q a=\"2\" z=\"1\"/>\n</p>");
    row("comment that begins with greater-than", "<p><!--> <q z=\"1\" a=\"2\"/> ' --><q z='1' a='2'/></p>",
        "<p>\n <!--> <q z=\"1\" a=\"2\"/> ' -->\n <q a=\"2\" z=\"1\"/>\n</p>");
    row("comment that begins with an arrow", "<p><!---> <q z=\"1\" a=\"2\"/> --><q z='1' a='2'/></p>",
        "<p>\n <!---> <q z=\"1\" a=\"2\"/> -->\n <q a=\"2\" z=\"1\"/>\n</p>");
    row("CDATA", "<p><![CDATA[<q z=\"1\" a=\"2\"/> ' ]] > -->]]><q z='1' a='2'/></p>",
        "<p><![CDATA[<q z=\"1\" a=\"2\"/> ' ]] > -->]]><q a=\"2\" z=\"1\"/>\n</p>");
    row("processing instruction", "<p><?host z=\"1\" a=\"2\" > '?><q z='1' a='2'/></p>",
        "<p>\n<?host z=\"1\" a=\"2\" > '?>\n <q a=\"2\" z=\"1\"/>\n</p>");
    row("text", "<p>q z=\"1\" a=\"2\" ' &lt;q z=\"1\" a=\"2\"/&gt;<q z='1' a='2'/></p>",
        "<p>q z=\"1\" a=\"2\" ' &lt;q z=\"1\" a=\"2\"/><q a=\"2\" z=\"1\"/>\n</p>");
    row("elements with content", "<p z='1' a='2'><q z='1' a='2'>t</q><r z='1' a='2'><s/></r></p>",
        "<p a=\"2\" z=\"1\">\n <q a=\"2\" z=\"1\">t</q>\n <r a=\"2\" z=\"1\">\n  <s/>\n </r>\n</p>");
}

void tst_KestraProjectHelper::toByteArrayOrdersAttributes()
{
    QFETCH(QByteArray, xml);
    const QDomDocument document = parsed(xml);
    const QByteArray bytes = KestraProjectHelper::toByteArray(document);
    QTEST(bytes, "expected");
    QCOMPARE(nodesOf(parsed(bytes)), nodesOf(document));
    QCOMPARE(streamError(bytes), QString());
}

void tst_KestraProjectHelper::toByteArrayOfHostDocuments_data()
{
    QTest::addColumn<QByteArray>("xml");
    const auto row = [](const char *name, const char *xml) { QTest::newRow(name) << QByteArray(xml); };
    row("declaration", "<?xml version='1.0'?><p a='1'/>");
    row("declaration with UTF-8", "<?xml version='1.0' encoding='UTF-8'?><p a='1'>\xc3\xa9</p>");
    row("document type", "<!DOCTYPE p><p a='1'/>");
    row("external document type", "<!DOCTYPE p PUBLIC '-//X//Y' 'http://example.org/p.dtd'><p/>");
    row("entities and notations declared",
        "<!DOCTYPE p [<!ENTITY e \"it's &lt;q z='1' a='2'/> \"> <!NOTATION n SYSTEM 'x>\"y'>]><p a='1'/>");
    row("comments around the root", "<!-- before --><p a='1'/><!-- after --><?after z=\"1\" a=\"2\"?>");
    row("comments of more than a line", "<p><!-- one\n two\n--><q/></p>");
    row("CDATA beside text", "<p>a<![CDATA[<&>]]>b<![CDATA[]]></p>");
    row("CDATA of more than a line", "<p><![CDATA[\n <q z=\"1\" a=\"2\">\n]]></p>");
    row("processing instructions", "<?host one='1'?><p><?host?><?other <q z=\"1\" a=\"2\"?></p>");
    row("mixed content", "<p>one <b>two</b> three <i a='1'/><b/>four</p>");
    row("blanks in text", "<p> <q>  a\n b  </q>\n</p>");
    row("end of a CDATA section as text", "<p>]]&gt; &lt;![CDATA[</p>");
    row("line breaks as references", "<p a='&#13;&#10;&#9;'>&#13;x</p>");
    row("apostrophes and quotes", "<p a=\"it's\">\"it's\"</p>");
    row("nested", "<a><b><c d='1'><e><f>g</f></e></c></b></a>");
    row("beyond the basic plane", "<p a='\xf0\x9f\x98\x80'>\xf0\x9f\x98\x80</p>");
}

// Documents whose elements have one attribute at most leave no order to choose: they are the text of the document.
void tst_KestraProjectHelper::toByteArrayOfHostDocuments()
{
    QFETCH(QByteArray, xml);
    const QDomDocument document = parsed(xml);
    const QByteArray bytes = KestraProjectHelper::toByteArray(document);
    QCOMPARE(bytes, document.toString(1).toUtf8());
    QCOMPARE(streamError(bytes), QString());
    const QDomDocument again = parsed(bytes);
    QCOMPARE(KestraProjectHelper::toByteArray(again), bytes);
    QCOMPARE(nodesOf(again), nodesOf(document));
}

void tst_KestraProjectHelper::toByteArrayIsUtf8()
{
    QDomDocument document;
    QDomElement element = document.createElement("p");
    const QString text = characters({0xE9, 0x263A, 0xD83D, 0xDE00, 0xFFFD});
    element.setAttribute("a", text);
    element.appendChild(document.createTextNode(text));
    document.appendChild(element);
    const QByteArray utf8 = "\xc3\xa9\xe2\x98\xba\xf0\x9f\x98\x80\xef\xbf\xbd";
    QCOMPARE(KestraProjectHelper::toByteArray(document), "<p a=\"" + utf8 + "\">" + utf8 + "</p>\n");
}

void tst_KestraProjectHelper::toByteArrayWithAnEncodingDeclared_data()
{
    QTest::addColumn<QString>("encoding");
    for (const char *encoding : {"UTF-8", "ISO-8859-1", "us-ascii", "UTF-16", "windows-1252"})
        QTest::newRow(encoding) << QString(encoding);
}

void tst_KestraProjectHelper::toByteArrayWithAnEncodingDeclared()
{
    QFETCH(QString, encoding);
    QDomDocument document = parsed("<p a=\"\xc3\xa9\">\xe2\x98\xba</p>");
    const QStringList expected = nodesOf(document.documentElement());
    document.insertBefore(document.createProcessingInstruction("xml", "version=\"1.0\" encoding=\"" + encoding + "\""),
                          document.firstChild());
    const QByteArray bytes = KestraProjectHelper::toByteArray(document);
    QCOMPARE(streamError(bytes), QString());
    QDomDocument again;
    QVERIFY2(again.setContent(bytes, true), bytes.constData());
    QCOMPARE(nodesOf(again.documentElement()), expected);
}

void tst_KestraProjectHelper::toByteArrayWithNamespaces()
{
    const QByteArray xml = "<p xmlns='urn:d' xmlns:h='urn:h' h:z='1' a='2'><h:q h:b='1' a='2' name='3'/><r/></p>";
    const QDomDocument document = parsed(xml);
    const QByteArray bytes = KestraProjectHelper::toByteArray(document);
    QCOMPARE(streamError(bytes), QString());
    const QDomElement root = parsed(bytes).documentElement();
    QCOMPARE(root.namespaceURI(), QString("urn:d"));
    QCOMPARE(root.attribute("a"), QString("2"));
    const QDomElement q = root.firstChildElement();
    QCOMPARE(q.namespaceURI(), QString("urn:h"));
    QCOMPARE(q.attributeNS("urn:h", "b"), QString("1"));
    QCOMPARE(QStringList({q.attribute("a"), q.attribute("name")}), QStringList({"2", "3"}));
    QCOMPARE(q.nextSiblingElement().namespaceURI(), QString("urn:d"));

    // The DOM of Qt 5 resolves a prefix only behind its declaration, the stream reader in any order.
    QXmlStreamReader reader(bytes);
    QVERIFY(reader.readNextStartElement());
    QVERIFY(reader.attributes().value("urn:h", "z") == QString("1"));

    // Without namespace processing, declarations are attributes like others.
    const QByteArray plain = KestraProjectHelper::toByteArray(parsed(xml, false));
    QCOMPARE(nodesOf(parsed(plain, false)), nodesOf(parsed(xml, false)));
    QVERIFY2(plain.contains("<h:q name=\"3\" a=\"2\" h:b=\"1\"/>"), plain.constData());
}

void tst_KestraProjectHelper::toByteArrayOfNothing()
{
    QCOMPARE(KestraProjectHelper::toByteArray(QDomDocument()).trimmed(), QByteArray());
}

void tst_KestraProjectHelper::toByteArrayLeavesTheDocument()
{
    QDomDocument document = parsed("<p z='1' a='2'><!-- c --><q>t</q></p>");
    document.documentElement().setAttribute("bad", character(1));
    const QStringList before = nodesOf(document);
    KestraProjectHelper::toByteArray(document);
    QCOMPARE(nodesOf(document), before);
}

void tst_KestraProjectHelper::sameBytesUnderEveryHashSeed()
{
    for (const char *name : {"write", "write what was parsed"}) {
        for (int seed : {0, 1, 2, 3, 5, 1234567, 2147483647})
            QCOMPARE(writtenUnderSeed(name, seed), QByteArray(SECTION));
    }
}

void tst_KestraProjectHelper::writableTextOfEachUnit()
{
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const QString text = "a" + character(unit) + "b";
        const QString expected = isXmlCharacter(unit) ? text : QString("ab");
        const QString actual = KestraProjectHelper::writableText(text);
        QVERIFY2(actual == expected, qPrintable(QString::number(unit, 16)));
    }
}

void tst_KestraProjectHelper::writableText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, std::initializer_list<int> text, std::initializer_list<int> expected) {
        QTest::newRow(name) << characters(text) << characters(expected);
    };
    row("empty", {}, {});
    row("plain", {'a', ' ', 0xE9}, {'a', ' ', 0xE9});
    row("fresh preset", {0}, {});
    row("fresh preset of a flag", {1}, {});
    row("tabs and line breaks", {9, 10, 13}, {9, 10, 13});
    row("other control characters", {0, 1, 8, 11, 12, 14, 31, 32}, {32});
    row("DEL and C1", {0x7F, 0x80, 0x85, 0x9F}, {0x7F, 0x80, 0x85, 0x9F});
    row("last ones", {0xFFFC, 0xFFFD, 0xFFFE, 0xFFFF}, {0xFFFC, 0xFFFD});
    row("byte order mark", {0xFEFF, 'a'}, {0xFEFF, 'a'});
    row("pair", {0xD83D, 0xDE00}, {0xD83D, 0xDE00});
    row("first pair", {0xD800, 0xDC00}, {0xD800, 0xDC00});
    row("last pair", {0xDBFF, 0xDFFF}, {0xDBFF, 0xDFFF});
    row("pairs in a row", {0xD83D, 0xDE00, 0xD83D, 0xDE01}, {0xD83D, 0xDE00, 0xD83D, 0xDE01});
    row("high alone", {'a', 0xD800, 'b'}, {'a', 'b'});
    row("low alone", {'a', 0xDC00, 'b'}, {'a', 'b'});
    row("high last", {'a', 0xDBFF}, {'a'});
    row("low first", {0xDFFF, 'a'}, {'a'});
    row("the wrong way round", {0xDC00, 0xD800}, {});
    row("high before a pair", {0xD800, 0xD83D, 0xDE00}, {0xD83D, 0xDE00});
    row("low behind a pair", {0xD83D, 0xDE00, 0xDE00}, {0xD83D, 0xDE00});
    // What is left must not meet to a pair by itself.
    row("halves apart", {0xD83D, 1, 0xDE00}, {});
    row("halves around U+FFFE", {0xD83D, 0xFFFE, 0xDE00}, {});
}

void tst_KestraProjectHelper::writableText()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    const QString written = KestraProjectHelper::writableText(text);
    QCOMPARE(written, expected);
    QCOMPARE(KestraProjectHelper::writableText(written), written);
}

void tst_KestraProjectHelper::everyWritableTextComesBack()
{
    QString text;
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        if (isXmlCharacter(unit))
            text += QChar(unit);
    }
    for (uint plane = 1; plane <= 16; ++plane) {
        for (uint code : {0x0u, 0x1u, 0xABCDu, 0xFFFDu, 0xFFFEu, 0xFFFFu})
            text += characters({QChar::highSurrogate(plane << 16 | code), QChar::lowSurrogate(plane << 16 | code)});
    }
    QCOMPARE(KestraProjectHelper::writableText(text), text);

    KestraProjectHelper helper;
    QDomDocument document;
    bool ok = false;
    document.appendChild(helper.createElement(document, ok, {"{u}"}, {text}, {"v"}, {text}, {text}));
    const QByteArray bytes = KestraProjectHelper::toByteArray(document);
    const QDomElement color = parsed(bytes).documentElement().firstChildElement();
    for (const char *name : {"name", "originatingPreset", "colorId"})
        QVERIFY2(color.attribute(name) == text, name);

    QXmlStreamReader reader(bytes);
    QVERIFY(reader.readNextStartElement() && reader.readNextStartElement());
    QVERIFY(reader.attributes().value("name") == text);
    reader.skipCurrentElement();
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
}

void tst_KestraProjectHelper::everyUnwritableTextLoads()
{
    QStringList texts;
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        if (!isXmlCharacter(unit) && (!isSurrogate(unit) || unit % 64 == 0))
            texts << "a" + character(unit) + "b";
    }
    KestraProjectHelper helper;
    QDomDocument document;
    bool ok = false;
    document.appendChild(helper.createElement(document, ok, texts, texts, texts, texts, texts));
    const QByteArray bytes = KestraProjectHelper::toByteArray(document);
    QCOMPARE(streamError(bytes), QString());
    int count = 0;
    const QDomDocument again = parsed(bytes);
    QDomElement color = again.documentElement().firstChildElement();
    for (; !color.isNull(); color = color.nextSiblingElement(), ++count) {
        for (const char *name : {"name", "uid", "value", "originatingPreset", "colorId"})
            QCOMPARE(color.attribute(name), QString("ab"));
    }
    QCOMPARE(count, int(texts.size()));
}

TREL_TEST_MAIN_WITH(QGuiApplication, tst_KestraProjectHelper, childCases)
#include "tst_KestraProjectHelper.moc"
