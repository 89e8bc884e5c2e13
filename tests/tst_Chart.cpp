#include "TestSupport.h"

#include <CCTImageUtils.h>
#include <CCTUtils.h>

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamReader>

/// The picture that `trelcolor chart` draws, held against the chart's own geometry where it matters.
class tst_Chart : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void whiteLightPassesWhereTheGeometrySays_data();
    void whiteLightPassesWhereTheGeometrySays();
    void isoTemperatureLinesReachFullTint();
    void gamutCornersAreJoined();
    void colorsAreMarked();
    void spectralLocusEnclosesColor();
    void outsideTheSpectralLocusIsPaper();
    void svgIsWellFormed();
    void badArguments_data();
    void badArguments();

private:
    QImage drawn(const QStringList &options) const;

    QTemporaryDir m_folder;
};

namespace {

const QRectF RANGE(-0.06, 0.92, 0.9, -0.98);
const QRect WIDGET(0, 0, 900, 980);
const QRgb INK = 0xFF202020;
const QRgb PAPER = 0xFFFFFFFF;

struct Run
{
    int code = -1;
    QByteArray error;
};

Run trelcolor(const QStringList &arguments)
{
    QProcess process;
    process.start(TREL_COMMAND, arguments);
    if (!process.waitForFinished(60000))
        qFatal("the command did not end");
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardError()};
}

QPoint pixelOf(double x, double y)
{
    return CCTImageUtils::getPointFromxy(x, y, RANGE, WIDGET);
}

bool isReddish(QRgb pixel)
{
    return qRed(pixel) > qGreen(pixel) + 40 && qRed(pixel) > qBlue(pixel) + 40;
}

} // namespace

void tst_Chart::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

QImage tst_Chart::drawn(const QStringList &options) const
{
    const QString path = m_folder.filePath("chart.png");
    const Run run = trelcolor(QStringList{"chart", "--out", path} + options);
    if (run.code != 0 || !run.error.isEmpty())
        qFatal("chart ended with %d: %s", run.code, run.error.constData());
    return QImage(path);
}

void tst_Chart::whiteLightPassesWhereTheGeometrySays_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QRectF>("range");
    QTest::addColumn<QSize>("size");

    QTest::newRow("default") << QStringList() << RANGE << WIDGET.size();
    QTest::newRow("small") << QStringList{"--size", "300x320"} << RANGE << QSize(300, 320);
    QTest::newRow("close up") << QStringList{"--range", "0.25,0.45,0.3,-0.2", "--size", "600x400"}
                              << QRectF(0.25, 0.45, 0.3, -0.2) << QSize(600, 400);
    QTest::newRow("height downwards whatever its sign")
        << QStringList{"--range", "0.25,0.45,0.3,0.2", "--size", "600x400"} << QRectF(0.25, 0.45, 0.3, -0.2)
        << QSize(600, 400);
}

void tst_Chart::whiteLightPassesWhereTheGeometrySays()
{
    QFETCH(QStringList, options);
    QFETCH(QRectF, range);
    QFETCH(QSize, size);

    const QImage image = drawn(options);
    QCOMPARE(image.size(), size);
    for (int cct = CCTUtils::getMinCCT(); cct <= CCTUtils::getMaxCCT(); cct += 50) {
        const QPoint pixel = CCTImageUtils::getPointFromCCT(cct, range, QRect(QPoint(0, 0), size));
        QVERIFY2(image.rect().contains(pixel), qPrintable(QString("%1 K").arg(cct)));
        QVERIFY2(image.pixel(pixel) == INK, qPrintable(QString("%1 K").arg(cct)));
    }
}

void tst_Chart::isoTemperatureLinesReachFullTint()
{
    // Half way to full tint the line alone is drawn: darker than the colour a few pixels beside it.
    const QImage image = drawn({});
    for (const int cct : {3000, 4000, 5000, 6500}) {
        for (const int tint : {-CCTUtils::getMaxTint() / 2, CCTUtils::getMaxTint() / 2}) {
            const QPoint on = CCTImageUtils::getPointFromCCTAndTint(cct, tint, RANGE, WIDGET);
            int darkest = 255;
            for (int dx = -1; dx <= 1; ++dx)
                darkest = qMin(darkest, qGray(image.pixel(on + QPoint(dx, 0))));
            const int beside = qGray(image.pixel(on + QPoint(6, 0)));
            QVERIFY2(darkest < beside - 30, qPrintable(QString("%1 K, tint %2").arg(cct).arg(tint)));
        }
    }
}

