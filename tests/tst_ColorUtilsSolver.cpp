#include "ColorUtils.h"
#include "PlainSolver.h"
#include "ScalarSolver.h"
#include "TestSupport.h"
#include "Tristimulus.h"
#include "TristimulusFactory.h"

#include <glpk.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <random>

namespace {

using Levels = QVector<double>;

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double UNTOUCHED = -77;

/// A mixing level this far outside 0..1 is still taken, moved to the limit. An optimum whose levels rounding moves
/// further is refused, so this is also the most light that the search may lose.
constexpr double SNAP = 5e-5;

/// Some dozen operations on doubles.
constexpr double ARITHMETIC = 1e-12;

/// Multipliers have 24 bits (6e-8 each); the well-conditioned systems tested here multiply that by less than 16.
constexpr double ROUNDED_MULTIPLIERS = 1e-6;

struct Chromaticity
{
    double x;
    double y;
};

struct Yxy
{
    double Y;
    double x;
    double y;
};

struct Emitter
{
    double X;
    double Y;
    double Z;

    double sum() const
    {
        return X + Y + Z;
    }
    Chromaticity chromaticity() const
    {
        return {X / sum(), Y / sum()};
    }
};

using Emitters = QVector<Emitter>;

Tristimulus *dataOf(int profile, int configuration)
{
    return TristimulusFactory::getInstance()->getTristimulus(ColorUtils::HuelockProfileID(profile),
                                                             ColorUtils::ChannelConfiguration(configuration));
}

Emitters emittersOf(int profile, int configuration)
{
    Tristimulus *data = dataOf(profile, configuration);
    Emitters emitters;
    for (int c = 0; c < int(data->getX().size()); ++c)
        emitters.append({data->getX().at(c), data->getY().at(c), data->getZ().at(c)});
    return emitters;
}

/// The levels in an array of exactly the size that the solver may write.
Levels solved(const Yxy &target, int configuration, int profile, bool clampToGamut)
{
    const int count = ColorUtils::configChannelCount(ColorUtils::ChannelConfiguration(configuration));
    const std::unique_ptr<double[]> out(new double[std::size_t(count)]);
    std::fill(out.get(), out.get() + count, UNTOUCHED);
    const double Yxy[3] = {target.Y, target.x, target.y};
    ColorUtils::convertYxyToNChannel(Yxy, out.get(), ColorUtils::ChannelConfiguration(configuration),
                                     ColorUtils::HuelockProfileID(profile), clampToGamut);
    Levels levels;
    for (int c = 0; c < count; ++c)
        levels.append(out[std::size_t(c)]);
    return levels;
}

bool sameBits(const Levels &a, const Levels &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), PlainSolver::sameBits);
}

/// Exact where 0 or 1 is expected: those come from switches and from snapping, never from arithmetic.
bool agree(const Levels &actual, const Levels &expected)
{
    return std::equal(actual.begin(), actual.end(), expected.begin(), expected.end(), [](double a, double e) {
        return e == 0.0 || e == 1.0 ? a == e : std::abs(a - e) <= ROUNDED_MULTIPLIERS;
    });
}

QByteArray text(const Levels &levels)
{
    QByteArrayList list;
    for (const double level : levels)
        list.append(QByteArray::number(level, 'g', 17));
    return "(" + list.join(", ") + ")";
}

QByteArray text(const Yxy &target)
{
    return text(Levels{target.Y, target.x, target.y});
}

Chromaticity chromaticityOf(const Levels &levels, const Emitters &emitters)
{
    Emitter light{0, 0, 0};
    for (int c = 0; c < int(levels.size()); ++c) {
        light.X += levels.at(c) * emitters.at(c).X;
        light.Y += levels.at(c) * emitters.at(c).Y;
        light.Z += levels.at(c) * emitters.at(c).Z;
    }
    return light.chromaticity();
}

Chromaticity mixed(const Emitters &emitters, const std::array<double, 3> &shares)
{
    const double total = shares[0] + shares[1] + shares[2];
    const Chromaticity r = emitters.at(0).chromaticity();
    const Chromaticity g = emitters.at(1).chromaticity();
    const Chromaticity b = emitters.at(2).chromaticity();
    return {(shares[0] * r.x + shares[1] * g.x + shares[2] * b.x) / total,
            (shares[0] * r.y + shares[1] * g.y + shares[2] * b.y) / total};
}

/// Emitters of the tests' making in place of a profile's own, until the end of the scope.
class BorrowedProfile
{
public:
    BorrowedProfile(int profile, int configuration, const Emitters &emitters)
        : m_data(dataOf(profile, configuration))
        , m_x(m_data->getX())
        , m_y(m_data->getY())
        , m_z(m_data->getZ())
    {
        Levels x, y, z;
        for (const Emitter &emitter : emitters) {
            x.append(emitter.X);
            y.append(emitter.Y);
            z.append(emitter.Z);
        }
        m_data->setX(x);
        m_data->setY(y);
        m_data->setZ(z);
    }

    ~BorrowedProfile()
    {
        m_data->setX(m_x);
        m_data->setY(m_y);
        m_data->setZ(m_z);
    }

    BorrowedProfile(const BorrowedProfile &) = delete;
    BorrowedProfile &operator=(const BorrowedProfile &) = delete;

private:
    Tristimulus *m_data;
    Levels m_x, m_y, m_z;
};

/// At x = y = 1/4 the two ratios are 1 and 1/2, so an emitter's two constraint coefficients can be chosen freely.
constexpr Yxy QUARTER = {1, 0.25, 0.25};

Emitter withCoefficients(double a, double b, double light)
{
    return {a + light, light, 2 * (b + light)};
}

/// Reproducible on every machine, unlike the standard distributions.
class Random
{
public:
    double unit()
    {
        return double(m_engine()) / 4294967296.0;
    }
    double between(double low, double high)
    {
        return low + (high - low) * unit();
    }

private:
    std::mt19937 m_engine{20240517};
};

/// The solver's linear programme in terms of its own: the chromaticity equations without ratios, solved by GLPK.
class Programme
{
public:
    Programme(const Emitters &emitters, Chromaticity target)
        : m_problem(glp_create_prob())
    {
        glp_set_obj_dir(m_problem, GLP_MAX);
        glp_add_rows(m_problem, 2);
        glp_set_row_bnds(m_problem, 1, GLP_FX, 0, 0);
        glp_set_row_bnds(m_problem, 2, GLP_FX, 0, 0);
        glp_add_cols(m_problem, int(emitters.size()));
        for (int c = 0; c < int(emitters.size()); ++c)
            addEmitter(c + 1, emitters.at(c), target);
    }

    ~Programme()
    {
        glp_delete_prob(m_problem);
        glp_free_env();
    }

    Programme(const Programme &) = delete;
    Programme &operator=(const Programme &) = delete;

    bool solve()
    {
        glp_smcp parameters;
        glp_init_smcp(&parameters);
        parameters.msg_lev = GLP_MSG_OFF;
        parameters.tol_bnd = ARITHMETIC;
        parameters.tol_dj = ARITHMETIC;
        return glp_simplex(m_problem, &parameters) == 0 && glp_get_status(m_problem) == GLP_OPT;
    }

    double optimum() const
    {
        return glp_get_obj_val(m_problem);
    }

    /// The most light that levels which miss the equations by \a misses can give: the optimum is a concave
    /// function of the right-hand sides, and the duals are its slope.
    double bound(const std::array<double, 2> &misses) const
    {
        return optimum() + glp_get_row_dual(m_problem, 1) * misses[0] + glp_get_row_dual(m_problem, 2) * misses[1];
    }

    static std::array<double, 2> coefficients(const Emitter &emitter, Chromaticity target)
    {
        return {emitter.X - target.x * emitter.sum(), emitter.Y - target.y * emitter.sum()};
    }

private:
    void addEmitter(int column, const Emitter &emitter, Chromaticity target)
    {
        const auto both = coefficients(emitter, target);
        const int rows[] = {0, 1, 2};
        const double values[] = {0, both[0], both[1]};
        glp_set_col_bnds(m_problem, column, GLP_DB, 0, 1);
        glp_set_obj_coef(m_problem, column, emitter.Y);
        glp_set_mat_col(m_problem, column, 2, rows, values);
    }

    glp_prob *m_problem;
};

struct Mixture
{
    double light = 0;
    double total = 0;
    std::array<double, 2> misses{{0, 0}};
    std::array<double, 2> slack{{0, 0}}; ///< by how much snapping two levels can miss each equation
};

Mixture mixtureOf(const Levels &levels, const Emitters &emitters, Chromaticity target)
{
    Mixture mixture;
    std::array<QVector<double>, 2> reach;
    for (int c = 0; c < int(levels.size()); ++c) {
        const auto both = Programme::coefficients(emitters.at(c), target);
        mixture.light += levels.at(c) * emitters.at(c).Y;
        mixture.total += levels.at(c) * emitters.at(c).sum();
        for (std::size_t row = 0; row < 2; ++row) {
            mixture.misses[row] += levels.at(c) * both[row];
            reach[row].append(std::abs(both[row]));
        }
    }
    for (std::size_t row = 0; row < 2; ++row) {
        std::sort(reach[row].begin(), reach[row].end(), std::greater<double>());
        mixture.slack[row] = SNAP * (reach[row].at(0) + reach[row].at(1));
    }
    return mixture;
}

} // namespace

class tst_ColorUtilsSolver : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void emitterChromaticity_data();
    void emitterChromaticity();
    void outsideTheGamut_data();
    void outsideTheGamut();
    void clampingKeepsThePointsInside();
    void levelsScaleWithLuminance_data();
    void levelsScaleWithLuminance();
    void noLuminanceNoLevels();
    void firstOfEqualCandidatesStays_data();
    void firstOfEqualCandidatesStays();
    void snapsToTheLimits_data();
    void snapsToTheLimits();
    void unsolvableChromaticity_data();
    void unsolvableChromaticity();
    void odd37_zeroOfOneMinusXMinusYDecides();
    void fewerThanTwoChannels_data();
    void fewerThanTwoChannels();
    void usesTheFirstEmittersOnly();
    void unknownProfileUsesTheDefaultData();
    void dataShorterThanTheConfiguration_data();
    void dataShorterThanTheConfiguration();
    void agreesWithLinearProgramming_data();
    void agreesWithLinearProgramming();
    void sameBitsAsThePlainSolver_data();
    void sameBitsAsThePlainSolver();
    void sameBitsForAnyEmitters_data();
    void sameBitsForAnyEmitters();

    void elimination_data();
    void elimination();
    void odd36_eliminationRoundsItsMultipliers();
    void eliminationOfZeroPivots_data();
    void eliminationOfZeroPivots();
    void sameEliminationAsThePlainSolver();
    void validateDimmingRatio_data();
    void validateDimmingRatio();
    void xyzToYxy_data();
    void xyzToYxy();
    void odd38_xyzToYxyGivesTheLargestFirst();
    void minDistance_data();
    void minDistance();
    void pointFunctions();
    void expandFor5Channels_data();
    void expandFor5Channels();
};

void tst_ColorUtilsSolver::emitterChromaticity_data()
{
    QTest::addColumn<int>("profile");
    QTest::addColumn<int>("emitter");
    const char *const names[] = {"red", "green", "blue"};
    for (const int profile : {ColorUtils::GENERIC_RGB, ColorUtils::PIXELNODE_RGB_CLASS}) {
        for (int c = 0; c < 3; ++c)
            QTest::addRow("%s of profile %d", names[c], profile) << profile << c;
    }
}

