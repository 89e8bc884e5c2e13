#include "CurveFactory.h"
#include "GammaCurveTrel.h"
#include "GammaCurveTungsten.h"

#include "TestSupport.h"

#include <QTranslator>

#include <climits>
#include <cstdio>
#include <typeinfo>

namespace {

/// Puts every text of QObject's context in angle brackets and knows no other context.
class BracketTranslator : public QTranslator
{
public:
    bool isEmpty() const override
    {
        return false;
    }

    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return qstrcmp(context, "QObject") == 0 ? '<' + QString::fromUtf8(text) + '>' : QString();
    }
};

void printTranslated()
{
    char name[] = "child";
    char *argv[] = {name, nullptr};
    int argc = 1;
    QCoreApplication application(argc, argv);
    BracketTranslator translator;
    QCoreApplication::installTranslator(&translator);
    const CurveFactory *factory = CurveFactory::Instance();
    for (int type = 0; type < 3; ++type)
        std::printf("%s\n", qPrintable(factory->nameForCurveType(type)));
    for (const char *text : {"<Tungsten/Incandescent>", "Tungsten/Incandescent", "<Linear (Default)>"})
        std::printf("%d\n", factory->curveTypeFromName(text));
}

} // namespace

class tst_CurveFactory : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void singleton();
    void curves();
    void unknownTypeIsLinear_data();
    void unknownTypeIsLinear();
    void names_data();
    void names();
    void typeFromName_data();
    void typeFromName();
    void namesAreTranslated();
};

void tst_CurveFactory::singleton()
{
    CurveFactory *factory = CurveFactory::Instance();
    QVERIFY(factory);
    QCOMPARE(CurveFactory::Instance(), factory);
}

void tst_CurveFactory::curves()
{
    const CurveFactory *factory = CurveFactory::Instance();
    const Curve &linear = *factory->getCurve(0);
    const Curve &normal = *factory->getCurve(1);
    const Curve &tungsten = *factory->getCurve(2);
    QVERIFY(typeid(linear) == typeid(Curve));
    QVERIFY(typeid(normal) == typeid(GammaCurveTrelNormal));
    QVERIFY(typeid(tungsten) == typeid(GammaCurveTungsten));
    QVERIFY(factory->getCurve(1) == &normal);
}

void tst_CurveFactory::unknownTypeIsLinear_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("below the list, -1") << -1;
    QTest::newRow("first beyond the list") << 3;
    QTest::newRow("far above") << INT_MAX;
    QTest::newRow("far below") << INT_MIN;
}

void tst_CurveFactory::unknownTypeIsLinear()
{
    QFETCH(int, type);
    const CurveFactory *factory = CurveFactory::Instance();
    QVERIFY(factory->getCurve(0));
    QCOMPARE(factory->getCurve(type), factory->getCurve(0));
}

void tst_CurveFactory::names_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    QTest::newRow("linear") << 0 << "Linear (Default)";
    QTest::newRow("normal") << 1 << "Normal (Trel Gamma)";
    QTest::newRow("tungsten") << 2 << "Tungsten/Incandescent";
    QTest::newRow("below the list") << -1 << "";
    QTest::newRow("first beyond the list") << 3 << "";
    QTest::newRow("far above") << INT_MAX << "";
    QTest::newRow("far below") << INT_MIN << "";
}

void tst_CurveFactory::names()
{
    QFETCH(int, type);
    QFETCH(QString, name);
    QCOMPARE(CurveFactory::Instance()->nameForCurveType(type), name);
}

void tst_CurveFactory::typeFromName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("type");
    QTest::newRow("linear") << "Linear (Default)" << 0;
    QTest::newRow("normal") << "Normal (Trel Gamma)" << 1;
    QTest::newRow("tungsten") << "Tungsten/Incandescent" << 2;
    QTest::newRow("unknown text") << "Logarithmic" << -1;
    QTest::newRow("empty text") << "" << -1;
    QTest::newRow("null text") << QString() << -1;
    QTest::newRow("case counts") << "linear (default)" << -1;
    QTest::newRow("no part of a name") << "Linear" << -1;
    QTest::newRow("no spaces around") << " Linear (Default)" << -1;
}

void tst_CurveFactory::typeFromName()
{
    QFETCH(QString, name);
    QFETCH(int, type);
    QCOMPARE(CurveFactory::Instance()->curveTypeFromName(name), type);
}

void tst_CurveFactory::namesAreTranslated()
{
    const ChildResult result = runChild("translated");
    QVERIFY(!result.crashed);
    QCOMPARE(result.out, QByteArray("<Linear (Default)>\n<Normal (Trel Gamma)>\n<Tungsten/Incandescent>\n2\n-1\n0\n"));
}

const ChildCases childCases{{"translated", printTranslated}};

TREL_TEST_MAIN(tst_CurveFactory, childCases)

#include "tst_CurveFactory.moc"
