#include "ColorPreview.h"

#include "ColorMime.h"

#include <QApplication>
#include <QDrag>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr double ROUNDING = 5.0;
constexpr int GAP = 4; ///< between wanted and given
constexpr int DRAG_SIZE = 32;

} // namespace

ColorPreview::ColorPreview(QWidget *parent)
    : QWidget(parent)
{
    setAccessibleName(tr("Colour"));
    setToolTip(tr("Drag it onto a list or a fixture"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ColorPreview::setColors(const TrelColor &wanted, const TrelColor &given, bool isClamped)
{
    m_wanted = wanted;
    m_given = given;
    m_isClamped = isClamped;
    setAccessibleDescription(isClamped ? tr("%1, given as %2").arg(wanted.name8(), given.name8()) : wanted.name8());
    update();
}

QSize ColorPreview::sizeHint() const
{
    return QSize(160, 56);
}

QSize ColorPreview::minimumSizeHint() const
{
    return QSize(60, 40);
}

void ColorPreview::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath path;
    path.addRoundedRect(frame, ROUNDING, ROUNDING);
    painter.fillPath(path, m_wanted.getQColor(true));
    if (m_isClamped) {
        painter.save();
        painter.setClipRect(rect().adjusted(width() / 2, 0, 0, 0));
        painter.fillPath(path, m_given.getQColor(true));
        painter.restore();
        painter.fillRect(QRect(width() / 2 - GAP / 2, 0, GAP, height()), palette().window());
    }
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.drawPath(path);
}

void ColorPreview::mousePressEvent(QMouseEvent *event)
{
    m_pressed = event->pos();
}

void ColorPreview::mouseMoveEvent(QMouseEvent *event)
{
    if (!event->buttons().testFlag(Qt::LeftButton)
        || (event->pos() - m_pressed).manhattanLength() < QApplication::startDragDistance())
        return;
    auto *drag = new QDrag(this);
    drag->setMimeData(ColorMime::fromColors({{m_wanted, QString()}}));
    QPixmap pixmap(DRAG_SIZE, DRAG_SIZE);
    pixmap.fill(m_wanted.getQColor(true));
    drag->setPixmap(pixmap);
    drag->exec(Qt::CopyAction);
}
