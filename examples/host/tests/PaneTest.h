#pragma once

#include "TestSupport.h"
#include "Theme.h"

#include <TrelColorLibrary.h>

#include <QApplication>
#include <QDir>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLoggingCategory>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>
#include <QWidget>

Q_DECLARE_METATYPE(TrelColor)

/// What the tests of panes share.
namespace PaneTest {

/// As the program sets itself up for fine screens.
inline void beforeApplication()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}

/// main() of such a test: the library's debug lines, of which every save writes one, are off.
inline void prepare()
{
    qRegisterMetaType<TrelColor>("TrelColor");
    // Without a window manager, the display warns of a window that is given the keyboard before it is there.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\nqt.qpa.xcb.warning=false"));
    Theme::apply(Theme::Dark);
}

/// Names of the colours of a list of the library, in order.
inline QStringList namesIn(const QString &list)
{
    const TrelColorLibrary *library = TrelColorLibrary::Instance();
    QStringList names;
    const QModelIndex index = library->getIndexOfListId(list);
    for (int row = 0; row < library->rowCount(index); ++row)
        names.append(library->index(row, 0, index).data().toString());
    return names;
}

/// Moves the mouse to \a place with the left button held.
inline void dragTo(QWidget &widget, QPoint place)
{
    QMouseEvent move(QEvent::MouseMove, place, widget.mapToGlobal(place), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &move);
}

/// Holds what a widget gives away when it is dragged by the mouse, and ends each drag where it began.
class DragWatch : public QObject
{
public:
    /// \param source of the drags, which stand below it among the objects.
    explicit DragWatch(QObject &source)
    {
        source.installEventFilter(this);
    }

    /// The last drag; null where none began since the event loop ran.
    QDrag *drag() const
    {
        return qobject_cast<QDrag *>(m_child);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::ChildAdded)
            watch(static_cast<QChildEvent *>(event)->child());
        return QObject::eventFilter(watched, event);
    }

private:
    void watch(QObject *child)
    {
        m_child = child;
        QTimer::singleShot(0, this, &QDrag::cancel); // in the event loop of the drag
    }

    QPointer<QObject> m_child;
};

/// The widget that a drag over \a place of \a window is for, as Qt finds it; \a place becomes one of that widget.
inline QWidget *takerAt(QWidget &window, QPoint &place)
{
    QWidget *taker = window.childAt(place);
    while (taker && taker != &window && !taker->acceptDrops())
        taker = taker->parentWidget();
    if (!taker)
        return &window;
    place = taker->mapFrom(&window, place);
    return taker;
}

/// Drags \a data over \a place of \a window and, where it is taken, drops it. \return whether the drop was taken.
inline bool drop(QWidget &window, QPoint place, const QMimeData &data,
                 Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction,
                 Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QWidget &widget = *takerAt(window, place);
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
        const QString scale = widget.devicePixelRatioF() > 1 ? QStringLiteral("@2x") : QString();
        isDrawn = isDrawn && image.save(QStringLiteral(TREL_SCREENSHOTS "/%1-%2%3.png").arg(name, variantName, scale));
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
        PaneTest::beforeApplication();                                                                                 \
        QApplication application(argc, argv);                                                                          \
        PaneTest::prepare();                                                                                           \
        TestClass test;                                                                                                \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }
