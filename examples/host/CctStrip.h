#pragma once

#include "GradientSlider.h"

#include <TrelColor.h>

/// White light from warm to cold along a strip, evenly spaced in mired, as the eye sees it. Its value is the colour
/// temperature in kelvin.
///
/// Click, drag, wheel and keys pick a colour temperature; tint, luminance and alpha stay as far as the colour has them.
class CctStrip : public GradientSlider
{
    Q_OBJECT

public:
    /// White.
    explicit CctStrip(QWidget *parent = nullptr);

    /// The colour, in the form in which it was set, or as Yxy once it was picked.
    TrelColor color() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Shows \a color without emitting colorChanged(). A colour that no fixture takes (ColorText::problemOf()) is
    /// ignored. Without a colour temperature, the handle stays where it is, as an outline.
    void setColor(const TrelColor &color);

Q_SIGNALS:
    /// The user picked another colour temperature.
    void colorChanged(const TrelColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;
    double placeOf(int value) const override;
    int valueAt(double place) const override;

private:
    void showColor(const TrelColor &color);
    void pick(int cct);
    void drawLabels(QPainter &painter) const;

    TrelColor m_color = TrelColor(Qt::white);
    int m_tint = 0;
};
