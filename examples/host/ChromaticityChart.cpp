#include "ChromaticityChart.h"

#include "ColorMime.h"
#include "ColorText.h"
#include "Drops.h"
#include "Gamut.h"
#include "Theme.h"
#include "VisibleLight.h"

#include <CCTImageUtils.h>
#include <CCTUtils.h>

#include <QDropEvent>
#include <QImage>
#include <QKeyEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

/// What the chart spans, as CCTImageUtils takes it: y at the top, and a negative height.
const QRectF RANGE(-0.075, 0.88, 0.86, -0.96);

constexpr double KEY_STEP = 0.005;
constexpr double FINE_KEY_STEP = 0.0005;
constexpr int GRID_LINES = 8; ///< one for each tenth
constexpr int ISO_TEMPERATURES[] = {2000, 2700, 4000, 6500, 11000};
constexpr int LOCUS_POINTS = 20; ///< of the drawn locus; closer ones would show how they are rounded to pixels
constexpr double MIRED = 1e6;    ///< mired × kelvin
constexpr double MARK_RADIUS = 6.0;
constexpr double GIVEN_RADIUS = 4.0;
constexpr double FILL_OPACITY = 0.85;
constexpr double LEGEND_X = 0.28; ///< x at which the diagram has ended, at the legend's height
constexpr double LEGEND_MARGIN = 6.0;
constexpr int MIN_LEGEND_PIXELS = 8;
constexpr int LETTERS_ACROSS = 22; ///< letters that the diagram is wide at least, so that the margin holds "0.8"
constexpr int IMAGE_SIZE = 128;    ///< the diagram's colours are drawn coarse and smoothed

QColor faint(const QColor &ink, double opacity)
{
    QColor color = ink;
    color.setAlpha(int(std::lround(255.0 * opacity)));
    return color;
}

/// The colours of the chromaticities in RANGE, as generic RGB shows them.
QImage chromaticities()
{
    const QRect area(0, 0, IMAGE_SIZE, IMAGE_SIZE);
    QImage image(area.size(), QImage::Format_RGB32);
    for (int row = 0; row < IMAGE_SIZE; ++row) {
        for (int column = 0; column < IMAGE_SIZE; ++column) {
            double x = 0.0;
            double y = 0.0;
            CCTImageUtils::getxyFromPoint(x, y, RANGE, QPoint(column, row), area);
            const QPointF light = VisibleLight::nearest(QPointF(x, y));
            image.setPixel(column, row, TrelColor(light.x(), light.y()).rgb());
        }
    }
    return image;
}

/// A path through all of \a points without corners (a Catmull-Rom spline).
QPainterPath smoothPath(const QPolygonF &points)
{
    QPainterPath path(points.first());
    const auto at = [&](int i) { return points.at(std::clamp(i, 0, int(points.size()) - 1)); };
    for (int i = 0; i + 1 < points.size(); ++i) {
        const QPointF leaving = at(i) + (at(i + 1) - at(i - 1)) / 6.0;
        const QPointF arriving = at(i + 1) - (at(i + 2) - at(i)) / 6.0;
        path.cubicTo(leaving, arriving, at(i + 1));
    }
    return path;
}

QString chromaticityText(QPointF xy)
{
    const QLocale locale;
    return ChromaticityChart::tr("x %1  y %2").arg(locale.toString(xy.x(), 'f', 4), locale.toString(xy.y(), 'f', 4));
}

} // namespace