void tst_ColorUtilsSolver::emitterChromaticity()
{
    QFETCH(int, profile);
    QFETCH(int, emitter);
    const Chromaticity target = emittersOf(profile, ColorUtils::CONFIG_RGB).at(emitter).chromaticity();
    const Levels levels = solved({0.6, target.x, target.y}, ColorUtils::CONFIG_RGB, profile, false);
    QCOMPARE(int(levels.size()), 3);
    for (int c = 0; c < 3; ++c) {
        const bool matches = c == emitter ? levels.at(c) == 0.6 : levels.at(c) >= 0 && levels.at(c) < 1e-12;
        QVERIFY2(matches, text(levels).constData());
    }
}

void tst_ColorUtilsSolver::outsideTheGamut_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::newRow("beyond red") << 0.8 << 0.15;
    QTest::newRow("beyond green") << 0.1 << 0.88;
    QTest::newRow("beyond blue") << 0.05 << 0.01;
    QTest::newRow("beyond the red-green edge") << 0.6 << 0.39;
    QTest::newRow("beyond the green-blue edge") << 0.05 << 0.35;
    QTest::newRow("beyond the blue-red edge") << 0.5 << 0.05;
    QTest::newRow("outside the diagram") << -0.4 << 1.3;
}

void tst_ColorUtilsSolver::outsideTheGamut()
{
    QFETCH(double, x);
    QFETCH(double, y);
    for (const int profile : {ColorUtils::GENERIC_RGB, ColorUtils::PIXELNODE_RGB_CLASS}) {
        QCOMPARE(solved({1, x, y}, ColorUtils::CONFIG_RGB, profile, false), Levels(3, 0.0));

        Chromaticity nearest{0, 0};
        QVERIFY(!dataOf(profile, ColorUtils::CONFIG_RGB)->closestPtOnGamut(x, y, nearest.x, nearest.y));
        const Levels clamped = solved({1, x, y}, ColorUtils::CONFIG_RGB, profile, true);
        const Levels atNearest = solved({1, nearest.x, nearest.y}, ColorUtils::CONFIG_RGB, profile, false);
        QVERIFY2(sameBits(clamped, atNearest), (text(clamped) + " " + text(atNearest)).constData());

        const Chromaticity result = chromaticityOf(clamped, emittersOf(profile, ColorUtils::CONFIG_RGB));
        QVERIFY(std::abs(result.x - nearest.x) <= ROUNDED_MULTIPLIERS);
        QVERIFY(std::abs(result.y - nearest.y) <= ROUNDED_MULTIPLIERS);
    }
}

void tst_ColorUtilsSolver::clampingKeepsThePointsInside()
{
    const Emitters emitters = emittersOf(ColorUtils::WASHLINE_PZ6_RGBW, ColorUtils::CONFIG_RGBW);
    Random random;
    for (int n = 0; n < 100; ++n) {
        const auto share = [&random] { return random.between(0.01, 1); };
        const Chromaticity at = mixed(emitters, {share(), share(), share()});
        const Yxy target{random.unit(), at.x, at.y};
        const Levels free = solved(target, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW, false);
        const Levels clamped = solved(target, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW, true);
        QVERIFY2(sameBits(free, clamped), text(target).constData());
    }
}

void tst_ColorUtilsSolver::levelsScaleWithLuminance_data()
{
    QTest::addColumn<double>("Y");
    QTest::newRow("a third") << 1.0 / 3;
    QTest::newRow("above one") << 2.5;
    QTest::newRow("negative") << -0.7;
    QTest::newRow("infinite") << INF;
    QTest::newRow("not a number") << NOT_A_NUMBER;
}

void tst_ColorUtilsSolver::levelsScaleWithLuminance()
{
    QFETCH(double, Y);
    Levels expected = solved({1, 0.36, 0.34}, ColorUtils::CONFIG_RGBAW, ColorUtils::STRAND_BEAM_KVX, true);
    QVERIFY(expected.contains(1.0));
    for (double &level : expected)
        level *= Y;
    const Levels levels = solved({Y, 0.36, 0.34}, ColorUtils::CONFIG_RGBAW, ColorUtils::STRAND_BEAM_KVX, true);
    QVERIFY2(sameBits(levels, expected), (text(levels) + " " + text(expected)).constData());
}

void tst_ColorUtilsSolver::noLuminanceNoLevels()
{
    for (const Chromaticity &at : {Chromaticity{0.33, 0.33}, Chromaticity{0.9, 0.05}, Chromaticity{0, 0}}) {
        for (const bool clampToGamut : {false, true}) {
            const Levels levels =
                solved({0, at.x, at.y}, ColorUtils::CONFIG_RGBWW, ColorUtils::TESSEL_COVELINE, clampToGamut);
            QCOMPARE(levels, Levels(5, 0.0));
        }
    }
}

void tst_ColorUtilsSolver::firstOfEqualCandidatesStays_data()
{
    // Every number of these systems is a multiple of 1/2, so the luminances are equal to the last bit.
    const Emitter twin = withCoefficients(2, 2, 5);
    const Emitter slope = withCoefficients(-4, 4, 5);
    const Emitter balance = withCoefficients(-1, -5, 5); // 1.5 twin + balance + 0.5 slope = 0
    const Emitter even = withCoefficients(0, -4, 5);     // twin + even + 0.5 slope = 0

    QTest::addColumn<Levels>("X");
    QTest::addColumn<Levels>("Y");
    QTest::addColumn<Levels>("Z");
    QTest::addColumn<Levels>("expected");
    const auto addRow = [](const char *name, const Emitters &emitters, const Levels &expected) {
        Levels x, y, z;
        for (const Emitter &emitter : emitters) {
            x.append(emitter.X);
            y.append(emitter.Y);
            z.append(emitter.Z);
        }
        QTest::newRow(name) << x << y << z << expected;
    };
    addRow("lower i", {twin, balance, slope, twin}, {0.5, 1, 0.5, 1});
    addRow("lower j", {slope, twin, balance, twin}, {0.5, 0.5, 1, 1});
    addRow("lower k", {slope, even, twin, twin}, {0.5, 1, 1, 0});
}

