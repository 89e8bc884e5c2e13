#pragma once

#include <TrelColor.h>

#include <QWidget>

/// The CIE 1931 chromaticity diagram with the locus of white light, the gamut of a fixture profile and the current
/// colour; where the profile cannot give it, also the point that it gives instead.
///
/// Click and drag pick a chromaticity, the arrow keys move it (with Shift in fine steps); the luminance and the alpha
/// stay. Chromaticities that no light has are taken to the nearest one that has.
class ChromaticityChart : public QWidget
{
    Q_OBJECT

public:
    /// White, for generic RGB.
    explicit ChromaticityChart(QWidget *parent = nullptr);

    /// The colour, in the form in which it was set, or as Yxy once it was picked.
    TrelColor color() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Shows \a color without emitting colorChanged(). A colour that no fixture takes (ColorText::problemOf()) is
    /// ignored.
    void setColor(const TrelColor &color);
    /// The profile whose gamut is drawn. An identifier without a profile stands for generic RGB.
    void setProfile(ColorUtils::HuelockProfileID profile);

Q_SIGNALS:
    /// The user picked another chromaticity.
    void colorChanged(const TrelColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    TrelColor m_color = TrelColor(Qt::white);
    ColorUtils::HuelockProfileID m_profile = ColorUtils::GENERIC_RGB;
};
