#include "ProfileHandler.h"

#include "ColorUtils.h"
#include "Tristimulus.h"
#include "TristimulusFactory.h"

#include <QDebug>
#include <QXmlAttributes>

QT_WARNING_DISABLE_DEPRECATED // the SAX classes, as in the header

namespace {

QVector<double> component(const QVector<QVector<double>> &channels, int place)
{
    QVector<double> values;
    values.reserve(channels.size());
    for (const QVector<double> &channel : channels)
        values.append(channel.at(place));
    return values;
}

} // namespace

ProfileHandler::ProfileHandler() = default;

ProfileHandler::~ProfileHandler() = default;

bool ProfileHandler::startElement(const QString &, const QString &, const QString &qName,
                                  const QXmlAttributes &attributes)
{
    if (qName == QLatin1String("Profiles")) {
        m_state = InProfiles;
    } else if (qName == QLatin1String("Profile")) {
        m_state = InProfile;
        m_channels.clear();
        m_channelNames.clear();
        m_profileName = attributes.value(QStringLiteral("name"));
        m_profileIndex = attributes.value(QStringLiteral("index")).toInt();
    } else if (qName == QLatin1String("Channel")) {
        m_state = InChannel;
        addChannel(attributes);
    }
    return true;
}

bool ProfileHandler::endElement(const QString &, const QString &, const QString &qName)
{
    // ODD-48: one identifier to either side of the profiles passes as well.
    constexpr int LOWEST_INDEX = -1;
    constexpr int HIGHEST_INDEX = 10;
    if (qName != QLatin1String("Profile"))
        return true;
    if (m_profileIndex < LOWEST_INDEX || m_profileIndex > HIGHEST_INDEX) {
        qDebug("invalid profile definition");
        return true;
    }
    applyProfile();
    return true;
}

bool ProfileHandler::characters(const QString &)
{
    return true;
}

bool ProfileHandler::fatalError(const QXmlParseException &)
{
    return true;
}

QString ProfileHandler::errorString() const
{
    return QString();
}

void ProfileHandler::addChannel(const QXmlAttributes &attributes)
{
    // ODD-47: whatever element stands around it, the channel counts towards the lists as they are.
    const int index = attributes.value(QStringLiteral("index")).toInt();
    Q_ASSERT_X(index >= 0 && index <= int(m_channels.size()), "QVector<T>::insert", "index out of range");
    m_channels.insert(index, {attributes.value(QStringLiteral("X")).toDouble(),
                              attributes.value(QStringLiteral("Y")).toDouble(),
                              attributes.value(QStringLiteral("Z")).toDouble()});
    m_channelNames.insert(index, attributes.value(QStringLiteral("name")));
}

void ProfileHandler::applyProfile() const
{
    const auto profile = ColorUtils::HuelockProfileID(m_profileIndex);
    Tristimulus *tristimulus = TristimulusFactory::getInstance()->getTristimulus(
        profile, ColorUtils::nChannelConfigurationForHuelockProfileID(profile));
    Q_ASSERT(tristimulus);

    const QVector<double> values[] = {component(m_channels, 0), component(m_channels, 1), component(m_channels, 2)};
    for (const QVector<double> &vector : values)
        qDebug() << vector;
    tristimulus->setX(values[0]);
    tristimulus->setY(values[1]);
    tristimulus->setZ(values[2]);
    tristimulus->setChannelNames(QStringList(m_channelNames.toList()));
    tristimulus->calculatePolygon();
}