void tst_ColorUtilsSolver::firstOfEqualCandidatesStays()
{
    QFETCH(Levels, X);
    QFETCH(Levels, Y);
    QFETCH(Levels, Z);
    QFETCH(Levels, expected);
    Emitters emitters;
    for (int c = 0; c < 4; ++c)
        emitters.append({X.at(c), Y.at(c), Z.at(c)});
    const BorrowedProfile borrowed(ColorUtils::WASHLINE_PZ6_RGBW, ColorUtils::CONFIG_RGBW, emitters);
    QCOMPARE(solved(QUARTER, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW, false), expected);
}

void tst_ColorUtilsSolver::snapsToTheLimits_data()
{
    // The mixing levels of the pair (0, 1) with emitter 2 on, and what comes of them. Beyond the limits above 1
    // emitter 2 gives way instead; below 0 nothing else is left.
    QTest::addColumn<double>("first");
    QTest::addColumn<double>("second");
    QTest::addColumn<Levels>("expected");
    QTest::newRow("i inside the limits") << 0.25 << 0.5 << Levels{0.25, 0.5, 1};
    QTest::newRow("i just below 0") << -4.9e-5 << 0.5 << Levels{0, 0.5, 1};
    QTest::newRow("i too far below 0") << -5.1e-5 << 0.5 << Levels{0, 0, 0};
    QTest::newRow("i just above 0") << 4.9e-5 << 0.5 << Levels{4.9e-5, 0.5, 1};
    QTest::newRow("i below 1") << 1 - 6e-5 << 0.5 << Levels{1 - 6e-5, 0.5, 1};
    QTest::newRow("i just above 1") << 1 + 4.9e-5 << 0.5 << Levels{1, 0.5, 1};
    QTest::newRow("i too far above 1") << 1 + 5.1e-5 << 0.5 << Levels{1, 0.5 / (1 + 5.1e-5), 1 / (1 + 5.1e-5)};
    QTest::newRow("j just below 0") << 0.5 << -4.9e-5 << Levels{0.5, 0, 1};
    QTest::newRow("j too far below 0") << 0.5 << -5.1e-5 << Levels{0, 0, 0};
    QTest::newRow("j just above 0") << 0.5 << 4.9e-5 << Levels{0.5, 4.9e-5, 1};
    QTest::newRow("j below 1") << 0.5 << 1 - 6e-5 << Levels{0.5, 1 - 6e-5, 1};
    QTest::newRow("j just above 1") << 0.5 << 1 + 4.9e-5 << Levels{0.5, 1, 1};
    QTest::newRow("j too far above 1") << 0.5 << 1 + 5.1e-5 << Levels{0.5 / (1 + 5.1e-5), 1, 1 / (1 + 5.1e-5)};
}

void tst_ColorUtilsSolver::snapsToTheLimits()
{
    QFETCH(double, first);
    QFETCH(double, second);
    QFETCH(Levels, expected);
    const Emitters emitters{withCoefficients(2, -2, 8), withCoefficients(2, 2, 8),
                            withCoefficients(-2 * (first + second), 2 * (first - second), 8)};
    const BorrowedProfile borrowed(ColorUtils::PIXELNODE_RGB_CLASS, ColorUtils::CONFIG_RGB, emitters);
    const Levels levels = solved(QUARTER, ColorUtils::CONFIG_RGB, ColorUtils::PIXELNODE_RGB_CLASS, false);
    QVERIFY2(agree(levels, expected), text(levels).constData());
}

void tst_ColorUtilsSolver::unsolvableChromaticity_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::newRow("x = 0") << 0.0 << 0.4;
    QTest::newRow("y = 0") << 0.4 << 0.0;
    QTest::newRow("x = y = 0") << 0.0 << 0.0;
    QTest::newRow("x + y = 1") << 0.625 << 0.375;
    QTest::newRow("x = 1, y = 0") << 1.0 << 0.0;
    QTest::newRow("x = 0, y = 1") << 0.0 << 1.0;
    QTest::newRow("x not a number") << NOT_A_NUMBER << 0.3;
    QTest::newRow("y not a number") << 0.3 << NOT_A_NUMBER;
    QTest::newRow("x infinite") << INF << 0.3;
    QTest::newRow("x minus infinite") << -INF << 0.3;
    QTest::newRow("y infinite") << 0.3 << INF;
    QTest::newRow("both infinite") << INF << -INF;
}

void tst_ColorUtilsSolver::unsolvableChromaticity()
{
    QFETCH(double, x);
    QFETCH(double, y);
    for (const ColorUtils::HuelockProfileID profile : ColorUtils::huelockProfileIDList(true)) {
        const auto configuration = ColorUtils::nChannelConfigurationForHuelockProfileID(profile);
        const Levels levels = solved({1, x, y}, configuration, profile, false);
        QCOMPARE(levels, Levels(ColorUtils::configChannelCount(configuration), 0.0));
    }
}

void tst_ColorUtilsSolver::odd37_zeroOfOneMinusXMinusYDecides()
{
    const double x = 11740.0 / 16900; // the red corner, whose Z is 0
    const double y = 1 - x;
    QCOMPARE(1 - x - y, 0.0);
    for (const auto profile : {ColorUtils::STRAND_BEAM_KVX, ColorUtils::GENERIC_RGBW}) {
        const auto configuration = ColorUtils::nChannelConfigurationForHuelockProfileID(profile);
        const int count = ColorUtils::configChannelCount(configuration);
        QCOMPARE(solved({1, x, y}, configuration, profile, false), Levels(count, 0.0));
        QCOMPARE(solved({1, 0.5, 0.5}, configuration, profile, false), Levels(count, 0.0));
        for (const double neighbour : {std::nextafter(y, 0.0), std::nextafter(y, 1.0)}) {
            QVERIFY(1 - x - neighbour != 0.0);
            const Levels levels = solved({1, x, neighbour}, configuration, profile, false);
            QCOMPARE(levels.at(0), 1.0);
            for (int c = 1; c < count; ++c)
                QVERIFY2(std::abs(levels.at(c)) < 1e-9, text(levels).constData());
        }
    }
}

