#pragma once

#include <TrelColor.h>

#include <QWidget>

class QLineEdit;

/// Edits one colour as RGB, HSV, Yxy, white light, the levels of a fixture's channels, or text.
///
/// What a component cannot say is kept: the alpha by all of them, the hue of grey. Of a colour that the chosen profile
/// cannot give it says so, and shows what the fixture gives instead. Colours can be dropped on it and dragged from its
/// swatch.
class ColorEditor : public QWidget
{
    Q_OBJECT

public:
    /// White, for generic RGB.
    explicit ColorEditor(QWidget *parent = nullptr);

    /// The colour, in the form in which it was set or last edited.
    TrelColor color() const;

public Q_SLOTS:
    /// Shows \a color without emitting colorChanged(). A colour that no fixture takes (ColorText::problemOf()) is
    /// ignored.
    void setColor(const TrelColor &color);
    /// The profile whose channels and gamut count. An identifier without a profile stands for generic RGB.
    void setProfile(ColorUtils::HuelockProfileID profile);

Q_SIGNALS:
    /// The user changed the colour; at every step of a slider.
    void colorChanged(const TrelColor &color);

private:
    TrelColor m_color = TrelColor(Qt::white);
    ColorUtils::HuelockProfileID m_profile = ColorUtils::GENERIC_RGB;
    QLineEdit *m_text;
};
