#include "Chart.h"

#include "SpectralLocus.h"

#include <CCTImageUtils.h>
#include <CCTUtils.h>

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <iterator>

namespace {

const QColor PAPER(0xff, 0xff, 0xff);
const QColor GRID(0xd8, 0xd8, 0xd8);
const QColor INK(0x20, 0x20, 0x20);
const QColor FAINT_INK(0x70, 0x70, 0x70);

/// What is drawn along the spectral locus and the locus of white light.
constexpr int LABELLED_WAVELENGTHS[] = {460, 480, 490, 500, 510, 520, 540, 560, 580, 600, 620, 700};
constexpr int ISO_TEMPERATURES[] = {2000, 2500, 3000, 4000, 5000, 6500, 11000};

/// One colour for each gamut, far apart in hue.
const QColor GAMUT_COLORS[] = {QColor(0x1f, 0x4e, 0x9e), QColor(0xb0, 0x3a, 0x2e), QColor(0x1e, 0x7d, 0x4f),
                               QColor(0x7d, 0x3c, 0x98), QColor(0xa8, 0x6b, 0x08)};

/// Draws one chart.
class Drawing
{
public:
    Drawing(const Chart &chart, QPainter &painter)
        : m_chart(chart)
        , m_painter(painter)
        , m_widget(QPoint(0, 0), chart.size)
    {
    }

    void draw()
    {
        m_painter.setRenderHint(QPainter::Antialiasing);
        QFont font = m_painter.font();
        font.setPixelSize(qBound(8, m_widget.height() / 70, 40));
        m_painter.setFont(font);
        m_painter.fillRect(m_widget, PAPER);
        drawGrid();
        drawSpectralLocus();
        drawGamuts();
        drawWhiteLight();
        drawMarks();
    }

private:
    /// The middle of the pixel of (x, y).
    QPointF place(double x, double y) const
    {
        return middle(CCTImageUtils::getPointFromxy(x, y, m_chart.range, m_widget));
    }

    static QPointF middle(QPoint pixel)
    {
        return QPointF(pixel) + QPointF(0.5, 0.5);
    }

    int space() const
    {
        return QFontMetrics(m_painter.font()).height() / 3;
    }

    void drawGrid()
    {
        for (int tenth = 0; tenth <= 9; ++tenth) {
            const double value = tenth / 10.0;
            const QString text = QString::number(value, 'f', 1);
            m_painter.setPen(QPen(GRID, 1));
            if (tenth <= 8)
                m_painter.drawLine(place(value, 0), place(value, 0.9));
            m_painter.drawLine(place(0, value), place(0.8, value));
            m_painter.setPen(FAINT_INK);
            const QFontMetrics metrics(m_painter.font());
            const double width = metrics.horizontalAdvance(text);
            if (tenth <= 8)
                m_painter.drawText(place(value, 0) + QPointF(-width / 2, metrics.ascent() + space()), text);
            m_painter.drawText(place(0, value) + QPointF(-width - space(), metrics.ascent() / 2.0), text);
        }
    }