void tst_ColorUtilsSolver::fewerThanTwoChannels_data()
{
    QTest::addColumn<int>("configuration");
    QTest::addColumn<Levels>("expected");
    QTest::newRow("single channel") << int(ColorUtils::CONFIG_SINGLE_CHANNEL) << Levels{0, UNTOUCHED};
    QTest::newRow("unknown") << int(ColorUtils::CONFIG_UNKNOWN) << Levels{UNTOUCHED, UNTOUCHED};
    QTest::newRow("beyond the list") << 7 << Levels{UNTOUCHED, UNTOUCHED};
    QTest::newRow("negative") << -1 << Levels{UNTOUCHED, UNTOUCHED};
}

void tst_ColorUtilsSolver::fewerThanTwoChannels()
{
    QFETCH(int, configuration);
    QFETCH(Levels, expected);
    for (const bool clampToGamut : {false, true}) {
        const double Yxy[3] = {1, 0.3127, 0.329};
        Levels out(2, UNTOUCHED);
        ColorUtils::convertYxyToNChannel(Yxy, out.data(), ColorUtils::ChannelConfiguration(configuration),
                                         ColorUtils::GENERIC_SINGLE_CHANNEL, clampToGamut);
        QCOMPARE(out, expected);
    }
}

void tst_ColorUtilsSolver::usesTheFirstEmittersOnly()
{
    const Emitters emitters = emittersOf(ColorUtils::STRAND_BEAM_KVX, ColorUtils::CONFIG_RGBAW).mid(0, 3);
    const Levels narrow = solved({1, 0.35, 0.35}, ColorUtils::CONFIG_RGB, ColorUtils::STRAND_BEAM_KVX, false);
    const BorrowedProfile borrowed(ColorUtils::PIXELNODE_RGB_CLASS, ColorUtils::CONFIG_RGB, emitters);
    QCOMPARE(narrow, solved({1, 0.35, 0.35}, ColorUtils::CONFIG_RGB, ColorUtils::PIXELNODE_RGB_CLASS, false));
    QVERIFY(narrow.contains(1.0));
}

void tst_ColorUtilsSolver::unknownProfileUsesTheDefaultData()
{
    const Yxy target{0.8, 0.3127, 0.329};
    const Levels levels = solved(target, ColorUtils::CONFIG_RGB, 42, false);
    QCOMPARE(levels, solved(target, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB, false));
    QVERIFY(levels.contains(0.8));
}

void tst_ColorUtilsSolver::dataShorterThanTheConfiguration_data()
{
    QTest::addColumn<QString>("child");
    QTest::newRow("RGBAW of a three-channel profile") << "pixelnodeAsRgbaw";
    QTest::newRow("RGBW of the generic profile") << "genericAsRgbw";
}

void tst_ColorUtilsSolver::dataShorterThanTheConfiguration()
{
    QFETCH(QString, child);
    QVERIFY(diesWith(child, "index out of range"));
}

void tst_ColorUtilsSolver::agreesWithLinearProgramming_data()
{
    QTest::addColumn<int>("profile");
    for (const int profile : {0, 1, 2, 3, 5, 6, 7, 8, 9})
        QTest::addRow("profile %d", profile) << profile;
}

void tst_ColorUtilsSolver::agreesWithLinearProgramming()
{
    QFETCH(int, profile);
    const auto configuration =
        ColorUtils::nChannelConfigurationForHuelockProfileID(ColorUtils::HuelockProfileID(profile));
    const Emitters emitters = emittersOf(profile, configuration);
    QCOMPARE(int(emitters.size()), ColorUtils::configChannelCount(configuration));

    constexpr int INSIDE = 1000;
    constexpr int ANYWHERE = 500;
    Random random;
    int dark = 0;
    for (int n = 0; n < INSIDE + ANYWHERE; ++n) {
        const Chromaticity target = n < INSIDE ? mixed(emitters, {random.unit(), random.unit(), random.unit()})
                                               : Chromaticity{random.between(0.02, 0.75), random.between(0.02, 0.75)};
        if (target.x + target.y > 0.98)
            continue;
        const Levels levels = solved({1, target.x, target.y}, configuration, profile, false);
        Programme programme(emitters, target);
        QVERIFY(programme.solve());
        const Mixture mixture = mixtureOf(levels, emitters, target);
        const QByteArray what = text(Yxy{1, target.x, target.y}) + " -> " + text(levels) + ", optimum "
                                + QByteArray::number(programme.optimum(), 'g', 17);
        QVERIFY2(mixture.light >= programme.optimum() * (1 - SNAP), what.constData());
        QVERIFY2(mixture.light <= programme.bound(mixture.misses) + ARITHMETIC * mixture.light, what.constData());
        QVERIFY2(std::abs(mixture.misses[0]) <= mixture.slack[0], what.constData());
        QVERIFY2(std::abs(mixture.misses[1]) <= mixture.slack[1], what.constData());
        dark += mixture.light == 0.0;
    }
    QVERIFY(dark > 0);
    QVERIFY(dark < ANYWHERE);
}

