#pragma once

#include <ColorUtils.h>

#include <optional>

/// Things that a person names by number or by name (upper or lower case), as the listings show them.
namespace Lookup {

std::optional<ColorUtils::HuelockProfileID> profile(const QString &text);
std::optional<ColorUtils::IOModeID> mode(const QString &text);
std::optional<int> curve(const QString &text);

} // namespace Lookup
