#include "FramelessExample.h"

#include <QApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <memory>

/// Under X11 with a window manager, by the mouse of the X server: the window manager moves and
/// resizes the window.
class tst_ZoFramelessWindowManaged : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void titleBarMovesTheWindow();
    void borderResizes_data();
    void borderResizes();
    void resizeStopsAtTheMinimum();
    void cursorFollowsTheBorder();
    void cursorIsRestoredAfterAResize();
    void doubleClickMaximisesAndBack();
    void doubleClickWorksAfterAMove();
    void hearsOfTheWindowManagersMaximising();
    void maximisedHasNoBorder();
    void minimisesAndComesBack();

private:
    void xdotool(const QStringList& arguments);
    void moveMouse(const QPoint& pos);
    void drag(const QPoint& from, const QPoint& by);
    void dragTitleBar(const QPoint& by);
    void stepMouse(const QPoint& by);
    void doubleClick(const QPoint& pos);

    std::unique_ptr<FramelessExample> window;
};

void tst_ZoFramelessWindowManaged::init()
{
    window = std::make_unique<FramelessExample>();
    window->move(300, 200);
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    QTRY_COMPARE(window->geometry(), QRect(300, 200, 400, 300));
    moveMouse(QPoint(200, 200));
}

void tst_ZoFramelessWindowManaged::cleanup()
{
    window.reset();
}

/// The event loop goes on while the server moves the mouse.
void tst_ZoFramelessWindowManaged::xdotool(const QStringList& arguments)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    QTRY_COMPARE(process.state(), QProcess::NotRunning);
    QCOMPARE(process.exitCode(), 0);
    QTest::qWait(40);
}

void tst_ZoFramelessWindowManaged::moveMouse(const QPoint& pos)
{
    const QPoint global = window->mapToGlobal(pos);
    xdotool(
        {QStringLiteral("mousemove"), QString::number(global.x()), QString::number(global.y())});
}

void tst_ZoFramelessWindowManaged::drag(const QPoint& from, const QPoint& by)
{
    moveMouse(from);
    xdotool({QStringLiteral("mousedown"), QStringLiteral("1")});
    stepMouse(by / 2);
    stepMouse(by / 2);
    xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
}

/// The window manager takes the mouse over at the first step and counts from there.
void tst_ZoFramelessWindowManaged::dragTitleBar(const QPoint& by)
{
    moveMouse(QPoint(150, 16));
    xdotool({QStringLiteral("mousedown"), QStringLiteral("1")});
    stepMouse(QPoint(QApplication::startDragDistance(), 0));
    stepMouse(by / 2);
    stepMouse(by / 2);
    xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
}

void tst_ZoFramelessWindowManaged::stepMouse(const QPoint& by)
{
    xdotool({QStringLiteral("mousemove_relative"), QStringLiteral("--"), QString::number(by.x()),
             QString::number(by.y())});
}

void tst_ZoFramelessWindowManaged::doubleClick(const QPoint& pos)
{
    moveMouse(pos);
    xdotool({QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"),
             QStringLiteral("--delay"), QStringLiteral("60"), QStringLiteral("1")});
}

void tst_ZoFramelessWindowManaged::titleBarMovesTheWindow()
{
    dragTitleBar(QPoint(80, 60));
    QTRY_COMPARE(window->geometry(), QRect(380, 260, 400, 300));
}

void tst_ZoFramelessWindowManaged::borderResizes_data()
{
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QRect>("geometry");
    // Dragged by 40 to the right and 20 down from 400 x 300 at (300, 200).
    QTest::newRow("left") << QPoint(1, 150) << QRect(340, 200, 360, 300);
    QTest::newRow("right") << QPoint(398, 150) << QRect(300, 200, 440, 300);
    QTest::newRow("top") << QPoint(200, 1) << QRect(300, 220, 400, 280);
    QTest::newRow("bottom") << QPoint(200, 298) << QRect(300, 200, 400, 320);
    QTest::newRow("top left") << QPoint(1, 1) << QRect(340, 220, 360, 280);
    QTest::newRow("top right") << QPoint(398, 1) << QRect(300, 220, 440, 280);
    QTest::newRow("bottom left") << QPoint(1, 298) << QRect(340, 200, 360, 320);
    QTest::newRow("bottom right") << QPoint(398, 298) << QRect(300, 200, 440, 320);
}