namespace {

/// Where solvers differ if anywhere: corners, edges, their neighbours, and everything that makes a ratio degenerate.
QVector<Chromaticity> awkwardChromaticities(const Emitters &emitters)
{
    QVector<Chromaticity> points;
    const double values[] = {0.0,  -0.0, 0.25,   0.5,    1.0 / 3,      0.75, 1.0,
                             -0.3, 1.7,  5e-324, 1e-300, NOT_A_NUMBER, INF,  -INF};
    for (const double x : values) {
        for (const double y : values)
            points.append({x, y});
    }
    for (const Emitter &one : emitters) {
        const Chromaticity corner = one.chromaticity();
        points.append(corner);
        points.append({std::nextafter(corner.x, 1.0), corner.y});
        points.append({corner.x, std::nextafter(corner.y, 0.0)});
        for (const Emitter &other : emitters) {
            const Chromaticity end = other.chromaticity();
            for (const double t : {0.25, 0.5, 0.9})
                points.append({corner.x + t * (end.x - corner.x), corner.y + t * (end.y - corner.y)});
        }
    }
    return points;
}

// The plain solver takes its time where nothing is optimised.
#ifdef NDEBUG
constexpr int ROUNDS = 4300;
#else
constexpr int ROUNDS = 300;
#endif

QVector<Yxy> targetsFor(const Emitters &emitters)
{
    QVector<Yxy> targets;
    const double luminances[] = {1.0, 0.0, -0.0, 0.3, 2.5, -0.4, INF, NOT_A_NUMBER};
    int turn = 0;
    for (const Chromaticity &at : awkwardChromaticities(emitters)) {
        targets.append({1, at.x, at.y});
        targets.append({luminances[++turn % 8], at.x, at.y});
    }
    Random random;
    for (int n = 0; n < ROUNDS; ++n) {
        const Chromaticity inside = mixed(emitters, {random.unit(), random.unit(), random.unit()});
        targets.append({random.unit(), inside.x, inside.y});
        targets.append({random.unit(), random.unit(), random.unit()});
        const double x = random.unit();
        targets.append({1, x, 1 - x});
    }
    return targets;
}

} // namespace

void tst_ColorUtilsSolver::sameBitsAsThePlainSolver_data()
{
    const char *const NAMES[] = {"unknown", "RGB", "RGBAW", "RGBW", "single channel", "RGBWW", "RGBA"};
    QTest::addColumn<int>("profile");
    QTest::addColumn<int>("configuration");
    for (int profile = 0; profile < 10; ++profile) {
        for (int configuration = ColorUtils::CONFIG_RGB; configuration <= ColorUtils::CONFIG_RGBA; ++configuration) {
            const int count = ColorUtils::configChannelCount(ColorUtils::ChannelConfiguration(configuration));
            if (count <= int(dataOf(profile, configuration)->getX().size()))
                QTest::addRow("profile %d as %s", profile, NAMES[configuration]) << profile << configuration;
        }
    }
}

void tst_ColorUtilsSolver::sameBitsAsThePlainSolver()
{
    QFETCH(int, profile);
    QFETCH(int, configuration);
    const int count = ColorUtils::configChannelCount(ColorUtils::ChannelConfiguration(configuration));
    const QVector<Yxy> targets = targetsFor(emittersOf(profile, configuration));
    for (const Yxy &target : targets) {
        for (const bool clampToGamut : {false, true}) {
            const Levels actual = solved(target, configuration, profile, clampToGamut);
            const double Yxy[3] = {target.Y, target.x, target.y};
            Levels expected(count);
            PlainSolver::convertYxyToNChannel(Yxy, expected.data(), ColorUtils::ChannelConfiguration(configuration),
                                              ColorUtils::HuelockProfileID(profile), clampToGamut);
            const QByteArray what =
                text(target) + (clampToGamut ? " clamped -> " : " -> ") + text(actual) + ", plainly " + text(expected);
            QVERIFY2(sameBits(actual, expected), what.constData());
        }
    }
}

void tst_ColorUtilsSolver::sameBitsForAnyEmitters_data()
{
    QTest::addColumn<int>("configuration");
    QTest::newRow("3 emitters") << int(ColorUtils::CONFIG_RGB);
    QTest::newRow("4 emitters") << int(ColorUtils::CONFIG_RGBW);
    QTest::newRow("5 emitters") << int(ColorUtils::CONFIG_RGBAW);
}

void tst_ColorUtilsSolver::sameBitsForAnyEmitters()
{
    QFETCH(int, configuration);
    constexpr int PROFILE = ColorUtils::STRAND_BEAM_KVX;
    const int count = ColorUtils::configChannelCount(ColorUtils::ChannelConfiguration(configuration));
    // Small numbers make mixtures that are equally bright, of which one must win wherever it is found.
    const double special[] = {0.0, -0.0, 1.0, 2.0, 2.0, 3.0, 3.0, 5.0, -1.0, 1e300, 5e-324, INF, -INF, NOT_A_NUMBER};
    Random random;
    const auto number = [&](int from) {
        const int choice = int(random.between(0, from));
        return choice < int(std::size(special)) ? special[choice] : random.between(0, 100);
    };
    for (int n = 0; n < 10 * ROUNDS; ++n) {
        const int kinds = n % 3 == 0 ? 8 : n % 3 == 1 ? 60 : 400;
        Emitters emitters;
        for (int c = 0; c < count; ++c)
            emitters.append({number(kinds), number(kinds), number(kinds)});
        const BorrowedProfile borrowed(PROFILE, configuration, emitters);
        const Yxy target{1, n % 5 == 0 ? number(30) : random.unit(), n % 5 == 0 ? number(30) : random.unit()};
        const double Yxy[3] = {target.Y, target.x, target.y};
        Levels expected(count);
        PlainSolver::convertYxyToNChannel(Yxy, expected.data(), ColorUtils::ChannelConfiguration(configuration),
                                          ColorUtils::HuelockProfileID(PROFILE), false);
        const Levels actual = solved(target, configuration, PROFILE, false);
        Tristimulus *data = dataOf(PROFILE, configuration);
        Levels scalar(count);
        ScalarSolver::mix(data->getX(), data->getY(), data->getZ(), count, target.x, target.y, scalar.data());
        const QByteArray what =
            text(target) + " -> " + text(actual) + ", by scalars " + text(scalar) + ", plainly " + text(expected);
        QVERIFY2(sameBits(actual, expected) && sameBits(scalar, expected), what.constData());
    }
}

