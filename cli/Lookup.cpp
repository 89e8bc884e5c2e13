#include "Lookup.h"

#include <CurveFactory.h>
#include <IOModeFactory.h>

#include <QMap>
#include <QString>

namespace {

/// The identifier below \a count whose number or name is \a text.
template <typename Name>
std::optional<int> find(const QString &text, int count, Name nameOf)
{
    for (int id = 0; id < count; ++id) {
        if (text == QString::number(id) || text.compare(nameOf(id), Qt::CaseInsensitive) == 0)
            return id;
    }
    return std::nullopt;
}

} // namespace

std::optional<ColorUtils::HuelockProfileID> Lookup::profile(const QString &text)
{
    const QMap<int, QString> names = ColorUtils::huelockProfileIDNameMap();
    const auto id = find(text, int(names.size()), [&](int i) { return names.value(i); });
    return id ? std::optional(ColorUtils::HuelockProfileID(*id)) : std::nullopt;
}

std::optional<ColorUtils::IOModeID> Lookup::mode(const QString &text)
{
    const auto id = find(text, ColorUtils::SINGLE_CHANNEL_IN_OUT + 1,
                         [](int i) { return IOModeFactory::instance()->nameForIOModeID(ColorUtils::IOModeID(i)); });
    return id ? std::optional(ColorUtils::IOModeID(*id)) : std::nullopt;
}

std::optional<int> Lookup::curve(const QString &text)
{
    const auto nameOf = [](int i) { return CurveFactory::Instance()->nameForCurveType(i); };
    int count = 0;
    while (!nameOf(count).isEmpty())
        ++count;
    return find(text, count, nameOf);
}
