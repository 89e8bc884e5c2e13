// A show of hours at full speed: every frame turns the colours of mixed fixtures into 64 universes, and each second of
// the show changes a colour of the library, which saves it. Frames must keep their time and memory must not grow.
//
// soak [--frames N] [--universes N] [--judge-time] [--any-memory]

#include <ColorUtils.h>
#include <IOModeFactory.h>
#include <TrelColor.h>
#include <TrelColorLibrary.h>

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <thread>
#include <vector>

#include <malloc.h>
#include <time.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int FRAMES_A_SECOND = 44;
constexpr int UNIVERSE_SLOTS = 512;
constexpr double FRAME_MS = 1000.0 / FRAMES_A_SECOND;
constexpr double MEMORY_LIMIT_KIB = 1024;
constexpr char NAME_OF_COLOR[] = "{soak}";

struct Options
{
    int frames = 8 * 3600 * FRAMES_A_SECOND;
    int universes = 64;
    bool judgesTime = false;
    bool judgesMemory = true;
};

struct Fixture
{
    ColorUtils::HuelockProfileID profile;
    ColorUtils::IOModeID mode;
    int channels;
    int resolution; ///< bytes a channel
    int curve;
    int onboardCurve;
    std::size_t slot; ///< first of its slots, counted over all universes
};

void ignoreMessage(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

Options optionsOf(const QStringList &arguments)
{
    Options options;
    for (int i = 1; i < int(arguments.size()); ++i) {
        if (arguments[i] == QLatin1String("--judge-time"))
            options.judgesTime = true;
        else if (arguments[i] == QLatin1String("--any-memory"))
            options.judgesMemory = false;
        else if (arguments[i] == QLatin1String("--frames"))
            options.frames = arguments.value(++i).toInt();
        else if (arguments[i] == QLatin1String("--universes"))
            options.universes = arguments.value(++i).toInt();
    }
    return options;
}

/// Fixtures of all profiles in turn, at both resolutions, as many as fit.
std::vector<Fixture> rig(int universes)
{
    std::vector<Fixture> fixtures;
    const QList<ColorUtils::HuelockProfileID> profiles = ColorUtils::huelockProfileIDList(true);
    for (int universe = 0; universe < universes; ++universe) {
        int slot = 0;
        for (int i = 0;; ++i) {
            const auto profile = profiles[(i + universe) % profiles.size()];
            const int channels =
                ColorUtils::configChannelCount(ColorUtils::nChannelConfigurationForHuelockProfileID(profile));
            const int resolution = 1 + i / int(profiles.size()) % 2;
            if (slot + channels * resolution > UNIVERSE_SLOTS)
                break;
            fixtures.push_back({profile, ColorUtils::defaultIOModeIDForHuelockProfileID(profile), channels, resolution,
                                i % 3, ColorUtils::defaultCurveTypeForHuelockProfileID(profile),
                                std::size_t(universe) * UNIVERSE_SLOTS + std::size_t(slot)});
            slot += channels * resolution;
        }
    }
    return fixtures;
}

/// Colours that a fade runs through: in and out of the gamuts, light and dark, RGB, HSV and Yxy.
std::vector<TrelColor> fade()
{
    constexpr int STEPS = 1021; // prime, so that fixtures and colours meet in every combination
    std::vector<TrelColor> colors;
    for (int i = 0; i < STEPS; ++i) {
        const double t = double(i) / STEPS;
        switch (i % 3) {
        case 0:
            colors.push_back(TrelColor::fromxyY(0.15 + 0.5 * t, 0.1 + 0.55 * (1 - t), 0.1 + 0.9 * t));
            break;
        case 1:
            colors.push_back(TrelColor::fromHsvF(t, 1 - t / 2, t));
            break;
        default:
            colors.push_back(TrelColor::fromRgbF(t, 1 - t, 0.5));
        }
    }
    return colors;
}

double residentKib()
{
    long pages = 0;
    std::ifstream statm("/proc/self/statm");
    statm >> pages >> pages;
    return double(pages) * double(sysconf(_SC_PAGESIZE)) / 1024;
}

/// Processor time that this thread has taken so far, in ms: what waits for the disk or for the processor takes none.
double processorMs()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

bool hasSave(std::size_t frame)
{
    return frame % FRAMES_A_SECOND == 0;
}

/// The slowest frame among those that save, or among the others.
double slowestOf(const std::vector<float> &times, bool areSaves)
{
    float slowest = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (hasSave(i) == areSaves)
            slowest = std::max(slowest, times[i]);
    }
    return double(slowest);
}

double msSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Value below which \a share of the \a values lie.
double percentile(std::vector<float> values, double share)
{
    const auto place = values.begin() + std::ptrdiff_t(double(values.size() - 1) * share);
    std::nth_element(values.begin(), place, values.end());
    return double(*place);
}