void tst_ZoFramelessWindowManaged::borderResizes()
{
    QFETCH(QPoint, from);
    QFETCH(QRect, geometry);
    drag(from, QPoint(40, 20));
    QTRY_COMPARE(window->geometry(), geometry);
}

void tst_ZoFramelessWindowManaged::resizeStopsAtTheMinimum()
{
    drag(QPoint(398, 298), QPoint(-390, -290));
    QTRY_COMPARE(window->geometry(), QRect(300, 200, 200, 150));
}

void tst_ZoFramelessWindowManaged::cursorFollowsTheBorder()
{
    moveMouse(QPoint(399, 150));
    QTRY_COMPARE(window->cursorShape(), Qt::SizeHorCursor);
    moveMouse(QPoint(399, 299));
    QTRY_COMPARE(window->cursorShape(), Qt::SizeFDiagCursor);
    moveMouse(QPoint(200, 200));
    QTRY_COMPARE(window->cursorShape(), Qt::CrossCursor);
    moveMouse(QPoint(0, 150));
    QTRY_COMPARE(window->cursorShape(), Qt::SizeHorCursor);
    moveMouse(QPoint(-50, 150));
    QTRY_COMPARE(window->cursorShape(), Qt::ArrowCursor);
}

void tst_ZoFramelessWindowManaged::cursorIsRestoredAfterAResize()
{
    drag(QPoint(398, 150), QPoint(40, 0));
    QTRY_COMPARE(window->width(), 440);
    moveMouse(QPoint(200, 200));
    QTRY_COMPARE(window->cursorShape(), Qt::CrossCursor);
}

void tst_ZoFramelessWindowManaged::doubleClickMaximisesAndBack()
{
    QSignalSpy maximized(window.get(), &ZoFramelessWindow::windowMaximized);
    doubleClick(QPoint(150, 16));
    QTRY_VERIFY(window->isMaximized());
    QTRY_COMPARE(window->geometry().topLeft(), QPoint(0, 0));
    QTest::qWait(QApplication::doubleClickInterval());
    doubleClick(QPoint(150, 16));
    QTRY_VERIFY(!window->isMaximized());
    QTRY_COMPARE(window->geometry(), QRect(300, 200, 400, 300));
    QCOMPARE(maximized, (QList<QVariantList>{{true}, {false}}));
}

void tst_ZoFramelessWindowManaged::doubleClickWorksAfterAMove()
{
    dragTitleBar(QPoint(80, 60));
    QTRY_COMPARE(window->pos(), QPoint(380, 260));
    QTest::qWait(QApplication::doubleClickInterval());
    doubleClick(QPoint(150, 16));
    QTRY_VERIFY(window->isMaximized());
}

void tst_ZoFramelessWindowManaged::hearsOfTheWindowManagersMaximising()
{
    QSignalSpy maximized(window.get(), &ZoFramelessWindow::windowMaximized);
    window->windowHandle()->showMaximized();
    QTRY_COMPARE(maximized, (QList<QVariantList>{{true}}));
    QVERIFY(window->isMaximized());
    window->windowHandle()->showNormal();
    QTRY_COMPARE(maximized, (QList<QVariantList>{{true}, {false}}));
    QTRY_COMPARE(window->geometry(), QRect(300, 200, 400, 300));
}

void tst_ZoFramelessWindowManaged::maximisedHasNoBorder()
{
    window->toggleMaximize(true);
    QTRY_COMPARE(window->geometry().topLeft(), QPoint(0, 0));
    const QSize filled = window->size();
    moveMouse(QPoint(0, 300));
    QTRY_COMPARE(window->cursorShape(), Qt::CrossCursor);
    drag(QPoint(0, 300), QPoint(60, 40));
    QCOMPARE(window->geometry(), QRect(QPoint(0, 0), filled));
}

void tst_ZoFramelessWindowManaged::minimisesAndComesBack()
{
    QSignalSpy maximized(window.get(), &ZoFramelessWindow::windowMaximized);
    window->showMinimized();
    QTRY_VERIFY(!window->windowHandle()->isExposed());
    QVERIFY(window->isMinimized());
    window->showNormal();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    QVERIFY(!window->isMinimized());
    QCOMPARE(window->geometry(), QRect(300, 200, 400, 300));
    QCOMPARE(maximized.count(), 0);
}

QTEST_MAIN(tst_ZoFramelessWindowManaged)
#include "tst_ZoFramelessWindowManaged.moc"
