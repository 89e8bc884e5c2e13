#include "MessageLabel.h"

#include "Theme.h"

#include <QAccessible>
#include <QEvent>
#include <QPalette>

MessageLabel::MessageLabel(QWidget *parent)
    : QLabel(parent)
{
    setWordWrap(true);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setObjectName(QStringLiteral("message"));
}

void MessageLabel::remark(const QString &text)
{
    m_isWarning = false;
    colorText();
    setText(text);
}

void MessageLabel::warn(const QString &text)
{
    m_isWarning = true;
    colorText();
    setText(text);
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void MessageLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !m_isColoring)
        colorText();
}

void MessageLabel::colorText()
{
    m_isColoring = true;
    QPalette colors; // of which only what is set here stays when the theme changes
    if (m_isWarning)
        colors.setColor(QPalette::WindowText, Theme::warningColor());
    setPalette(colors);
    m_isColoring = false;
}