/// How late this machine wakes up a program that sleeps until a frame's time, in ms.
std::vector<float> timerJitter()
{
    constexpr int NAPS = 2000;
    std::vector<float> late;
    for (int i = 0; i < NAPS; ++i) {
        const auto due = Clock::now() + std::chrono::milliseconds(1);
        std::this_thread::sleep_until(due);
        late.push_back(float(msSince(due)));
    }
    return late;
}

/// The show and what it did.
class Show
{
public:
    explicit Show(const Options &options)
        : m_fixtures(rig(options.universes))
        , m_colors(fade())
        , m_slots(std::size_t(options.universes) * UNIVERSE_SLOTS)
    {
        TrelColorLibrary *library = TrelColorLibrary::Instance();
        library->loadUserColors(QString());
        library->createColorList(QStringLiteral("Soak"), true);
        library->createColor(TrelColor(Qt::red), QLatin1String(NAME_OF_COLOR), QStringLiteral("Soak"), QString(),
                             QString());
    }

    void frame(int number)
    {
        for (std::size_t i = 0; i < m_fixtures.size(); ++i) {
            const Fixture &fixture = m_fixtures[i];
            TrelColor color = m_colors[(i + std::size_t(number)) % m_colors.size()];
            ColorUtils::convertTrelColorToDMX(color, true, fixture.channels, fixture.resolution, &m_slots[fixture.slot],
                                              fixture.curve, fixture.onboardCurve, fixture.profile, fixture.mode);
        }
        if (hasSave(std::size_t(number)))
            TrelColorLibrary::Instance()->rename(QLatin1String(NAME_OF_COLOR), QString::number(number + 1), false);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    std::size_t fixtures() const
    {
        return m_fixtures.size();
    }

    /// Whether anything is lit at all.
    bool isLit() const
    {
        return std::count(m_slots.begin(), m_slots.end(), 0) < std::ptrdiff_t(m_slots.size() / 2);
    }

private:
    std::vector<Fixture> m_fixtures;
    std::vector<TrelColor> m_colors;
    std::vector<unsigned char> m_slots;
};

bool report(const char *what, double value, const char *unit, bool isMet, const char *wanted)
{
    std::printf("%-34s %12.3f %-4s %s%s\n", what, value, unit, wanted, isMet ? "" : "  MISSED");
    return isMet;
}

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    for (const char *variable : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(variable, QFile::encodeName(home.path()));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(ignoreMessage);
    const QGuiApplication application(argc, argv);
    const Options options = optionsOf(QCoreApplication::arguments());
    if (options.frames < FRAMES_A_SECOND || options.universes < 1)
        return 2;

    Show show(options);
    std::vector<float> times(std::size_t(options.frames));
    std::vector<float> processorTimes(times.size());
    for (int i = 0; i < FRAMES_A_SECOND; ++i) // buffers and caches grow in the first second
        show.frame(i);
    const double before = residentKib();
    for (int i = 0; i < options.frames; ++i) {
        const auto start = Clock::now();
        const double worked = processorMs();
        show.frame(i);
        processorTimes[std::size_t(i)] = float(processorMs() - worked);
        times[std::size_t(i)] = float(msSince(start));
    }
    const double growth = residentKib() - before;
    const std::vector<float> jitter = timerJitter();
    const double slowest = std::max(slowestOf(times, true), slowestOf(times, false));
    QFile saved(TrelColorLibrary::applicationSupportDir() + QStringLiteral("\\userColors.xml"));
    const int last = (options.frames - 1) / FRAMES_A_SECOND * FRAMES_A_SECOND + 1;
    const bool isSaved =
        saved.open(QIODevice::ReadOnly) && saved.readAll().contains('"' + QByteArray::number(last) + '"');

    std::printf("%d frames, %d universes, %zu fixtures\n", options.frames, options.universes, show.fixtures());
    bool isMet =
        report("memory growth", growth, "KiB", !options.judgesMemory || growth < MEMORY_LIMIT_KIB, "(below 1024)");
    isMet &= report("the last edit is in the file", isSaved ? 1 : 0, "", isSaved && show.isLit(), "(1)");
    report("median frame", percentile(times, 0.5), "ms", true, "");
    report("99.99th percentile", percentile(times, 0.9999), "ms", true, "");
    isMet &= report("slowest frame", slowest, "ms", !options.judgesTime || slowest < FRAME_MS, "(below 22.7)");
    report("slowest frame without a save", slowestOf(times, false), "ms", true, "");
    report("slowest frame, processor time", double(*std::max_element(processorTimes.begin(), processorTimes.end())),
           "ms", true, "(without waiting)");
    report("timer jitter, 99.9th percentile", percentile(jitter, 0.999), "ms", true, "(this machine's own)");
    report("timer jitter, largest", double(*std::max_element(jitter.begin(), jitter.end())), "ms", true,
           "(this machine's own)");
    return isMet ? 0 : 1;
}
