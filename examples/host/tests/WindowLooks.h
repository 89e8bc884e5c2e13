#pragma once

#include "ColorSlot.h"
#include "Fixture.h"
#include "Patch.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMainWindow>
#include <QTabBar>
#include <QTabWidget>
#include <QVector>

/// What the tests share that look at the whole window.
namespace WindowLooks {

constexpr QSize SMALL(1024, 700);
constexpr QSize LARGE(1600, 1000);

/// A small rig with each kind of fixture.
inline QVector<Fixture> rig()
{
    const struct
    {
        const char *name;
        ColorUtils::HuelockProfileID profile;
        int resolution;
        const char *color;
    } ROWS[] = {
        {"Front left", ColorUtils::WASHLINE_PZ6_RGBW, 2, "aYxy;1;0;65535;0.8;0.4476;0.4075"},
        {"Front right", ColorUtils::WASHLINE_PZ6_RGBA, 1, "#ff9329"},
        {"Cove", ColorUtils::TESSEL_COVELINE, 1, "aYxy;1;0;65535;1;0.3127;0.329"},
        {"Beam", ColorUtils::STRAND_BEAM_KVX, 1, "#8f2bd8"},
        {"Pixel 1", ColorUtils::PIXELNODE_RGB_CLASS, 1, "#00c8a0"},
        {"Pixel 2", ColorUtils::PIXELNODE_RGB_CLASS, 1, "#0f4fa8"},
        {"House", ColorUtils::GENERIC_SINGLE_CHANNEL, 1, "#808080"},
        {"Cyc", ColorUtils::GENERIC_RGB, 1, "mediumvioletred"},
    };
    QVector<Fixture> fixtures;
    int address = 1;
    for (const auto &row : ROWS) {
        Fixture fixture = Fixture::withDefaults(row.profile);
        fixture.name = QString::fromLatin1(row.name);
        fixture.resolution = row.resolution;
        fixture.address = address;
        fixture.color = TrelColor(row.color);
        address += fixture.footprint();
        fixtures.append(fixture);
    }
    return fixtures;
}

/// Saves a picture for people to look at. \return whether it has every pixel that the screen has for the widget.
inline bool shoot(QWidget *widget, const QString &name)
{
    QDir().mkpath(QStringLiteral(TREL_SCREENSHOTS));
    QCoreApplication::processEvents();
    const QImage image = widget->grab().toImage();
    const QString scale = widget->devicePixelRatioF() > 1 ? QStringLiteral("@2x") : QString();
    return image.save(QStringLiteral(TREL_SCREENSHOTS "/%1%2.png").arg(name, scale))
           && image.size() == widget->size() * widget->devicePixelRatioF();
}

/// Whether \a widget shows its text, or what stands for it, by cutting some of it off.
inline bool isCut(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return !label->wordWrap() && label->width() < label->sizeHint().width();
    if (qobject_cast<const ColorSlot *>(widget)) // shortens its name by itself
        return false;
    const bool isPartOfAnother =
        qobject_cast<const QTabBar *>(widget->parent()) || qobject_cast<const QLineEdit *>(widget->parent());
    const bool isButton = qobject_cast<const QAbstractButton *>(widget) && !isPartOfAnother;
    return isButton && widget->width() < widget->sizeHint().width();
}

/// What does not fit into \a window, for messages; empty when all does.
inline QString cutIn(const QMainWindow &window)
{
    const QSize needed = window.layout()->totalMinimumSize();
    if (needed.width() > window.width() || needed.height() > window.height())
        return QStringLiteral("the window needs %1 x %2").arg(needed.width()).arg(needed.height());
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        if (widget->isVisible() && isCut(widget))
            return widget->metaObject()->className() + QStringLiteral(": ") + widget->property("text").toString();
    }
    return QString();
}

/// Whether all tabs are there to click, none behind an arrow.
inline bool showsAllTabs(const QWidget &window)
{
    const auto *tabs = window.findChild<QTabWidget *>();
    return tabs->tabBar()->sizeHint().width() <= tabs->width();
}

} // namespace WindowLooks
