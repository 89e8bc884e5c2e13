#pragma once

#include "ColorForm.h"

#include <TrelColor.h>

#include <QVector>
#include <QWidget>

class ColorPreview;
class MessageLabel;
class QLabel;
class QLineEdit;
class QTabWidget;
class SliderPanel;

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
    ~ColorEditor() override;

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

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Page
    {
        ColorForm form;
        SliderPanel *panel;
        QLabel *note; ///< why the numbers are not those of the colour
    };

    void addPage(ColorForm::Kind kind);
    void fillPage(Page &page);
    void onEdited(ColorForm::Kind kind);
    void onTextEdited(const QString &text);
    void change(const TrelColor &color, const QWidget *source);
    void showColor(const QWidget *source);
    void showGamut();
    void showProblem(const QString &problem);

    TrelColor m_color = TrelColor(Qt::white);
    ColorUtils::HuelockProfileID m_profile = ColorUtils::GENERIC_RGB;
    ColorPreview *m_preview;
    QLineEdit *m_text;
    MessageLabel *m_message;
    QTabWidget *m_tabs;
    QVector<Page> m_pages;
};
