#pragma once

#include <TrelColor.h>

#include <QRectF>
#include <QSize>
#include <QVector>

class QPainter;

/// A CIE 1931 chromaticity chart.
struct Chart
{
    /// A colour to mark, and what to write beside it.
    struct Mark
    {
        QString text;
        TrelColor color;
    };

    QSize size = QSize(900, 980);                   ///< pixels
    QRectF range = QRectF(-0.06, 0.92, 0.9, -0.98); ///< as CCTImageUtils takes it
    QVector<ColorUtils::HuelockProfileID> profiles; ///< whose gamuts are drawn
    QVector<Mark> marks;

    /// Draws the chart over the device of \a painter, which has the chart's size.
    void paint(QPainter &painter) const;
};
