#include "ColorSlot.h"

#include "ColorMime.h"
#include "Drops.h"
#include "Fixture.h"

#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>

namespace {

constexpr int HEIGHT = 34;
constexpr int WIDTH = 72;
constexpr double READABLE_LIGHTNESS = 0.55; // above it, black text is read more easily than white

bool isLight(const QColor &color)
{
    return 0.299 * color.redF() + 0.587 * color.greenF() + 0.114 * color.blueF() > READABLE_LIGHTNESS;
}

} // namespace

ColorSlot::ColorSlot(const QString &name, const TrelColor &color, QWidget *parent)
    : QAbstractButton(parent)
    , m_color(color)
{
    setText(name);
    setAccessibleName(name);
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

TrelColor ColorSlot::color() const
{
    return m_color;
}

QSize ColorSlot::sizeHint() const
{
    return QSize(qMax(WIDTH, fontMetrics().horizontalAdvance(text()) + 16), qMax(HEIGHT, fontMetrics().height() + 10));
}

QSize ColorSlot::minimumSizeHint() const
{
    return QSize(HEIGHT, sizeHint().height());
}

void ColorSlot::setColor(const TrelColor &color)
{
    if (isSameColor(color, m_color))
        return;
    m_color = color;
    setToolTip(color.aName());
    update();
}

void ColorSlot::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor fill = m_color.getQColor(true);
    painter.setPen(QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid), hasFocus() ? 2 : 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 4, 4);
    painter.setPen(isLight(fill) ? Qt::black : Qt::white);
    painter.drawText(rect().adjusted(6, 0, -6, 0), Qt::AlignCenter,
                     fontMetrics().elidedText(text(), Qt::ElideRight, width() - 12));
}

void ColorSlot::mousePressEvent(QMouseEvent *event)
{
    m_pressed = event->pos();
    QAbstractButton::mousePressEvent(event);
}

void ColorSlot::mouseMoveEvent(QMouseEvent *event)
{
    const bool isDrag = (event->buttons() & Qt::LeftButton)
                        && (event->pos() - m_pressed).manhattanLength() >= QApplication::startDragDistance();
    if (!isDrag) {
        QAbstractButton::mouseMoveEvent(event);
        return;
    }
    setDown(false);
    auto *drag = new QDrag(this);
    drag->setMimeData(ColorMime::fromColors({{m_color, text()}}));
    drag->exec(Qt::CopyAction);
}

void ColorSlot::dragEnterEvent(QDragEnterEvent *event)
{
    if (ColorMime::canRead(event->mimeData()))
        Drops::acceptCopy(event);
}

void ColorSlot::dropEvent(QDropEvent *event)
{
    const QVector<NamedColor> colors = ColorMime::colorsOf(event->mimeData());
    if (colors.isEmpty())
        return;
    Drops::acceptCopy(event);
    setColor(colors.first().color);
}