void tst_ColorUtilsSolver::elimination_data()
{
    QTest::addColumn<Levels>("rows");
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::newRow("a = 1, b = 2") << Levels{2, 1, 4, 1, 1, 3} << 1.0 << 2.0;
    QTest::newRow("a = -3, b = 5") << Levels{1, 0, -3, 0, 1, 5} << -3.0 << 5.0;
    QTest::newRow("a = 1/2, b = 1/2") << Levels{2, -4, -1, 2, 4, 3} << 0.5 << 0.5;
    QTest::newRow("no right-hand side") << Levels{4, 1, 0, 2, 1, 0} << 0.0 << 0.0;
}

void tst_ColorUtilsSolver::elimination()
{
    QFETCH(Levels, rows);
    QFETCH(double, a);
    QFETCH(double, b);
    const double m[2][3] = {{rows[0], rows[1], rows[2]}, {rows[3], rows[4], rows[5]}};
    double first = UNTOUCHED;
    double second = UNTOUCHED;
    ColorUtils::gaussianEliminationTwoByThree(m, first, second);
    QVERIFY(first == a);
    QVERIFY(second == b);
}

void tst_ColorUtilsSolver::odd36_eliminationRoundsItsMultipliers()
{
    struct Case
    {
        double m[2][3];
        double a;
        double b;
    };
    // Worked out with IEEE single and double precision by hand (the first) and outside this program. In the
    // third, each of the rounded multipliers and the residue that they leave in the first column shows.
    const Case cases[] = {
        {{{3, 0, 1}, {1, 1, 1}}, 0x1.555556p-2, 0x1.555555p-1},
        {{{2, 1, 5}, {1, 3, 5}}, 0x1.ffffffep+0, 0x1.0000004p+0},
        {{{3, 7, 11}, {5, 13, 17}}, 0x1.800000438e313p+2, -0x1.ffffed00002c0p-1},
        {{{7, 3, 1}, {3, -11, 5}}, 0x1.3594d719e1238p-2, -0x1.7d05f48c550ccp-2},
    };
    for (const Case &one : cases) {
        double a = UNTOUCHED;
        double b = UNTOUCHED;
        ColorUtils::gaussianEliminationTwoByThree(one.m, a, b);
        QVERIFY2(a == one.a && b == one.b, text(Levels{a, b, one.a, one.b}).constData());
    }
}

void tst_ColorUtilsSolver::eliminationOfZeroPivots_data()
{
    QTest::addColumn<Levels>("rows");
    QTest::newRow("first pivot") << Levels{0, 1, 1, 1, 0, 1};
    QTest::newRow("second pivot") << Levels{1, 2, 3, 2, 4, 7};
    QTest::newRow("all zero") << Levels{0, 0, 0, 0, 0, 0};
}

void tst_ColorUtilsSolver::eliminationOfZeroPivots()
{
    QFETCH(Levels, rows);
    const double m[2][3] = {{rows[0], rows[1], rows[2]}, {rows[3], rows[4], rows[5]}};
    double a = 0;
    double b = 0;
    ColorUtils::gaussianEliminationTwoByThree(m, a, b);
    QVERIFY(!std::isfinite(a));
    QVERIFY(!std::isfinite(b));
}

void tst_ColorUtilsSolver::sameEliminationAsThePlainSolver()
{
    Random random;
    for (int n = 0; n < 5000; ++n) {
        double m[2][3];
        for (auto &row : m) {
            for (double &entry : row)
                entry = random.between(-1, 1) * std::pow(10.0, random.between(-4, 4));
        }
        double a, b, plainA, plainB;
        ColorUtils::gaussianEliminationTwoByThree(m, a, b);
        PlainSolver::gaussianEliminationTwoByThree(m, plainA, plainB);
        QVERIFY2(sameBits({a, b}, {plainA, plainB}), text(Levels{a, b, plainA, plainB}).constData());
    }
}

void tst_ColorUtilsSolver::validateDimmingRatio_data()
{
    QTest::addColumn<Levels>("levels");
    QTest::addColumn<bool>("valid");
    QTest::newRow("empty") << Levels{} << true;
    QTest::newRow("both limits") << Levels{0, 1} << true;
    QTest::newRow("inside") << Levels{0.5, 0.25, 0.75} << true;
    QTest::newRow("minus zero") << Levels{-0.0} << true;
    QTest::newRow("first below") << Levels{-1e-300, 0.5} << false;
    QTest::newRow("last below") << Levels{0.5, 0.5, -1e-300} << false;
    QTest::newRow("first above") << Levels{std::nextafter(1.0, 2.0), 0} << false;
    QTest::newRow("last above") << Levels{0, 0, 0, 0, std::nextafter(1.0, 2.0)} << false;
    QTest::newRow("not a number") << Levels{0, NOT_A_NUMBER} << false;
    QTest::newRow("infinite") << Levels{INF} << false;
}

void tst_ColorUtilsSolver::validateDimmingRatio()
{
    QFETCH(Levels, levels);
    QTEST(ColorUtils::validateDimmingRatio(levels), "valid");
}

