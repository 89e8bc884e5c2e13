#pragma once

#include "TestSupport.h"
#include "Theme.h"

#include <TrelColorLibrary.h>

#include <QApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLoggingCategory>
#include <QMetaMethod>
#include <QMimeData>
#include <QMouseEvent>
#include <QWidget>

Q_DECLARE_METATYPE(TrelColor)

/// What the tests of panes share.
namespace PaneTest {

/// main() of such a test: the library's debug lines, of which every save writes one, are off.
inline void prepare()
{
    qRegisterMetaType<TrelColor>("TrelColor");
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    Theme::apply(Theme::Dark);
}

/// Runs TrelTest's own init() or cleanup(), which those of a test class hide.
inline void runInherited(TrelTest *test, const char *slot)
{
    const QMetaObject &meta = TrelTest::staticMetaObject;
    meta.method(meta.indexOfMethod(slot)).invoke(test, Qt::DirectConnection);
}

/// In place of TrelTest's init(): the platform's remarks about what it lacks are no warnings of ours.
inline void beginTest(TrelTest *test)
{
    static QtMessageHandler s_next = nullptr;
    runInherited(test, "init()");
    s_next = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &text) {
        if (!text.startsWith(QLatin1String("This plugin does not support")))
            s_next(type, context, text);
    });
}

/// In place of TrelTest's cleanup().
inline void endTest(TrelTest *test)
{
    runInherited(test, "cleanup()");
}

/// Moves the mouse to \a place with the left button held.
inline void dragTo(QWidget &widget, QPoint place)
{
    QMouseEvent move(QEvent::MouseMove, place, widget.mapToGlobal(place), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &move);
}

/// Drags \a data over \a place and, where it is taken, drops it. \return whether the drop was taken.
inline bool drop(QWidget &widget, QPoint place, const QMimeData &data,
                 Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction,
                 Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QDragEnterEvent enter(place, actions, &data, Qt::LeftButton, modifiers);
    QCoreApplication::sendEvent(&widget, &enter);
    QDragMoveEvent move(place, actions, &data, Qt::LeftButton, modifiers);
    move.setAccepted(enter.isAccepted()); // what Qt does where a widget does not look at moves
    QCoreApplication::sendEvent(&widget, &move);
    widget.grab(); // with the mark of where it goes
    if (!enter.isAccepted() || !move.isAccepted()) {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(&widget, &leave);
        return false;
    }
    QDropEvent event(place, actions, &data, Qt::LeftButton, modifiers);
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

/// Shows \a widget with the keyboard on it; false when the platform gives none.
inline bool present(QWidget &widget, QSize size)
{
    widget.resize(size);
    widget.show();
    widget.activateWindow();
    return QTest::qWaitForWindowActive(&widget);
}

/// Writes pictures of \a widget in both themes, for people to look at. \return whether they are not of one colour.
inline bool takePictures(QWidget &widget, const QString &name)
{
    QDir().mkpath(QStringLiteral(TREL_SCREENSHOTS));
    bool isDrawn = true;
    for (const Theme::Variant variant : {Theme::Light, Theme::Dark}) {
        Theme::apply(variant);
        QCoreApplication::processEvents();
        const QImage image = widget.grab().toImage();
        const QString variantName = variant == Theme::Dark ? QStringLiteral("dark") : QStringLiteral("light");
        isDrawn = isDrawn && image.save(QStringLiteral(TREL_SCREENSHOTS "/%1-%2.png").arg(name, variantName));
        QImage blank = image;
        blank.fill(image.pixelColor(0, 0));
        isDrawn = isDrawn && image != blank;
    }
    return isDrawn;
}

} // namespace PaneTest

/// main() of a test of panes.
#define PANE_TEST_MAIN(TestClass)                                                                                      \
    int main(int argc, char **argv)                                                                                    \
    {                                                                                                                  \
        isolateFromUser();                                                                                             \
        QApplication application(argc, argv);                                                                          \
        PaneTest::prepare();                                                                                           \
        TestClass test;                                                                                                \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }
