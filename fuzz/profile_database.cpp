// A fixture profile database.

#include "Fuzz.h"

#include "ProfileDatabase_p.h"

#include <Tristimulus.h>
#include <TristimulusFactory.h>

#include <QBuffer>
#include <QXmlStreamReader>

namespace {

/// Whether a channel's index leaves a gap, which stops a program on purpose.
bool leavesGap(const QByteArray &bytes)
{
    QXmlStreamReader reader(bytes);
    int channels = 0;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString name = reader.qualifiedName().toString();
        if (name == QLatin1String("Profile"))
            channels = 0;
        if (name != QLatin1String("Channel"))
            continue;
        const int index = reader.attributes().value(QLatin1String("index")).toString().toInt();
        if (index < 0 || index > channels)
            return true;
        ++channels;
    }
    return reader.hasError(); // the two readers may go on after a fault to a different point
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    if (leavesGap(bytes))
        return 0;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    readProfileDatabase(&buffer);
    for (int profile = -1; profile <= 10; ++profile) {
        const auto id = ColorUtils::HuelockProfileID(profile);
        Tristimulus *tristimulus = TristimulusFactory::getInstance()->getTristimulus(
            id, ColorUtils::nChannelConfigurationForHuelockProfileID(id));
        FUZZ_REQUIRE(tristimulus);
        FUZZ_REQUIRE(tristimulus->getX().size() == tristimulus->getY().size());
        FUZZ_REQUIRE(tristimulus->getX().size() == tristimulus->getZ().size());
        double x = 0;
        double y = 0;
        tristimulus->inside(0.3, 0.3);
        tristimulus->closestPtOnGamut(0.1, 0.9, x, y);
    }
    return 0;
}
