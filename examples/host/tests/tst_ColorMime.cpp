#include "TestSupport.h"

#include "ColorMime.h"

#include <TrelColorLibrary.h>

#include <QColor>
#include <QGuiApplication>
#include <QMimeData>
#include <QRgba64>

#include <memory>

class tst_ColorMime : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase();
    void colorsGoThereAndBack();
    void otherProgramsReadThem();
    void otherProgramsColorsAreRead();
    void textsAreRead_data();
    void textsAreRead();
    void libraryColorsKeepTheirUids();
    void namesWithCommas();
    void foreignUidsAreNotOurs();
    void hostileColorsAreLeftOut();
    void nothing();
};

namespace {

using Data = std::unique_ptr<QMimeData>;

QStringList valuesOf(const QVector<NamedColor> &colors)
{
    QStringList values;
    for (const NamedColor &each : colors)
        values.append(each.color.aName());
    return values;
}

QStringList namesOf(const QVector<NamedColor> &colors)
{
    QStringList names;
    for (const NamedColor &each : colors)
        names.append(each.name);
    return names;
}

const QString YXY = QStringLiteral("aYxy;1;0;65535;0.500000;0.312700;0.329000");
const QString LEVELS = QStringLiteral("aNchannel;6;5;65535;100;200;300;400;1");

} // namespace

void tst_ColorMime::cleanupTestCase()
{
    TrelColorLibrary::cleanup();
}

void tst_ColorMime::colorsGoThereAndBack()
{
    const Data data(ColorMime::fromColors({{TrelColor(YXY), "White"}, {TrelColor(LEVELS), "Wash"}}));
    const QVector<NamedColor> colors = ColorMime::colorsOf(data.get());
    QCOMPARE(valuesOf(colors), QStringList({YXY, LEVELS}));
    QCOMPARE(namesOf(colors), QStringList({"White", "Wash"}));
    QCOMPARE(ColorMime::uidsOf(data.get()), QStringList());
    QVERIFY(ColorMime::canRead(data.get()));
    QVERIFY(data->hasFormat("data/x-trelcolor"));
    QVERIFY(data->hasFormat("data/x-trelcolor-name"));
}

void tst_ColorMime::otherProgramsReadThem()
{
    const Data data(ColorMime::fromColors({{TrelColor("#0080ff"), ""}, {TrelColor("red"), ""}}));
    QVERIFY(data->hasColor());
    QCOMPARE(qvariant_cast<QColor>(data->colorData()).name(), QString("#0080ff"));
    QCOMPARE(data->text(), QString("#0080ff\n#ff0000"));
    const Data fine(ColorMime::fromColors({{TrelColor("#00018000ffff"), ""}}));
    QCOMPARE(qvariant_cast<QColor>(fine->colorData()).rgba64().red(), quint16(1));
}

void tst_ColorMime::otherProgramsColorsAreRead()
{
    QMimeData data;
    data.setColorData(QColor::fromRgba64(1, 0x8000, 0xffff, 0x7fff));
    QVERIFY(ColorMime::canRead(&data));
    QCOMPARE(valuesOf(ColorMime::colorsOf(&data)), QStringList("aRgb;1;0;#7fff00018000ffff"));

    QMimeData raw;
    const quint16 words[] = {1, 0x8000, 0xffff, 0xffff};
    raw.setData("application/x-color", QByteArray(reinterpret_cast<const char *>(words), sizeof(words)));
    QCOMPARE(valuesOf(ColorMime::colorsOf(&raw)), QStringList("aRgb;1;0;#ffff00018000ffff"));

    QMimeData cut;
    cut.setData("application/x-color", QByteArray(7, 'x'));
    QCOMPARE(valuesOf(ColorMime::colorsOf(&cut)), QStringList());
}

void tst_ColorMime::textsAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("values");
    const QString red = "aRgb;1;0;#ffffffff00000000";
    QTest::newRow("hexadecimal") << "#ff0000" << QStringList(red);
    QTest::newRow("name") << "red" << QStringList(red);
    QTest::newRow("value string") << YXY << QStringList(YXY);
    QTest::newRow("lines") << "#ff0000\r\n\nsome words\nred\n" << QStringList({red, red});
    QTest::newRow("prose") << "The red one." << QStringList();
    QTest::newRow("empty") << "" << QStringList();
}

