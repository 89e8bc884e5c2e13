#include "IOMode.h"

#include "TestSupport.h"

#include <type_traits>

namespace {

const QList<ColorUtils::HueLockMode> ON_OFF{ColorUtils::HUELOCK_ON, ColorUtils::HUELOCK_OFF};

template <typename T>
constexpr bool isValue = !std::is_reference_v<T>;

static_assert(isValue<decltype(std::declval<const IOMode &>().name())>, "a caller may keep the name");
static_assert(isValue<decltype(std::declval<const IOMode &>().availableHueLockEnabled())>, "a caller may edit it");
static_assert(!std::is_default_constructible_v<IOMode>, "a mode is complete from the start");

} // namespace

class tst_IOMode : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void fields_data();
    void fields();
    void returnedListIsACopy();
    void keepsNoReferenceToArguments();
};

void tst_IOMode::fields_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("is3toN");
    QTest::addColumn<bool>("isNtoN");
    QTest::addColumn<int>("configuration");
    QTest::addColumn<QList<int>>("hueLock");

    QTest::newRow("3 to N only") << 5 << "three" << true << false << 1 << QList<int>{1};
    QTest::newRow("N to N only") << 3 << "many" << false << true << 2 << QList<int>{0};
    QTest::newRow("both") << 0 << "both" << true << true << 6 << QList<int>{1, 0};
    QTest::newRow("neither") << 9 << "" << false << false << 0 << QList<int>{};
    QTest::newRow("list order kept") << 1 << "n" << false << true << 5 << QList<int>{0, 1};
    QTest::newRow("unlisted values are stored") << 42 << "x" << true << false << -1 << QList<int>{7, 7};
}

void tst_IOMode::fields()
{
    QFETCH(int, id);
    QFETCH(QString, name);
    QFETCH(bool, is3toN);
    QFETCH(bool, isNtoN);
    QFETCH(int, configuration);
    QFETCH(QList<int>, hueLock);

    QList<ColorUtils::HueLockMode> modes;
    for (const int mode : qAsConst(hueLock))
        modes.append(ColorUtils::HueLockMode(mode));
    const IOMode ioMode(ColorUtils::IOModeID(id), name, is3toN, isNtoN, ColorUtils::ChannelConfiguration(configuration),
                        modes);

    QCOMPARE(int(ioMode.index()), id);
    QCOMPARE(ioMode.name(), name);
    QCOMPARE(ioMode.is3toN(), is3toN);
    QCOMPARE(ioMode.isNtoN(), isNtoN);
    QCOMPARE(int(ioMode.inputChannelConfiguration()), configuration);
    QCOMPARE(ioMode.availableHueLockEnabled(), modes);
}

void tst_IOMode::returnedListIsACopy()
{
    const IOMode ioMode(ColorUtils::RGB_IN_OUT, "mode", true, true, ColorUtils::CONFIG_RGB, ON_OFF);
    QList<ColorUtils::HueLockMode> list = ioMode.availableHueLockEnabled();
    list.removeFirst();
    QCOMPARE(ioMode.availableHueLockEnabled(), ON_OFF);
}

void tst_IOMode::keepsNoReferenceToArguments()
{
    QString name("before");
    QList<ColorUtils::HueLockMode> list = ON_OFF;
    const IOMode ioMode(ColorUtils::RGB_IN_OUT, name, true, true, ColorUtils::CONFIG_RGB, list);
    name[0] = 'B';
    list.clear();
    QCOMPARE(ioMode.name(), QString("before"));
    QCOMPARE(ioMode.availableHueLockEnabled(), ON_OFF);
}

const ChildCases childCases;

TREL_TEST_MAIN(tst_IOMode, childCases)

#include "tst_IOMode.moc"
