#include "ColorEditor.h"

#include "ColorMime.h"
#include "ColorPreview.h"
#include "ColorText.h"
#include "Drops.h"
#include "Fixture.h"
#include "Gamut.h"
#include "MessageLabel.h"
#include "SliderPanel.h"
#include "UndoKeys.h"

#include <QDropEvent>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

constexpr int SPACE = 6;
constexpr int MESSAGE_LINES = 2;

QString xyText(QPointF xy)
{
    const QLocale locale;
    return ColorEditor::tr("x %1, y %2").arg(locale.toString(xy.x(), 'f', 4), locale.toString(xy.y(), 'f', 4));
}

} // namespace

ColorEditor::ColorEditor(QWidget *parent)
    : QWidget(parent)
    , m_preview(new ColorPreview)
    , m_text(new QLineEdit)
    , m_message(new MessageLabel)
    , m_tabs(new QTabWidget)
{
    m_text->setAccessibleName(tr("Colour as text"));
    m_text->setToolTip(
        tr("A name, “#” and hexadecimal digits, or a value string such as “aYxy;1;0;65535;1;0.3127;0.329”"));
    m_text->setClearButtonEnabled(true);
    m_text->setAcceptDrops(false); // a drop replaces the colour, wherever on the editor; the field would insert text
    m_message->setMinimumHeight(MESSAGE_LINES * m_message->fontMetrics().lineSpacing()); // so that nothing jumps
    m_tabs->setDocumentMode(true);
    m_tabs->setAccessibleName(tr("Ways to edit the colour"));
    setAcceptDrops(true);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(SPACE);
    layout->addWidget(m_preview);
    layout->addWidget(m_text);
    layout->addWidget(m_message);
    layout->addWidget(m_tabs, 1);
    for (const ColorForm::Kind kind : ColorForm::KINDS)
        addPage(kind);
    connect(m_text, &QLineEdit::textEdited, this, &ColorEditor::onTextEdited);
    m_text->installEventFilter(this);
    UndoKeys::leaveToWindow(m_text);
    showColor(nullptr);
}

/// A field that is being edited ends that when the window goes, which must not reach an editor that is half gone.
ColorEditor::~ColorEditor()
{
    m_text->disconnect(this);
    for (const Page &page : qAsConst(m_pages))
        page.panel->disconnect(this);
}

void ColorEditor::addPage(ColorForm::Kind kind)
{
    auto *widget = new QWidget;
    auto *layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, SPACE, 0, 0);
    Page page{ColorForm(kind, m_profile), new SliderPanel, new QLabel};
    page.note->setWordWrap(true);
    page.note->hide();
    layout->addWidget(page.panel);
    layout->addWidget(page.note);
    layout->addStretch(1);
    page.panel->setFields(page.form.fields());
    connect(page.panel, &SliderPanel::edited, this, [this, kind] { onEdited(kind); });
    m_tabs->addTab(widget, page.form.name());
    m_pages.append(page);
    const int place = int(m_pages.size()) - 1;
    page.panel->setPreview([this, place](const QVector<double> &values) {
        return m_pages.at(place).form.color(values, m_color.alpha16()).getQColor(true);
    });
}

TrelColor ColorEditor::color() const
{
    return m_color;
}

void ColorEditor::setColor(const TrelColor &color)
{
    if (!ColorText::problemOf(color).isEmpty() || isSameColor(color, m_color))
        return;
    m_color = color;
    showColor(nullptr);
}

void ColorEditor::setProfile(ColorUtils::HuelockProfileID profile)
{
    const bool isKnown = ColorUtils::huelockProfileIDList(true).contains(profile);
    const auto known = isKnown ? profile : ColorUtils::GENERIC_RGB;
    if (known == m_profile)
        return;
    m_profile = known;
    Page &page = m_pages[ColorForm::Levels];
    page.form = ColorForm(ColorForm::Levels, m_profile);
    page.panel->setFields(page.form.fields());
    fillPage(page);
    showGamut();
}

void ColorEditor::fillPage(Page &page)
{
    page.panel->setValues(page.form.values(m_color, page.panel->values()));
    const bool canShow = page.form.canShow(m_color);
    const bool isLevels = page.form.kind() == ColorForm::Levels;
    page.panel->setEnabled(canShow || !isLevels);
    page.note->setVisible(!canShow);
    page.note->setText(isLevels ? tr("The measurements of this profile are incomplete.")
                                : tr("The colour is not white light. The values are those last used."));
}

void ColorEditor::onEdited(ColorForm::Kind kind)
{
    const Page &page = m_pages.at(kind);
    change(page.form.color(page.panel->values(), m_color.alpha16()), page.panel);
}

void ColorEditor::onTextEdited(const QString &text)
{
    QString problem;
    const TrelColor color = ColorText::parse(text, &problem);
    if (color.isValid())
        change(color, m_text);
    else
        showProblem(problem);
}

/// A text that is no colour stays for mending only while the keyboard is on it.
bool ColorEditor::eventFilter(QObject *watched, QEvent *event)
{
    const bool isOut = watched == m_text && event->type() == QEvent::FocusOut;
    const auto reason = isOut ? static_cast<QFocusEvent *>(event)->reason() : Qt::NoFocusReason;
    const bool isLeft = isOut && reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason;
    if (isLeft && !ColorText::parse(m_text->text()).isValid()) {
        m_text->setText(ColorText::shown(m_color));
        showGamut();
    }
    return QWidget::eventFilter(watched, event);
}

void ColorEditor::change(const TrelColor &color, const QWidget *source)
{
    const bool isNew = !isSameColor(color, m_color);
    m_color = color;
    showColor(source);
    if (isNew)
        Q_EMIT colorChanged(m_color);
}

/// Shows the colour everywhere but in \a source, where the user is at work.
void ColorEditor::showColor(const QWidget *source)
{
    for (Page &page : m_pages) {
        if (page.panel != source)
            fillPage(page);
        else
            page.note->hide();
    }
    if (m_text != source) {
        m_text->setText(ColorText::shown(m_color));
        m_text->setCursorPosition(0); // a long one is read from its beginning
    }
    showGamut();
}

void ColorEditor::showGamut()
{
    const Gamut gamut(m_profile);
    const Gamut::Clamped clamped = gamut.clamp(m_color);
    m_preview->setColors(m_color, gamut.given(m_color), clamped.isOutside);
    const QString profile = ColorUtils::huelockProfileIDName(m_profile);
    if (clamped.isOutside)
        m_message->warn(
            tr("%1 cannot give this colour. It gives %2, at the right.").arg(profile, xyText(clamped.given)));
    else
        m_message->remark(tr("%1 can give this colour.").arg(profile));
}

void ColorEditor::showProblem(const QString &problem)
{
    m_message->warn(problem);
}

void ColorEditor::dragEnterEvent(QDragEnterEvent *event)
{
    if (ColorMime::canRead(event->mimeData()))
        Drops::acceptCopy(event);
}

void ColorEditor::dropEvent(QDropEvent *event)
{
    const QVector<NamedColor> colors = ColorMime::colorsOf(event->mimeData());
    if (colors.isEmpty()) {
        showProblem(tr("There is no colour in it."));
        event->ignore();
        return;
    }
    Drops::acceptCopy(event);
    m_color = colors.first().color;
    showColor(nullptr);
    Q_EMIT colorChanged(m_color); // it may be meant for several fixtures, of which one has it
}
