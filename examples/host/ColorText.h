#pragma once

#include <TrelColor.h>

#include <QCoreApplication>
#include <QString>

/// Colours as people type them, and the check that every colour from outside passes before a fixture gets it.
///
/// The library reads texts leniently and ends the program at some of what they may say (a level count that is not
/// the fixture's); a host says no instead, with a reason.
class ColorText
{
    Q_DECLARE_TR_FUNCTIONS(ColorText)

public:
    /// The colour of \a text: a value string, "#" and 6, 8, 12 or 16 hexadecimal digits, or a colour name.
    /// \param reason receives what is wrong, in the user's language; untouched otherwise. May be null.
    /// \return an invalid colour when something is wrong.
    static TrelColor parse(const QString &text, QString *reason = nullptr);

    /// The shortest text that parse() turns into \a color again; empty for an invalid colour.
    static QString shown(const TrelColor &color);

    /// What keeps \a color from being sent to a fixture, in the user's language; empty for a good one: components in
    /// range, and of channel levels as many as the profile's configuration has.
    static QString problemOf(const TrelColor &color);
};
