#pragma once

#include <TrelColor.h>

#include <QString>
#include <QVector>

/// One number of a colour as people edit it.
struct ColorField
{
    QString label;
    double minimum;
    double maximum;
    double step;
    int decimals;
    QString unit; ///< shown behind the number
    QString hint; ///< what it is, in a sentence
};

/// A way in which a colour is edited: its numbers, to and from a colour.
class ColorForm
{
public:
    /// The ways, in the order of the editor's pages.
    enum Kind : int {
        Rgb = 0,
        Hsv = 1,
        Yxy = 2,
        White = 3, ///< colour temperature, tint and luminance
        Levels = 4 ///< of the fixture's channels
    };
    static constexpr Kind KINDS[] = {Rgb, Hsv, Yxy, White, Levels};

    /// The form for fixtures of \a profile, which matters to #Levels only.
    ColorForm(Kind kind, ColorUtils::HuelockProfileID profile);

    /// The way in which it edits.
    Kind kind() const;
    /// What the form is called.
    QString name() const;
    /// The numbers, in order. Channels are named as the profile names them.
    QVector<ColorField> fields() const;

    /// The numbers of \a color. What it does not say (the hue of grey, the white point of a black) stays as in \a last.
    QVector<double> values(const TrelColor &color, const QVector<double> &last) const;

    /// The colour of \a values, each within its field's range, as many as there are fields.
    TrelColor color(const QVector<double> &values, unsigned int alpha16) const;

    /// Whether \a color lies within the ranges: only white light has a colour temperature and a tint.
    bool canShow(const TrelColor &color) const;

private:
    QVector<double> whiteValues(const TrelColor &color, const QVector<double> &last) const;
    QVector<double> levelValues(const TrelColor &color) const;

    Kind m_kind;
    ColorUtils::HuelockProfileID m_profile;
};