ChromaticityChart::ChromaticityChart(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::CrossCursor);
    setAcceptDrops(true);
    setAccessibleName(tr("Chromaticity chart"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    describe();
}

TrelColor ChromaticityChart::color() const
{
    return m_color;
}

QSize ChromaticityChart::sizeHint() const
{
    return QSize(360, 400);
}

QSize ChromaticityChart::minimumSizeHint() const
{
    return QSize(180, 200);
}

void ChromaticityChart::setColor(const TrelColor &color)
{
    if (!ColorText::problemOf(color).isEmpty())
        return;
    m_color = color;
    describe();
    update();
}

void ChromaticityChart::setProfile(ColorUtils::HuelockProfileID profile)
{
    const bool isKnown = ColorUtils::huelockProfileIDList(true).contains(profile);
    const auto known = isKnown ? profile : ColorUtils::GENERIC_RGB;
    if (known == m_profile)
        return;
    m_profile = known;
    describe();
    update();
}

/// The largest rectangle in which x and y have the same scale.
QRectF ChromaticityChart::area() const
{
    const double ratio = RANGE.width() / -RANGE.height();
    QSizeF size(height() * ratio, height());
    if (size.width() > width())
        size = QSizeF(width(), width() / ratio);
    return QRectF(QPointF((width() - size.width()) / 2.0, (height() - size.height()) / 2.0), size);
}

/// The area in pixels of the screen, finer than those of the widget where the screen is.
QRect ChromaticityChart::pixels() const
{
    return QRect(QPoint(0, 0), (area().size() * devicePixelRatioF()).toSize().expandedTo(QSize(1, 1)));
}

QPointF ChromaticityChart::placeOf(QPointF xy) const
{
    const QPointF pixel = CCTImageUtils::getPointFromxy(xy.x(), xy.y(), RANGE, pixels());
    return area().topLeft() + pixel / devicePixelRatioF();
}

QPointF ChromaticityChart::chromaticityAt(QPointF place) const
{
    const QPointF pixel = (place - area().topLeft()) * devicePixelRatioF();
    double x = 0.0;
    double y = 0.0;
    CCTImageUtils::getxyFromPoint(x, y, RANGE, CCTImageUtils::roundPoint(pixel), pixels());
    return QPointF(x, y);
}

void ChromaticityChart::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.fillRect(rect(), palette().base());
    QFont font = painter.font();
    font.setPixelSize(std::clamp(int(area().width() / LETTERS_ACROSS), MIN_LEGEND_PIXELS, fontInfo().pixelSize()));
    painter.setFont(font);
    drawGrid(painter);
    drawLight(painter);
    drawWhite(painter);
    drawGamut(painter);
    drawLegend(painter);
    drawColor(painter);
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

void ChromaticityChart::drawGrid(QPainter &painter) const
{
    const QColor ink = palette().color(QPalette::Text);
    const QFontMetrics metrics(painter.font());
    for (int tenth = 0; tenth <= GRID_LINES; ++tenth) {
        const double value = tenth / 10.0;
        painter.setPen(QPen(faint(ink, 0.12), 1));
        if (tenth < GRID_LINES)
            painter.drawLine(placeOf({value, 0.0}), placeOf({value, GRID_LINES / 10.0 + 0.05}));
        painter.drawLine(placeOf({0.0, value}), placeOf({GRID_LINES / 10.0 - 0.03, value}));
        if (tenth % 2 != 0)
            continue;
        const QString text = QLocale().toString(value, 'f', 1);
        painter.setPen(faint(ink, 0.6));
        const double textWidth = metrics.horizontalAdvance(text);
        if (tenth > 0 && tenth < GRID_LINES)
            painter.drawText(placeOf({value, 0.0}) + QPointF(-textWidth / 2.0, metrics.ascent() + 2.0), text);
        painter.drawText(placeOf({0.0, value}) + QPointF(-textWidth - 4.0, metrics.ascent() / 2.0 - 1.0), text);
    }
}

void ChromaticityChart::drawLight(QPainter &painter) const
{
    static const QImage image = chromaticities();
    QPolygonF outline;
    const QPolygonF border = VisibleLight::outline();
    for (const QPointF &xy : border)
        outline.append(placeOf(xy));
    QPainterPath path = smoothPath(outline);
    path.closeSubpath();
    painter.save();
    painter.setClipPath(path);
    painter.setOpacity(FILL_OPACITY);
    painter.drawImage(area(), image);
    painter.restore();
    painter.setPen(QPen(faint(palette().color(QPalette::Text), 0.7), 1.2));
    painter.drawPath(path);
}

/// On the bright middle of the diagram, black in either palette.
void ChromaticityChart::drawWhite(QPainter &painter) const
{
    const QRect widget = pixels();
    const auto place = [&](int cct, int tint) {
        const QPointF pixel = CCTImageUtils::getPointFromCCTAndTint(cct, tint, RANGE, widget);
        return area().topLeft() + pixel / devicePixelRatioF();
    };
    const int tint = CCTUtils::getMaxTint();
    painter.setPen(QPen(faint(Qt::black, 0.45), 1));
    for (const int cct : ISO_TEMPERATURES)
        painter.drawLine(place(cct, tint), place(cct, -tint));
    QPolygonF locus;
    const double warmest = MIRED / CCTUtils::getMinCCT();
    const double coldest = MIRED / CCTUtils::getMaxCCT();
    for (int i = 0; i < LOCUS_POINTS; ++i)
        locus.append(place(int(MIRED / (warmest + (coldest - warmest) * i / (LOCUS_POINTS - 1))), 0));
    painter.setPen(QPen(Qt::black, 1.6));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(smoothPath(locus));
}

void ChromaticityChart::drawGamut(QPainter &painter) const
{
    QPolygonF corners;
    const QPolygonF gamut = Gamut(m_profile).corners();
    for (const QPointF &xy : gamut)
        corners.append(placeOf(xy));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(faint(Qt::black, 0.6), 3.0)); // so that the white shows on bright colours
    painter.drawPolygon(corners);
    painter.setPen(QPen(Qt::white, 1.4));
    painter.drawPolygon(corners);
}

