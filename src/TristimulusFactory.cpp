#include "TristimulusFactory.h"

#include "ProfileDatabase_p.h"
#include "Tristimulus.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QObject>

#include <vector>

namespace {

constexpr const char *RED = QT_TRANSLATE_NOOP("QObject", "Red");
constexpr const char *GREEN = QT_TRANSLATE_NOOP("QObject", "Green");
constexpr const char *BLUE = QT_TRANSLATE_NOOP("QObject", "Blue");
constexpr const char *AMBER = QT_TRANSLATE_NOOP("QObject", "Amber");
constexpr const char *WHITE = QT_TRANSLATE_NOOP("QObject", "White");
constexpr const char *MINT = QT_TRANSLATE_NOOP("QObject", "Mint");

struct Emitter
{
    const char *name;
    double X;
    double Y;
    double Z;
};

struct DataSet
{
    int key;
    std::vector<Emitter> emitters;
};

/// Measured output of the emitters, CIE 1931, in a unit of its own for each set.
const std::vector<DataSet> &builtInSets()
{
    // clang-format off
    static const std::vector<DataSet> sets = {
        {1, {
            {RED, 11740, 5160, 0},
            {GREEN, 1554, 5817, 521},
            {BLUE, 5410, 480, 32210},
            {AMBER, 5553, 4321, 55},
            {WHITE, 6491, 6777, 4092},
        }},
        {2, {
            {RED, 510, 250, 10},
            {GREEN, 188, 581, 63},
            {BLUE, 181, 98, 943},
            {MINT, 319, 391, 134},
            {WHITE, 334, 338, 188},
        }},
        {3, { // set 1 without its amber
            {RED, 11740, 5160, 0},
            {GREEN, 1554, 5817, 521},
            {BLUE, 5410, 480, 32210},
            {WHITE, 6491, 6777, 4092},
        }},
        {5, {
            {RED, 490.1758, 220.975, 8.6375},
            {GREEN, 167.1244, 540.001, 81.1972},
            {BLUE, 162.222, 100, 848.8889},
            {AMBER, 360.0982, 268.4369, 26.189},
        }},
        {6, {
            {RED, 490.1758, 220.975, 8.6375},
            {GREEN, 167.1244, 540.001, 81.1972},
            {BLUE, 162.222, 100, 848.8889},
            {WHITE, 416.7922, 422.6625, 334.6078},
        }},
        {7, {
            {RED, 442.9544, 199, 10.5046},
            {GREEN, 160.8801, 504, 92.5591},
            {BLUE, 150, 90, 760},
        }},
        {8, {
            {RED, 1241.8235, 558, 23.7059},
            {GREEN, 531.2934, 1628, 277.8323},
            {BLUE, 402.7027, 100, 2200},
            {AMBER, 987.0858, 757, 12.2947},
        }},
        {9, {
            {RED, 1241.8235, 558, 23.7059},
            {GREEN, 531.2934, 1628, 277.8323},
            {BLUE, 402.7027, 100, 2200},
            {WHITE, 870.3271, 868, 588.7507},
        }},
    };
    // clang-format on
    return sets;
}

/// For every other key, the single-channel profile included (ODD-46, ODD-49): RGB primaries close to those of
/// sRGB, with Y adding up to 1.
const std::vector<Emitter> &defaultSet()
{
    static const std::vector<Emitter> set = {
        {RED, 0.4123152, 0.2126, 0.0193273}, {GREEN, 0.35765, 0.7153, 0.1192167}, {BLUE, 0.18025, 0.0721, 0.9493167}};
    return set;
}

const std::vector<Emitter> &emittersFor(int key)
{
    for (const DataSet &set : builtInSets()) {
        if (set.key == key)
            return set.emitters;
    }
    return defaultSet();
}

/// Generic RGB borrows the data of the first profile with the configuration's layout.
int registryKey(ColorUtils::HuelockProfileID profile, ColorUtils::ChannelConfiguration configuration)
{
    if (profile != ColorUtils::GENERIC_RGB)
        return profile;
    switch (configuration) {
    case ColorUtils::CONFIG_RGBAW:
        return ColorUtils::STRAND_BEAM_KVX;
    case ColorUtils::CONFIG_RGBWW:
        return ColorUtils::TESSEL_COVELINE;
    case ColorUtils::CONFIG_RGBW:
        return ColorUtils::GENERIC_RGBW;
    default:
        return ColorUtils::GENERIC_RGB;
    }
}

void fill(Tristimulus *tristimulus, const std::vector<Emitter> &emitters)
{
    QVector<double> X;
    QVector<double> Y;
    QVector<double> Z;
    QStringList names;
    for (const Emitter &emitter : emitters) {
        X.append(emitter.X);
        Y.append(emitter.Y);
        Z.append(emitter.Z);
        names.append(QObject::tr(emitter.name));
    }
    tristimulus->setX(X);
    tristimulus->setY(Y);
    tristimulus->setZ(Z);
    tristimulus->setChannelNames(names);
}

} // namespace

TristimulusFactory *TristimulusFactory::s_instance = nullptr;

TristimulusFactory *TristimulusFactory::getInstance()
{
    if (!s_instance) {
        // Published first: computing a gamut and reading the database come back here.
        s_instance = new TristimulusFactory;
        s_instance->populate();
    }
    return s_instance;
}

TristimulusFactory::~TristimulusFactory()
{
    qDeleteAll(m_tristimuli);
}

Tristimulus *TristimulusFactory::getTristimulus(ColorUtils::HuelockProfileID profile,
                                                ColorUtils::ChannelConfiguration configuration)
{
    // ODD-45: looked up by profile, stored by key. An object that the key held before stays alive, since
    // somebody may hold it.
    if (Tristimulus *registered = m_tristimuli.value(profile, nullptr))
        return registered;

    const int key = registryKey(profile, configuration);
    auto *tristimulus = new Tristimulus(ColorUtils::HuelockProfileID(key));
    fill(tristimulus, emittersFor(key));
    // Registered before the gamut is computed, since that looks this profile up again.
    m_tristimuli.insert(key, tristimulus);
    tristimulus->calculatePolygon();
    return tristimulus;
}

bool TristimulusFactory::parseXML(QIODevice *device)
{
    return device && readProfileDatabase(device);
}

void TristimulusFactory::populate()
{
    const QList<ColorUtils::HuelockProfileID> profiles = ColorUtils::huelockProfileIDList(true);
    for (const ColorUtils::HuelockProfileID profile : profiles)
        getTristimulus(profile, ColorUtils::nChannelConfigurationForHuelockProfileID(profile));

    QFile database;
    if (QCoreApplication::instance())
        database.setFileName(QCoreApplication::applicationDirPath() + "/../" + "FixtureProfiles.xml");
    if (database.fileName().isEmpty() || !database.open(QIODevice::ReadOnly)) {
        qDebug("could not open huelock profile database");
        return;
    }
    parseXML(&database);
}
