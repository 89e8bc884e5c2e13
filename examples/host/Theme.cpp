#include "Theme.h"

#include <QApplication>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSettings>
#include <QStyleFactory>
#include <QSvgRenderer>
#include <QToolTip>

#include <iterator>

namespace {

struct Shades
{
    QRgb window, base, alternateBase, button, text, disabledText, midlight, mid, highlight, highlightedText, link;
    QRgb warning, good;
};

// By Theme::Variant. Text on its surface has a contrast of at least 7:1, disabled text of 3:1.
constexpr Shades SHADES[] = {
    {0xff1f1f1f, 0xff171717, 0xff1b1b1b, 0xff2d2d2d, 0xffdedede, 0xff7d7d7d, 0xff333333, 0xff484848, 0xff35608f,
     0xffffffff, 0xff7fb0e6, 0xffffb454, 0xff6fbf73},
    {0xfff1f1f1, 0xffffffff, 0xfff7f7f7, 0xffe9e9e9, 0xff1d1d1d, 0xff868686, 0xffdedede, 0xffb4b4b4, 0xff2f6cb3,
     0xffffffff, 0xff1d5fae, 0xff9a4b00, 0xff23762b},
};

struct ChannelShade
{
    char letter;
    QRgb color;
};

constexpr ChannelShade CHANNELS[] = {
    {'R', 0xffe5534b}, {'G', 0xff4fae5b}, {'B', 0xff4f83f1}, {'A', 0xfff0a130}, {'W', 0xffd8d4c8}, {'D', 0xff9d9d9d},
};

// What the palette cannot say. palette() follows the variant.
constexpr char STYLE_SHEET[] = R"(
QToolBar { border: 0; spacing: 2px; padding: 3px 4px; }
QToolBar QToolButton { padding: 4px 5px; border-radius: 4px; }
QToolBar QToolButton:hover { background: palette(midlight); }
QToolBar QToolButton:checked { background: palette(highlight); color: palette(highlighted-text); }
QToolBar QToolButton:focus { border: 1px solid palette(highlight); }
QHeaderView::section { background: palette(window); color: palette(text); border: 0;
    border-bottom: 1px solid palette(mid); padding: 4px 3px; }
QTableView, QTreeView { border: 1px solid palette(midlight); }
QSplitter::handle { background: palette(window); }
QSplitter::handle:hover { background: palette(midlight); }
QStatusBar::item { border: 0; }
QLabel#paneTitle { font-weight: bold; padding: 2px 0; }
QToolTip { background: palette(base); color: palette(text); border: 1px solid palette(mid); }
)";

constexpr char KEY[] = "window/theme";
constexpr char ICON_INK[] = "#123456"; // what the icon files are drawn in

Theme::Variant s_variant = Theme::Dark;

const Shades &shades()
{
    return SHADES[s_variant];
}

QPalette makePalette(const Shades &shades)
{
    QPalette palette;
    const struct
    {
        QPalette::ColorRole role;
        QRgb color;
    } ROLES[] = {
        {QPalette::Window, shades.window},
        {QPalette::WindowText, shades.text},
        {QPalette::Base, shades.base},
        {QPalette::AlternateBase, shades.alternateBase},
        {QPalette::Text, shades.text},
        {QPalette::Button, shades.button},
        {QPalette::ButtonText, shades.text},
        {QPalette::BrightText, shades.highlightedText},
        {QPalette::Midlight, shades.midlight},
        {QPalette::Mid, shades.mid},
        {QPalette::Dark, shades.midlight},
        {QPalette::Light, shades.mid},
        {QPalette::Shadow, 0xff000000},
        {QPalette::Highlight, shades.highlight},
        {QPalette::Link, shades.link},
        {QPalette::LinkVisited, shades.link},
        {QPalette::ToolTipBase, shades.base},
        {QPalette::ToolTipText, shades.text},
        {QPalette::HighlightedText, shades.highlightedText},
        {QPalette::PlaceholderText, shades.disabledText},
    };
    for (const auto &entry : ROLES)
        palette.setColor(entry.role, QColor::fromRgb(entry.color));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor::fromRgb(shades.disabledText));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor::fromRgb(shades.mid));
    return palette;
}

/// Draws a file of one ink in the colour that the palette has for text.
class InkIconEngine : public QIconEngine
{
public:
    explicit InkIconEngine(const QByteArray &svg)
        : m_svg(svg)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const bool isOn = state == QIcon::On || mode == QIcon::Selected;
        const QColor ink =
            QApplication::palette().color(group, isOn ? QPalette::HighlightedText : QPalette::ButtonText);
        QByteArray svg = m_svg;
        QSvgRenderer(svg.replace(ICON_INK, ink.name().toLatin1())).render(painter, rect);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

    QIconEngine *clone() const override
    {
        return new InkIconEngine(m_svg);
    }

private:
    QByteArray m_svg;
};

} // namespace

void Theme::apply(Variant variant)
{
    s_variant = variant;
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QPalette palette = makePalette(shades());
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
    qApp->setStyleSheet(QString()); // a sheet that stays the same would keep the old palette's colours
    qApp->setStyleSheet(QString::fromLatin1(STYLE_SHEET));
}

void Theme::restore()
{
    apply(QSettings().value(KEY).toInt() == Light ? Light : Dark);
}

void Theme::choose(Variant variant)
{
    apply(variant);
    QSettings().setValue(KEY, int(variant));
}

Theme::Variant Theme::current()
{
    return s_variant;
}

QColor Theme::channelColor(QChar letter)
{
    for (const ChannelShade &channel : CHANNELS) {
        if (QLatin1Char(channel.letter) == letter)
            return QColor::fromRgb(channel.color);
    }
    return QColor::fromRgb(std::prev(std::end(CHANNELS))->color);
}

QColor Theme::warningColor()
{
    return QColor::fromRgb(shades().warning);
}

QColor Theme::goodColor()
{
    return QColor::fromRgb(shades().good);
}

QIcon Theme::icon(const QString &name)
{
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    return file.open(QIODevice::ReadOnly) ? QIcon(new InkIconEngine(file.readAll())) : QIcon();
}