void ChromaticityChart::drawColor(QPainter &painter) const
{
    const Gamut::Clamped seen = Gamut(m_profile).clamp(m_color);
    if (!seen.isVisible)
        return;
    const QPointF wanted = placeOf(seen.wanted);
    const QPointF given = placeOf(seen.given);
    if (seen.isOutside) {
        painter.setPen(QPen(Qt::black, 1.4, Qt::DotLine));
        painter.drawLine(wanted, given);
        painter.setPen(QPen(Qt::black, 1.4));
        painter.setBrush(Qt::white);
        painter.drawRect(
            QRectF(given - QPointF(GIVEN_RADIUS, GIVEN_RADIUS), QSizeF(2.0 * GIVEN_RADIUS, 2.0 * GIVEN_RADIUS)));
    }
    painter.setPen(QPen(Qt::black, 1));
    painter.setBrush(Qt::white);
    painter.drawEllipse(wanted, MARK_RADIUS, MARK_RADIUS);
    painter.setBrush(m_color.getQColor(true));
    painter.drawEllipse(wanted, MARK_RADIUS - 2.0, MARK_RADIUS - 2.0);
}

/// In the corner that the diagram leaves free.
void ChromaticityChart::drawLegend(QPainter &painter) const
{
    const Gamut::Clamped seen = Gamut(m_profile).clamp(m_color);
    struct Line
    {
        QString text;
        QColor color;
    };
    const QColor ink = palette().color(QPalette::Text);
    QVector<Line> lines{{ColorUtils::huelockProfileIDName(m_profile), faint(ink, 0.8)}};
    if (seen.isVisible)
        lines.append({chromaticityText(seen.wanted), ink});
    if (seen.isOutside)
        lines.append({tr("gives %1").arg(chromaticityText(seen.given)), Theme::warningColor()});
    const double left = placeOf({LEGEND_X, 0.0}).x();
    const double right = area().right() - LEGEND_MARGIN;
    double widest = 1.0;
    for (const Line &line : qAsConst(lines))
        widest = std::max(widest, double(painter.fontMetrics().horizontalAdvance(line.text)));
    painter.save();
    QFont small = painter.font();
    const double fitting = painter.fontInfo().pixelSize() * std::min(1.0, (right - left) / widest);
    small.setPixelSize(std::max(MIN_LEGEND_PIXELS, int(fitting)));
    painter.setFont(small);
    const QFontMetrics metrics = painter.fontMetrics();
    double bottom = area().top() + LEGEND_MARGIN + metrics.ascent();
    for (const Line &line : qAsConst(lines)) {
        const QString text = metrics.elidedText(line.text, Qt::ElideRight, int(right - left));
        painter.setPen(line.color);
        painter.drawText(QPointF(right - metrics.horizontalAdvance(text), bottom), text);
        bottom += metrics.lineSpacing();
    }
    painter.restore();
}

void ChromaticityChart::pick(QPointF xy)
{
    const QPointF light = VisibleLight::nearest(xy);
    const double luminance = m_color.toYxy().getY();
    TrelColor picked;
    picked.setYxy16(luminance, light.x(), light.y(), m_color.alpha16());
    if (m_color.spec() == TrelColor::Yxy && picked == m_color)
        return;
    m_color = picked;
    describe();
    update();
    Q_EMIT colorChanged(m_color);
}

void ChromaticityChart::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        pick(chromaticityAt(event->pos()));
    else
        event->ignore();
}

void ChromaticityChart::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons().testFlag(Qt::LeftButton))
        pick(chromaticityAt(event->pos()));
}

void ChromaticityChart::keyPressEvent(QKeyEvent *event)
{
    const double step = event->modifiers().testFlag(Qt::ShiftModifier) ? FINE_KEY_STEP : KEY_STEP;
    QPointF move;
    switch (event->key()) {
    case Qt::Key_Left:
        move = QPointF(-step, 0.0);
        break;
    case Qt::Key_Right:
        move = QPointF(step, 0.0);
        break;
    case Qt::Key_Up:
        move = QPointF(0.0, step);
        break;
    case Qt::Key_Down:
        move = QPointF(0.0, -step);
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    const Gamut::Clamped seen = Gamut(m_profile).clamp(m_color);
    const QPointF from = seen.isVisible ? seen.wanted : QPointF(1.0 / 3.0, 1.0 / 3.0);
    pick(from + move);
}

void ChromaticityChart::dragEnterEvent(QDragEnterEvent *event)
{
    if (ColorMime::canRead(event->mimeData()))
        Drops::acceptCopy(event);
}

void ChromaticityChart::dropEvent(QDropEvent *event)
{
    const QVector<NamedColor> colors = ColorMime::colorsOf(event->mimeData());
    if (colors.isEmpty()) {
        event->ignore();
        return;
    }
    Drops::acceptCopy(event);
    setColor(colors.first().color);
    Q_EMIT colorChanged(m_color);
}

/// For those who cannot see the marks.
void ChromaticityChart::describe()
{
    const Gamut::Clamped seen = Gamut(m_profile).clamp(m_color);
    QString text = seen.isVisible ? chromaticityText(seen.wanted) : tr("black");
    if (seen.isOutside)
        text =
            tr("%1; %2 gives %3").arg(text, ColorUtils::huelockProfileIDName(m_profile), chromaticityText(seen.given));
    setAccessibleDescription(text);
}
