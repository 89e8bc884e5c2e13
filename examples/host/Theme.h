#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

/// How the program looks. Surfaces are neutral grey, so that no tint of theirs changes how a colour is seen.
namespace Theme {

/// A look of the whole program; the numbers are those of the settings.
enum Variant : int { Dark = 0, Light = 1 };

/// Gives the application the variant's palette and style sheet; windows that are open follow.
void apply(Variant variant);
/// Applies the variant of the user's settings; dark where they name none.
void restore();
/// Applies \a variant and keeps it in the user's settings.
void choose(Variant variant);
/// The variant that was applied last; dark before.
Variant current();

/// The colour of a channel's bar, by the letter of Fixture::channelLetters().
QColor channelColor(QChar letter);
/// Text that says that something is wrong.
QColor warningColor();
/// A mark that says that something works.
QColor goodColor();

/// The program's icon \a name, drawn in the palette's text colour at whatever size and resolution, and again when the
/// palette changes.
QIcon icon(const QString &name);

} // namespace Theme