    /// The chart's area in the colours of its chromaticities, as generic RGB shows them. Coarse, since it is
    /// smoothed when it is drawn.
    QImage chromaticities() const
    {
        constexpr int COARSENESS = 4;
        const QSize size = (m_widget.size() / COARSENESS).expandedTo(QSize(1, 1));
        const QRect area(QPoint(0, 0), size);
        QImage image(size, QImage::Format_RGB32);
        for (int row = 0; row < size.height(); ++row) {
            for (int column = 0; column < size.width(); ++column) {
                double x = 0;
                double y = 0;
                CCTImageUtils::getxyFromPoint(x, y, m_chart.range, QPoint(column, row), area);
                image.setPixel(column, row, x > 0 && y > 0 && x + y < 1 ? TrelColor(x, y).rgb() : PAPER.rgb());
            }
        }
        return image.scaled(m_widget.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }

    void drawSpectralLocus()
    {
        const QVector<SpectralColor> locus = spectralLocus();
        QPolygonF outline;
        for (const SpectralColor &color : locus)
            outline.append(place(color.xy.x(), color.xy.y()));
        outline.append(outline.first()); // the line of purples

        QPainterPath path;
        path.addPolygon(outline);
        m_painter.save();
        m_painter.setClipPath(path);
        m_painter.setOpacity(0.6);
        m_painter.drawImage(QPoint(0, 0), chromaticities());
        m_painter.restore();
        m_painter.setPen(QPen(INK, 1.5));
        m_painter.drawPolyline(outline);

        const QPointF white = place(1.0 / 3, 1.0 / 3);
        for (const SpectralColor &color : locus) {
            if (std::find(std::begin(LABELLED_WAVELENGTHS), std::end(LABELLED_WAVELENGTHS), color.wavelength)
                != std::end(LABELLED_WAVELENGTHS))
                drawWavelength(color, white);
        }
    }

    /// A tick that points away from white, and the wavelength behind it.
    void drawWavelength(const SpectralColor &color, QPointF white)
    {
        const QPointF foot = place(color.xy.x(), color.xy.y());
        QLineF tick(foot, foot + (foot - white));
        if (tick.length() == 0)
            return;
        tick.setLength(space());
        m_painter.drawLine(tick);
        const QFontMetrics metrics(m_painter.font());
        const QString text = QString::number(color.wavelength);
        tick.setLength(2.0 * space() + metrics.horizontalAdvance(text) / 2.0);
        m_painter.drawText(tick.p2() + QPointF(-metrics.horizontalAdvance(text) / 2.0, metrics.ascent() / 2.0), text);
    }

    /// A profile's gamut: the triangle of its red, green and blue as the colour conversion sees them.
    QPolygonF gamut(ColorUtils::HuelockProfileID profile) const
    {
        QPolygonF corners;
        for (const unsigned int rgb : {0xFF0000u, 0x00FF00u, 0x0000FFu}) {
            TrelColor primary(rgb);
            primary.setHuelockProfileID(profile);
            const TrelColor seen = primary.toYxy();
            corners.append(place(seen.getx(), seen.gety()));
        }
        return corners;
    }

    void drawGamuts()
    {
        const QFontMetrics metrics(m_painter.font());
        for (int i = 0; i < int(m_chart.profiles.size()); ++i) {
            const ColorUtils::HuelockProfileID profile = m_chart.profiles.at(i);
            m_painter.setPen(QPen(GAMUT_COLORS[std::size_t(i) % std::size(GAMUT_COLORS)], 2));
            m_painter.setBrush(Qt::NoBrush);
            m_painter.drawPolygon(gamut(profile));
            const QString name = ColorUtils::huelockProfileIDName(profile);
            m_painter.drawText(QPointF(m_widget.width() - metrics.horizontalAdvance(name) - 3 * space(),
                                       (i + 1) * 1.3 * metrics.height() + space()),
                               name);
        }
    }

    void drawWhiteLight()
    {
        const int full = CCTUtils::getMaxTint();
        const QFontMetrics metrics(m_painter.font());
        m_painter.setPen(QPen(FAINT_INK, 1));
        for (const int cct : ISO_TEMPERATURES) {
            const QPointF below = middle(CCTImageUtils::getPointFromCCTAndTint(cct, -full, m_chart.range, m_widget));
            m_painter.drawLine(middle(CCTImageUtils::getPointFromCCTAndTint(cct, full, m_chart.range, m_widget)),
                               below);
            m_painter.drawText(below + QPointF(-space(), metrics.ascent() + space()), QString::number(cct));
        }

        QPolygonF locus;
        for (int cct = CCTUtils::getMinCCT(); cct <= CCTUtils::getMaxCCT(); cct += CCTUtils::getCCTStepSize())
            locus.append(middle(CCTImageUtils::getPointFromCCT(cct, m_chart.range, m_widget)));
        m_painter.setPen(QPen(INK, 3));
        m_painter.drawPolyline(locus);
    }

    void drawMarks()
    {
        const double radius = 1.5 * space();
        for (const Chart::Mark &mark : m_chart.marks) {
            const TrelColor seen = mark.color.toYxy();
            const QPointF center = place(seen.getx(), seen.gety());
            m_painter.setPen(QPen(INK, 2));
            m_painter.setBrush(mark.color.getQColor(true));
            m_painter.drawEllipse(center, radius, radius);
            m_painter.drawText(center + QPointF(2 * radius, radius), mark.text);
        }
    }

    const Chart &m_chart;
    QPainter &m_painter;
    QRect m_widget;
};

} // namespace

void Chart::paint(QPainter &painter) const
{
    Drawing(*this, painter).draw();
}
