#include "TestSupport.h"

#include <TrelColor.h>

#include <QCryptographicHash>

#include <random>

/// The same bits from every build: each preset compares itself with the same digests, at its own optimisation
/// level, compiler settings and version of Qt.
class tst_Determinism : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void sameBits_data();
    void sameBits();
};

using Digest = QByteArray (*)();
Q_DECLARE_METATYPE(Digest)

namespace {

constexpr int COLORS = 2000;
constexpr unsigned int SEED = 20240229;

void add(QCryptographicHash &hash, const void *data, std::size_t size)
{
    hash.addData(QByteArray(static_cast<const char *>(data), int(size)));
}

/// A double in 0..1 from integers alone: the standard library's distributions differ between implementations.
double unit(std::mt19937 &random)
{
    return double(random()) / double(std::mt19937::max());
}

QByteArray solverDigest(bool clampToGamut)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    std::mt19937 random(SEED);
    for (int i = 0; i < COLORS; ++i) {
        const double Yxy[] = {unit(random), 0.8 * unit(random), 0.9 * unit(random)};
        for (const auto profile : ColorUtils::huelockProfileIDList(true)) {
            const auto configuration = ColorUtils::nChannelConfigurationForHuelockProfileID(profile);
            double levels[5] = {};
            ColorUtils::convertYxyToNChannel(Yxy, levels, configuration, profile, clampToGamut);
            add(hash, levels, sizeof levels);
        }
    }
    return hash.result().toHex();
}

QByteArray clampedDigest()
{
    return solverDigest(true);
}

QByteArray unclampedDigest()
{
    return solverDigest(false);
}

QByteArray outputDigest()
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    std::mt19937 random(SEED);
    for (int i = 0; i < COLORS; ++i) {
        TrelColor color;
        if (i % 2)
            color.setYxyF(unit(random), 0.7 * unit(random), 0.8 * unit(random), 1.0);
        else
            color.setRgbF(unit(random), unit(random), unit(random));
        for (const auto profile : ColorUtils::huelockProfileIDList(true)) {
            for (const auto mode : ColorUtils::ioModesForHuelockProfileID(profile)) {
                unsigned char bytes[10] = {};
                const int resolution = 1 + i / 2 % 2;
                ColorUtils::convertTrelColorToDMX(color, false, 5, resolution, bytes, i / 4 % 3, i / 12 % 3, profile,
                                                  mode);
                add(hash, bytes, sizeof bytes);
            }
        }
    }
    return hash.result().toHex();
}

QByteArray conversionDigest()
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    std::mt19937 random(SEED);
    for (int i = 0; i < COLORS; ++i) {
        const TrelColor color = TrelColor::fromRgbF(unit(random), unit(random), unit(random), unit(random),
                                                    ColorUtils::HuelockProfileID(i % 10));
        double values[] = {color.getY(), color.getx(), color.gety(), color.hueF(), color.saturationF()};
        add(hash, values, sizeof values);
        hash.addData(color.toYxy().toRgb16(true).aName().toLatin1());
    }
    return hash.result().toHex();
}

} // namespace

void tst_Determinism::sameBits_data()
{
    QTest::addColumn<Digest>("digest");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("levels, clamped") << Digest(clampedDigest)
                                     << QByteArray("58c7a166caa8a56667c523c3d0e6c9363ea00651a64bffc2121731e47719751a");
    QTest::newRow("levels, not clamped") << Digest(
        unclampedDigest) << QByteArray("597041861be095df09048ae685e89fb74c22e85a7b9b86451ea630d2158286ee");
    QTest::newRow("DMX bytes") << Digest(outputDigest)
                               << QByteArray("1e07535689f8cb961842d387347d690da06999515aabc9e7d688b3135bfdaa87");
    QTest::newRow("RGB to Yxy, HSV and back")
        << Digest(conversionDigest) << QByteArray("3d9ea7915f0c206bf594d20e0ad7ef8ca4db49febe0b9a05209faa830f3230db");
}

void tst_Determinism::sameBits()
{
    QFETCH(Digest, digest);
    QFETCH(QByteArray, expected);
    QCOMPARE(digest(), expected);
}

TREL_TEST_MAIN(tst_Determinism, {})
#include "tst_Determinism.moc"
