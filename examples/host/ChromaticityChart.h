#pragma once

#include <TrelColor.h>

#include <QPointF>
#include <QRect>
#include <QWidget>

/// The CIE 1931 chromaticity diagram with the locus of white light, the gamut of a fixture profile and the current
/// colour; where the profile cannot give it, also the point that it gives instead.
///
/// Click and drag pick a chromaticity, the arrow keys move it (with Shift in fine steps); the luminance and the alpha
/// stay. Chromaticities that no light has are taken to the nearest one that has. Colours can be dropped on it.
class ChromaticityChart : public QWidget
{
    Q_OBJECT

public:
    /// White, for generic RGB.
    explicit ChromaticityChart(QWidget *parent = nullptr);

    /// The colour, in the form in which it was set, or as Yxy once it was picked.
    TrelColor color() const;

    /// Chromaticity at a place of the widget, which may lie outside the diagram.
    QPointF chromaticityAt(QPointF place) const;
    /// Place of a chromaticity in the widget, on a whole pixel of the screen.
    QPointF placeOf(QPointF xy) const;

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
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    QRectF area() const;
    QRect pixels() const;
    void drawGrid(QPainter &painter) const;
    void drawLight(QPainter &painter) const;
    void drawWhite(QPainter &painter) const;
    void drawGamut(QPainter &painter) const;
    void drawColor(QPainter &painter) const;
    void drawLegend(QPainter &painter) const;
    void pick(QPointF xy);
    void describe();

    TrelColor m_color = TrelColor(Qt::white);
    ColorUtils::HuelockProfileID m_profile = ColorUtils::GENERIC_RGB;
};