void tst_ColorUtilsSolver::xyzToYxy_data()
{
    QTest::addColumn<Levels>("XYZ");
    QTest::addColumn<Levels>("Yxy");
    QTest::newRow("Y largest") << Levels{1, 2, 1} << Levels{2, 0.25, 0.5};
    QTest::newRow("all alike") << Levels{3, 3, 6} << Levels{6, 0.25, 0.25};
    QTest::newRow("all zero") << Levels{0, 0, 0} << Levels{0, 0, 0};
    QTest::newRow("all negative") << Levels{-1, -2, -1} << Levels{0, 0, 0};
    QTest::newRow("zero and negative") << Levels{0, -2, 0} << Levels{0, 0, 0};
    QTest::newRow("only X positive") << Levels{4, -1, -1} << Levels{4, 2, -0.5};
    QTest::newRow("only Y positive") << Levels{-1, 3, 0} << Levels{3, -0.5, 1.5};
    QTest::newRow("only Z positive") << Levels{-1, -1, 4} << Levels{4, -0.5, -0.5};
    QTest::newRow("sum zero") << Levels{1, -1, 0} << Levels{1, INF, -INF};
}

void tst_ColorUtilsSolver::xyzToYxy()
{
    QFETCH(Levels, XYZ);
    QFETCH(Levels, Yxy);
    Levels result(3, UNTOUCHED);
    ColorUtils::convertXYZtoYxy(XYZ.constData(), result.data());
    QVERIFY2(result == Yxy, text(result).constData());
}

void tst_ColorUtilsSolver::odd38_xyzToYxyGivesTheLargestFirst()
{
    const double XYZ[][3] = {{4, 2, 2}, {1, 2, 5}, {2, 4, 2}};
    const double largest[] = {4, 5, 4};
    for (std::size_t n = 0; n < 3; ++n) {
        double Yxy[3];
        ColorUtils::convertXYZtoYxy(XYZ[n], Yxy);
        QVERIFY(Yxy[0] == largest[n]);
        QVERIFY(Yxy[1] == XYZ[n][0] / 8);
        QVERIFY(Yxy[2] == XYZ[n][1] / 8);
    }
}

void tst_ColorUtilsSolver::minDistance_data()
{
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<QPointF>("p");
    QTest::addColumn<QPointF>("closest");
    QTest::addColumn<double>("distance");
    const QPointF a(1, 1);
    const QPointF b(5, 1);
    QTest::newRow("foot inside") << a << b << QPointF(3, 4) << QPointF(3, 1) << 3.0;
    QTest::newRow("on the segment") << a << b << QPointF(2, 1) << QPointF(2, 1) << 0.0;
    QTest::newRow("before a") << a << b << QPointF(-2, 5) << a << 5.0;
    QTest::newRow("beyond b") << a << b << QPointF(8, -3) << b << 5.0;
    QTest::newRow("foot at a") << a << b << QPointF(1, 3) << a << 2.0;
    QTest::newRow("foot at b") << a << b << QPointF(5, -1) << b << 2.0;
    QTest::newRow("oblique") << QPointF(0, 0) << QPointF(4, 4) << QPointF(0, 2) << QPointF(1, 1) << std::sqrt(2.0);
    QTest::newRow("no length") << a << a << QPointF(4, 5) << a << 5.0;
    QTest::newRow("no length, at the point") << a << a << a << a << 0.0;
}

void tst_ColorUtilsSolver::minDistance()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(QPointF, p);
    QFETCH(QPointF, closest);
    QFETCH(double, distance);
    QPointF result(UNTOUCHED, UNTOUCHED);
    QVERIFY(ColorUtils::minDistance(a, b, p, result) == distance);
    QVERIFY(result.x() == closest.x());
    QVERIFY(result.y() == closest.y());
}

void tst_ColorUtilsSolver::pointFunctions()
{
    QVERIFY(dot(QPointF(2, 3), QPointF(5, -7)) == -11.0);
    QVERIFY(dot(QPointF(1, 0), QPointF(0, 1)) == 0.0);
    QVERIFY(length_squared(QPointF(1, 2), QPointF(4, 6)) == 25.0);
    QVERIFY(length_squared(QPointF(4, 6), QPointF(1, 2)) == 25.0);
    QVERIFY(distance(QPointF(1, 2), QPointF(4, 6)) == 5.0);
    QVERIFY(distance(QPointF(1, 2), QPointF(1, 2)) == 0.0);
}

void tst_ColorUtilsSolver::expandFor5Channels_data()
{
    using Bytes = QList<unsigned char>;
    QTest::addColumn<Bytes>("channels");
    QTest::addColumn<Bytes>("expected");
    QTest::newRow("three") << Bytes{1, 2, 3} << Bytes{1, 2, 3, 1, 2};
    QTest::newRow("six") << Bytes{1, 2, 3, 4, 5, 6} << Bytes{1, 2, 3, 4, 5, 6, 1, 2, 3, 4};
    QTest::newRow("none") << Bytes{} << Bytes{};
    QTest::newRow("one") << Bytes{1} << Bytes{};
    QTest::newRow("two") << Bytes{1, 2} << Bytes{};
    QTest::newRow("four") << Bytes{1, 2, 3, 4} << Bytes{};
    QTest::newRow("five") << Bytes{1, 2, 3, 4, 5} << Bytes{};
    QTest::newRow("seven") << Bytes{1, 2, 3, 4, 5, 6, 7} << Bytes{};
    QTest::newRow("nine") << Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9} << Bytes{};
}

void tst_ColorUtilsSolver::expandFor5Channels()
{
    QFETCH(QList<unsigned char>, channels);
    QTEST(ColorUtils::expandFor5Channels(channels), "expected");
}

const ChildCases childCases{
    {"pixelnodeAsRgbaw",
     [] {
         solved({1, 0.33, 0.33}, ColorUtils::CONFIG_RGBAW, ColorUtils::PIXELNODE_RGB_CLASS, false);
     }},
    {"genericAsRgbw",
     [] {
         solved({1, 0.33, 0.33}, ColorUtils::CONFIG_RGBW, ColorUtils::GENERIC_RGB, false);
     }},
};

TREL_TEST_MAIN(tst_ColorUtilsSolver, childCases)
#include "tst_ColorUtilsSolver.moc"
