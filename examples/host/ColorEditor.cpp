#include "ColorEditor.h"

#include "ColorText.h"

#include <QLineEdit>
#include <QVBoxLayout>

ColorEditor::ColorEditor(QWidget *parent)
    : QWidget(parent)
    , m_text(new QLineEdit)
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_text);
    m_text->setText(ColorText::shown(m_color));
    connect(m_text, &QLineEdit::textEdited, this, [this](const QString &text) {
        const TrelColor color = ColorText::parse(text);
        if (!color.isValid())
            return;
        m_color = color;
        Q_EMIT colorChanged(m_color);
    });
}

TrelColor ColorEditor::color() const
{
    return m_color;
}

void ColorEditor::setColor(const TrelColor &color)
{
    if (!ColorText::problemOf(color).isEmpty())
        return;
    m_color = color;
    m_text->setText(ColorText::shown(color));
}

void ColorEditor::setProfile(ColorUtils::HuelockProfileID profile)
{
    m_profile = profile;
}