void tst_Chart::gamutCornersAreJoined()
{
    // The default data's primaries: X / (X + Y + Z) and Y / (X + Y + Z) of each emitter.
    const QPointF corners[] = {{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}};
    const QImage without = drawn({});
    const QImage with = drawn({"--profile", "Generic RGB"});
    for (int i = 0; i < 3; ++i) {
        const QPointF middle = (corners[i] + corners[(i + 1) % 3]) / 2;
        const QPoint pixel = pixelOf(middle.x(), middle.y());
        QVERIFY2(with.pixel(pixel) != without.pixel(pixel), qPrintable(QString("edge %1").arg(i)));
        QVERIFY2(with.pixel(pixel + QPoint(12, 0)) == without.pixel(pixel + QPoint(12, 0)),
                 qPrintable(QString("beside edge %1").arg(i)));
    }
}

void tst_Chart::colorsAreMarked()
{
    const QImage image = drawn({"--colour", "red", "--colour", "aYxy;1;0;65535;0.5;0.2;0.5"});
    QCOMPARE(image.pixel(pixelOf(0.64, 0.33)), QRgb(0xFFFF0000));
    QVERIFY(image.pixel(pixelOf(0.2, 0.5)) != drawn({}).pixel(pixelOf(0.2, 0.5)));
}

void tst_Chart::spectralLocusEnclosesColor()
{
    // Monochromatic light of 700 nm (CIE 1931: 0.7347, 0.2653) is the locus' corner; just inside is red.
    const QImage image = drawn({});
    QVERIFY(qGray(image.pixel(pixelOf(0.7347, 0.2653))) < 0x60);
    QVERIFY(isReddish(image.pixel(pixelOf(0.68, 0.29))));
}

void tst_Chart::outsideTheSpectralLocusIsPaper()
{
    const QImage image = drawn({});
    QCOMPARE(image.pixel(pixelOf(0.65, 0.65)), PAPER);
    QCOMPARE(image.pixel(pixelOf(0.55, 0.05)), PAPER);
}

void tst_Chart::svgIsWellFormed()
{
    const QString path = m_folder.filePath("chart.svg");
    QCOMPARE(trelcolor({"chart", "--out", path, "--profile", "5", "--profile", "6", "--colour", "orange"}).code, 0);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&file);
    int polylines = 0;
    int texts = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement())
            continue;
        polylines += reader.name() == QLatin1String("polyline");
        texts += reader.name() == QLatin1String("text");
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QVERIFY(polylines >= 2);
    QVERIFY(texts > 20);
}

void tst_Chart::badArguments_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("code");

    QTest::newRow("no file") << QStringList() << 2;
    QTest::newRow("unknown ending") << QStringList{"--out", m_folder.filePath("chart.gif")} << 2;
    const QStringList out{"--out", m_folder.filePath("bad.png")};
    QTest::newRow("size in one") << out + QStringList{"--size", "100"} << 2;
    QTest::newRow("size too small") << out + QStringList{"--size", "99x200"} << 2;
    QTest::newRow("size too large") << out + QStringList{"--size", "8193x200"} << 2;
    QTest::newRow("range in three") << out + QStringList{"--range", "0,0.9,0.8"} << 2;
    QTest::newRow("range not a number") << out + QStringList{"--range", "nan,0.9,0.8,-0.9"} << 2;
    QTest::newRow("range without width") << out + QStringList{"--range", "0,0.9,0,-0.9"} << 2;
    QTest::newRow("range without height") << out + QStringList{"--range", "0,0.9,0.8,0"} << 2;
    QTest::newRow("unknown profile") << out + QStringList{"--profile", "10"} << 2;
    QTest::newRow("no such folder") << QStringList{"--out", "/nonexistent/chart.png"} << 1;
    QTest::newRow("no colour") << out + QStringList{"--colour", "nosuchcolour"} << 1;
}

void tst_Chart::badArguments()
{
    QFETCH(QStringList, options);
    QFETCH(int, code);
    const Run run = trelcolor(QStringList{"chart"} + options);
    QCOMPARE(run.code, code);
    QCOMPARE(run.error.count('\n'), 1);
    QVERIFY(run.error.startsWith("trelcolor: "));
}

TREL_TEST_MAIN(tst_Chart, {})

#include "tst_Chart.moc"