void tst_ColorMime::textsAreRead()
{
    QFETCH(QString, text);
    QMimeData data;
    data.setText(text);
    QTEST(valuesOf(ColorMime::colorsOf(&data)), "values");
}

void tst_ColorMime::libraryColorsKeepTheirUids()
{
    TrelColorLibrary &library = *TrelColorLibrary::Instance();
    const QString a = library.createColorWithName(TrelColor("red"), "A", "{a}", "Mine", "V-A");
    const QString b = library.createColorWithName(TrelColor(YXY), "B", "{b}", "Mine", "");
    const QModelIndex list = library.getIndexOfListId("Mine");
    const Data data(ColorMime::fromLibrary({library.getIndexOfUid(b), list, library.getIndexOfUid(a)}));
    QCOMPARE(ColorMime::uidsOf(data.get()), QStringList({"{b}", "{a}"}));
    QCOMPARE(namesOf(ColorMime::colorsOf(data.get())), QStringList({"B", "A"}));
    QCOMPARE(valuesOf(ColorMime::colorsOf(data.get())).first(), YXY);
    QCOMPARE(data->text().split("\n").last(), QString("#ff0000"));
    QVERIFY2(data->hasFormat("x-kestra/color"), "the library's mark of a host's drag");
    QCOMPARE(data->data("data/x-trelcolor-vendorid"), QByteArray(",V-A"));
}

void tst_ColorMime::namesWithCommas()
{
    TrelColorLibrary &library = *TrelColorLibrary::Instance();
    library.createColorWithName(TrelColor("red"), "Warm, soft", "{comma}", "Mine", "");
    const Data data(ColorMime::fromLibrary({library.getIndexOfUid("{comma}")}));
    QCOMPARE(namesOf(ColorMime::colorsOf(data.get())), QStringList("Warm, soft"));
    const Data colors(ColorMime::fromColors({{TrelColor("red"), "Warm, soft"}}));
    QCOMPARE(namesOf(ColorMime::colorsOf(colors.get())), QStringList(""));
}

void tst_ColorMime::foreignUidsAreNotOurs()
{
    QMimeData data;
    data.setData("data/x-trelcolor", "{a}aRgb;1;0;#ffffffff00000000");
    data.setData("x-kestra/color", "1");
    QCOMPARE(ColorMime::uidsOf(&data), QStringList());
    QCOMPARE(valuesOf(ColorMime::colorsOf(&data)), QStringList("aRgb;1;0;#ffffffff00000000"));
}

void tst_ColorMime::hostileColorsAreLeftOut()
{
    QMimeData data;
    data.setData("data/x-trelcolor", "aYxy;1;0;65535;9;0.3;0.3,aNchannel;6;5;65535;1;1,,aRgb;1;0;#ffffffff00000000");
    QCOMPARE(valuesOf(ColorMime::colorsOf(&data)), QStringList("aRgb;1;0;#ffffffff00000000"));
    QMimeData many;
    many.setText(QString("red\n").repeated(100000));
    QVERIFY(ColorMime::colorsOf(&many).size() <= 4096);
    TrelColor bright;
    bright.setYxy16(9, 0.3, 0.3);
    const Data written(ColorMime::fromColors({{bright, ""}, {TrelColor(), ""}}));
    QCOMPARE(written->formats(), QStringList());
}

void tst_ColorMime::nothing()
{
    QMimeData picture;
    picture.setData("image/png", "x");
    QVERIFY(!ColorMime::canRead(&picture));
    QVERIFY(!ColorMime::canRead(nullptr));
    QVERIFY(ColorMime::colorsOf(nullptr).isEmpty());
    QVERIFY(ColorMime::colorsOf(&picture).isEmpty());
    QVERIFY(ColorMime::uidsOf(nullptr).isEmpty());
}

TREL_TEST_MAIN_WITH(QGuiApplication, tst_ColorMime, {})
#include "tst_ColorMime.moc"
