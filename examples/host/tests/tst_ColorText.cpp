#include "TestSupport.h"

#include "ColorText.h"

#include <limits>

class tst_ColorText : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void refuses_data();
    void refuses();
    void shownTextsReadBack_data();
    void shownTextsReadBack();
    void problemsOfColors();
};

void tst_ColorText::reads_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");
    QTest::newRow("name") << "tomato"
                          << "aRgb;1;0;#ffffffff63634747";
    QTest::newRow("with spaces around") << "  Red\n"
                                        << "aRgb;1;0;#ffffffff00000000";
    QTest::newRow("8 bits") << "#0080ff"
                            << "aRgb;1;0;#ffff00008080ffff";
    QTest::newRow("8 bits with alpha") << "#800080ff"
                                       << "aRgb;1;0;#808000008080ffff";
    QTest::newRow("16 bits") << "#00018000ffff"
                             << "aRgb;1;0;#ffff00018000ffff";
    QTest::newRow("16 bits with alpha") << "#7fff00018000ffff"
                                        << "aRgb;1;0;#7fff00018000ffff";
    QTest::newRow("RGB value") << "aRgb;1;0;#ffff00018000ffff"
                               << "aRgb;1;0;#ffff00018000ffff";
    QTest::newRow("Yxy value") << "aYxy;1;0;65535;0.5;0.3127;0.329"
                               << "aYxy;1;0;65535;0.500000;0.312700;0.329000";
    QTest::newRow("levels") << "aNchannel;6;5;65535;100;200;300;400;1"
                            << "aNchannel;6;5;65535;100;200;300;400;1";
}

void tst_ColorText::reads()
{
    QFETCH(QString, text);
    QString reason = "untouched";
    const TrelColor color = ColorText::parse(text, &reason);
    QTEST(color.aName(), "value");
    QCOMPARE(reason, QString("untouched"));
}

void tst_ColorText::refuses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("reason");
    QTest::newRow("nothing") << " "
                             << "Nothing was entered.";
    QTest::newRow("unknown name") << "reddish"
                                  << "No colour is called “reddish”.";
    const QString digits = "After “#” stand 6, 8, 12 or 16 hexadecimal digits.";
    QTest::newRow("three digits") << "#fff" << digits;
    QTest::newRow("no digit") << "#00ff0g" << digits;
    QTest::newRow("too many digits") << "#00112233445566778" << digits;
    const QString incomplete = "This is no complete value string.";
    QTest::newRow("RGB with bad digits") << "aRgb;1;0;#ffff" << incomplete;
    QTest::newRow("RGB with more") << "aRgb;1;0;#ffff00018000ffff;1" << incomplete;
    QTest::newRow("Yxy with a word") << "aYxy;1;0;65535;half;0.3;0.3" << incomplete;
    QTest::newRow("Yxy that is not a number") << "aYxy;1;0;65535;nan;0.3;0.3" << incomplete;
    QTest::newRow("too short") << "a;b" << incomplete;
    QTest::newRow("Yxy with a field less") << "aYxy;1;0;65535;0.3;0.3"
                                           << "This is no colour.";
    QTest::newRow("unknown form") << "aLab;1;0;1;2" << incomplete;
    QTest::newRow("alpha beyond") << "aYxy;1;0;65536;0.5;0.3;0.3"
                                  << "This is no colour.";
    const QString range = "Y, x and y lie between 0 and 1.";
    QTest::newRow("too bright") << "aYxy;1;0;65535;5;0.3;0.3" << range;
    QTest::newRow("darker than black") << "aYxy;1;0;65535;-0.1;0.3;0.3" << range;
    QTest::newRow("x beyond") << "aYxy;1;0;65535;1;1.1;0.3" << range;
    QTest::newRow("unknown profile") << "aNchannel;6;42;65535;1;2;3;4;1"
                                     << "There is no fixture profile 42.";
    QTest::newRow("levels of another count") << "aNchannel;6;5;65535;1;2;3;1"
                                             << "WashLine PZ6 RGBA has other channels.";
    QTest::newRow("levels of another kind") << "aNchannel;3;5;65535;1;2;3;4;1"
                                            << "WashLine PZ6 RGBA has other channels.";
}

void tst_ColorText::refuses()
{
    QFETCH(QString, text);
    QString reason;
    QVERIFY(!ColorText::parse(text, &reason).isValid());
    QTEST(reason, "reason");
    QVERIFY(!ColorText::parse(text).isValid());
}

void tst_ColorText::shownTextsReadBack_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("shown");
    QTest::newRow("8 bits") << "aRgb;1;0;#ffffffff63634747"
                            << "#ff6347";
    QTest::newRow("16 bits") << "aRgb;1;0;#ffff00018000ffff"
                             << "#00018000ffff";
    QTest::newRow("alpha") << "aRgb;1;0;#8080ffff63634747"
                           << "aRgb;1;0;#8080ffff63634747";
    QTest::newRow("Yxy") << "aYxy;1;0;65535;0.500000;0.312700;0.329000"
                         << "aYxy;1;0;65535;0.500000;0.312700;0.329000";
    QTest::newRow("levels") << "aNchannel;6;5;65535;100;200;300;400;1"
                            << "aNchannel;6;5;65535;100;200;300;400;1";
}

void tst_ColorText::shownTextsReadBack()
{
    QFETCH(QString, value);
    const QString shown = ColorText::shown(TrelColor(value));
    QTEST(shown, "shown");
    QCOMPARE(ColorText::parse(shown).aName(), value);
}

void tst_ColorText::problemsOfColors()
{
    QCOMPARE(ColorText::problemOf(TrelColor()), QString("This is no colour."));
    QCOMPARE(ColorText::shown(TrelColor()), QString());
    QCOMPARE(ColorText::problemOf(TrelColor::fromHsvF(0.5, 1, 1)), QString());
    TrelColor color;
    color.setYxy16(std::numeric_limits<double>::quiet_NaN(), 0.3, 0.3);
    QVERIFY(!ColorText::problemOf(color).isEmpty());
    color.setYxy16(1, std::numeric_limits<double>::infinity(), 0.3);
    QVERIFY(!ColorText::problemOf(color).isEmpty());
}

TREL_TEST_MAIN_WITH(QCoreApplication, tst_ColorText, {})
#include "tst_ColorText.moc"
