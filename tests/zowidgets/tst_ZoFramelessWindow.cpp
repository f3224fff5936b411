#include "FramelessExample.h"

#include <QApplication>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

#include <memory>

/// On the offscreen platform, which leaves moving and resizing to the window.
class tst_ZoFramelessWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void hasNoFrame();
    void titleBarMovesTheWindow();
    void aSmallMoveIsNoDrag();
    void declaredLabelsMoveTheWindowAndOthersDoNot();
    void bodyDoesNotMoveTheWindow();
    void otherButtonsDoNotMoveTheWindow();
    void borderResizes_data();
    void borderResizes();
    void resizeStopsAtTheMinimum();
    void resizeStopsAtTheContentsWithoutAMinimum();
    void fixedSizesAreNotResized();
    void borderMayBeTakenAway();
    void cursorsOnTheBorder_data();
    void cursorsOnTheBorder();
    void cursorComesBackInside();
    void cursorComesBackWhenTheMouseLeaves();
    void borderLiesOverWidgetsAddedLater();
    void dragsOfChildrenKeepTheirEventsOnTheBorder();
    void doubleClickMaximisesAndBack();
    void doubleClickElsewhereDoesNot();
    void maximisedHasNoBorderAndDoesNotMove();
    void fullScreenHasNoBorderAndDoesNotMove();
    void tellsEachChangeOnce();
    void uncheckedMaximiseButtonDoesNotEndFullScreen();
    void maximisesBeforeItIsShown();
    void otherWindowsAreLeftAlone();
    void survivesTheEndOfItsTitleBar();

private:
    void moveMouse(const QPoint& global);
    void press(const QPoint& global);
    void release(const QPoint& global);
    void drag(const QPoint& from, const QPoint& by);

    std::unique_ptr<FramelessExample> window;
};

void tst_ZoFramelessWindow::init()
{
    window = std::make_unique<FramelessExample>();
    window->move(100, 80);
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    // The cursor enters the window, as a mouse does; moves alone do not.
    QCursor::setPos(QPoint(300, 250));
    QCoreApplication::processEvents();
}

void tst_ZoFramelessWindow::cleanup()
{
    window.reset();
    QCursor::setPos(QPoint(0, 0));
    QCoreApplication::processEvents();
}

void tst_ZoFramelessWindow::moveMouse(const QPoint& global)
{
    QTest::mouseMove(window->windowHandle(), window->mapFromGlobal(global));
    QCoreApplication::processEvents();
}

void tst_ZoFramelessWindow::press(const QPoint& global)
{
    moveMouse(global);
    QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, window->mapFromGlobal(global));
}

void tst_ZoFramelessWindow::release(const QPoint& global)
{
    QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, window->mapFromGlobal(global));
    // The next press is no second click.
    QTest::qWait(1);
}

void tst_ZoFramelessWindow::drag(const QPoint& from, const QPoint& by)
{
    const QPoint start = window->mapToGlobal(from);
    press(start);
    moveMouse(start + by / 2);
    moveMouse(start + by);
    release(start + by);
}

void tst_ZoFramelessWindow::hasNoFrame()
{
    QVERIFY(window->windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(window->windowFlags() & Qt::WindowMinimizeButtonHint);
    QCOMPARE(window->frameGeometry(), window->geometry());
}

void tst_ZoFramelessWindow::titleBarMovesTheWindow()
{
    drag(QPoint(150, 16), QPoint(60, 40));
    QCOMPARE(window->geometry(), QRect(160, 120, 400, 300));
    drag(QPoint(150, 16), QPoint(-30, 7));
    QCOMPARE(window->geometry(), QRect(130, 127, 400, 300));
}

void tst_ZoFramelessWindow::aSmallMoveIsNoDrag()
{
    drag(QPoint(150, 16), QPoint(QApplication::startDragDistance() - 1, 0));
    QCOMPARE(window->pos(), QPoint(100, 80));
}

void tst_ZoFramelessWindow::declaredLabelsMoveTheWindowAndOthersDoNot()
{
    drag(window->centreOf(window->titleLabel), QPoint(30, 20));
    QCOMPARE(window->pos(), QPoint(130, 100));
    drag(window->centreOf(window->plainLabel), QPoint(30, 20));
    QCOMPARE(window->pos(), QPoint(130, 100));
    drag(window->centreOf(window->button), QPoint(30, 20));
    QCOMPARE(window->pos(), QPoint(130, 100));
}

void tst_ZoFramelessWindow::bodyDoesNotMoveTheWindow()
{
    drag(window->centreOf(window->body), QPoint(30, 20));
    QCOMPARE(window->geometry(), QRect(100, 80, 400, 300));
}

void tst_ZoFramelessWindow::otherButtonsDoNotMoveTheWindow()
{
    const QPoint from(150, 16);
    QTest::mousePress(window->windowHandle(), Qt::RightButton, {}, from);
    QTest::mouseMove(window->windowHandle(), from + QPoint(50, 50));
    QTest::mouseRelease(window->windowHandle(), Qt::RightButton, {}, from + QPoint(50, 50));
    QCOMPARE(window->pos(), QPoint(100, 80));
}

void tst_ZoFramelessWindow::borderResizes_data()
{
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QRect>("geometry");
    // Dragged by 20 to the right and 10 down from 400 x 300 at (100, 80).
    QTest::newRow("left") << QPoint(1, 150) << QRect(120, 80, 380, 300);
    QTest::newRow("right") << QPoint(398, 150) << QRect(100, 80, 420, 300);
    QTest::newRow("top") << QPoint(200, 1) << QRect(100, 90, 400, 290);
    QTest::newRow("bottom") << QPoint(200, 298) << QRect(100, 80, 400, 310);
    QTest::newRow("top left") << QPoint(1, 1) << QRect(120, 90, 380, 290);
    QTest::newRow("top right") << QPoint(398, 1) << QRect(100, 90, 420, 290);
    QTest::newRow("bottom left") << QPoint(1, 298) << QRect(120, 80, 380, 310);
    QTest::newRow("bottom right") << QPoint(398, 298) << QRect(100, 80, 420, 310);
}

void tst_ZoFramelessWindow::borderResizes()
{
    QFETCH(QPoint, from);
    QFETCH(QRect, geometry);
    drag(from, QPoint(20, 10));
    QCOMPARE(window->geometry(), geometry);
    moveMouse(QPoint(300, 250));
    QCOMPARE(window->geometry(), geometry);
}

void tst_ZoFramelessWindow::resizeStopsAtTheMinimum()
{
    drag(QPoint(1, 1), QPoint(900, 900));
    QCOMPARE(window->geometry(), QRect(300, 230, 200, 150));
}

void tst_ZoFramelessWindow::resizeStopsAtTheContentsWithoutAMinimum()
{
    window->setMinimumSize(0, 0);
    const QSize least = window->minimumSizeHint();
    drag(QPoint(398, 298), QPoint(-900, -900));
    QCOMPARE(window->geometry(), QRect(QPoint(100, 80), least));
}

void tst_ZoFramelessWindow::fixedSizesAreNotResized()
{
    window->setFixedWidth(400);
    drag(QPoint(398, 298), QPoint(20, 10));
    QCOMPARE(window->geometry(), QRect(100, 80, 400, 310));
    moveMouse(window->mapToGlobal(QPoint(398, 150)));
    QCOMPARE(window->cursorShape(), Qt::CrossCursor);
}

void tst_ZoFramelessWindow::borderMayBeTakenAway()
{
    window->setResizeableAreaWidth(0);
    drag(QPoint(1, 150), QPoint(20, 10));
    QCOMPARE(window->geometry(), QRect(100, 80, 400, 300));
}

void tst_ZoFramelessWindow::cursorsOnTheBorder_data()
{
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<Qt::CursorShape>("shape");
    QTest::newRow("left") << QPoint(0, 150) << Qt::SizeHorCursor;
    QTest::newRow("right") << QPoint(399, 150) << Qt::SizeHorCursor;
    QTest::newRow("top") << QPoint(200, 0) << Qt::SizeVerCursor;
    QTest::newRow("bottom") << QPoint(200, 299) << Qt::SizeVerCursor;
    QTest::newRow("top left") << QPoint(1, 0) << Qt::SizeFDiagCursor;
    QTest::newRow("top right") << QPoint(399, 0) << Qt::SizeBDiagCursor;
    QTest::newRow("bottom left") << QPoint(0, 299) << Qt::SizeBDiagCursor;
    QTest::newRow("bottom right") << QPoint(399, 299) << Qt::SizeFDiagCursor;
    QTest::newRow("inside of left") << QPoint(4, 150) << Qt::CrossCursor;
    QTest::newRow("inside of bottom") << QPoint(200, 295) << Qt::CrossCursor;
}

void tst_ZoFramelessWindow::cursorsOnTheBorder()
{
    QFETCH(QPoint, pos);
    QFETCH(Qt::CursorShape, shape);
    moveMouse(window->mapToGlobal(pos));
    QCOMPARE(window->cursorShape(), shape);
}

void tst_ZoFramelessWindow::cursorComesBackInside()
{
    QCOMPARE(window->cursorShape(), Qt::CrossCursor);
    for (int i = 0; i < 3; ++i) {
        moveMouse(window->mapToGlobal(QPoint(0, 150)));
        QCOMPARE(window->cursorShape(), Qt::SizeHorCursor);
        moveMouse(window->mapToGlobal(QPoint(20, 150)));
        QCOMPARE(window->cursorShape(), Qt::CrossCursor);
    }
    moveMouse(window->mapToGlobal(QPoint(200, 0)));
    QCOMPARE(window->cursorShape(), Qt::SizeVerCursor);
    moveMouse(window->mapToGlobal(QPoint(200, 16)));
    QCOMPARE(window->cursorShape(), Qt::ArrowCursor);
    QVERIFY(!window->body->testAttribute(Qt::WA_UnderMouse));
    QCOMPARE(window->body->cursor().shape(), Qt::CrossCursor);
}

void tst_ZoFramelessWindow::cursorComesBackWhenTheMouseLeaves()
{
    moveMouse(window->mapToGlobal(QPoint(0, 150)));
    QCOMPARE(window->cursorShape(), Qt::SizeHorCursor);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(window.get(), &leave);
    QCOMPARE(window->cursorShape(), Qt::ArrowCursor);
}

void tst_ZoFramelessWindow::borderLiesOverWidgetsAddedLater()
{
    auto* late = new QPushButton(QStringLiteral("Late"), window.get());
    late->setGeometry(0, 100, 100, 50);
    late->show();
    QSignalSpy clicked(late, &QPushButton::clicked);
    moveMouse(window->mapToGlobal(QPoint(2, 120)));
    QCOMPARE(window->cursorShape(), Qt::SizeHorCursor);
    drag(QPoint(2, 120), QPoint(-20, 0));
    QCOMPARE(window->geometry(), QRect(80, 80, 420, 300));
    QCOMPARE(clicked.count(), 0);
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, QPoint(50, 120));
    QCOMPARE(clicked.count(), 1);
}

void tst_ZoFramelessWindow::dragsOfChildrenKeepTheirEventsOnTheBorder()
{
    press(window->mapToGlobal(QPoint(200, 200)));
    moveMouse(window->mapToGlobal(QPoint(2, 200)));
    QCOMPARE(window->cursorShape(), Qt::CrossCursor);
    release(window->mapToGlobal(QPoint(2, 200)));
    QCOMPARE(window->geometry(), QRect(100, 80, 400, 300));
}

void tst_ZoFramelessWindow::doubleClickMaximisesAndBack()
{
    QSignalSpy maximized(window.get(), &ZoFramelessWindow::windowMaximized);
    QTest::mouseDClick(window->titleBar, Qt::LeftButton, {}, QPoint(150, 16));
    QVERIFY(window->isMaximized());
    QTest::mouseDClick(window->titleLabel, Qt::LeftButton);
    QVERIFY(!window->isMaximized());
    QCOMPARE(maximized, (QList<QVariantList>{{true}, {false}}));
}

void tst_ZoFramelessWindow::doubleClickElsewhereDoesNot()
{
    QTest::mouseDClick(window->button, Qt::LeftButton);
    QTest::mouseDClick(window->plainLabel, Qt::LeftButton);
    QTest::mouseDClick(window->body, Qt::LeftButton);
    QTest::mouseDClick(window->titleBar, Qt::RightButton, {}, QPoint(150, 16));
    QTest::mouseDClick(window->titleBar, Qt::LeftButton, {}, QPoint(150, 1));
    QVERIFY(!window->isMaximized());
}

void tst_ZoFramelessWindow::maximisedHasNoBorderAndDoesNotMove()
{
    window->toggleMaximize(true);
    QTRY_COMPARE(window->pos(), QPoint(0, 0));
    const QRect filled = window->geometry();
    moveMouse(window->mapToGlobal(QPoint(0, 150)));
    QCOMPARE(window->cursorShape(), Qt::CrossCursor);
    drag(QPoint(1, 150), QPoint(40, 10));
    drag(QPoint(150, 16), QPoint(40, 40));
    QCOMPARE(window->geometry(), filled);
    window->toggleMaximize(false);
    QTRY_COMPARE(window->geometry(), QRect(100, 80, 400, 300));
}

void tst_ZoFramelessWindow::fullScreenHasNoBorderAndDoesNotMove()
{
    window->showFullScreen();
    QTRY_COMPARE(window->pos(), QPoint(0, 0));
    const QRect filled = window->geometry();
    moveMouse(window->mapToGlobal(QPoint(0, 150)));
    QCOMPARE(window->cursorShape(), Qt::CrossCursor);
    drag(QPoint(1, 150), QPoint(40, 10));
    drag(QPoint(150, 16), QPoint(40, 40));
    QTest::mouseDClick(window->titleBar, Qt::LeftButton, {}, QPoint(150, 16));
    QVERIFY(window->isFullScreen());
    QCOMPARE(window->geometry(), filled);
}

void tst_ZoFramelessWindow::tellsEachChangeOnce()
{
    QSignalSpy maximized(window.get(), &ZoFramelessWindow::windowMaximized);
    window->toggleMaximize(true);
    window->toggleMaximize(true);
    window->showMaximized();
    QCOMPARE(maximized, (QList<QVariantList>{{true}}));
    window->showFullScreen();
    QCOMPARE(maximized, (QList<QVariantList>{{true}, {false}}));
    window->showNormal();
    window->showMinimized();
    QCOMPARE(maximized.count(), 2);
    window->showMaximized();
    QCOMPARE(maximized.count(), 3);
}

void tst_ZoFramelessWindow::uncheckedMaximiseButtonDoesNotEndFullScreen()
{
    QPushButton maximize;
    maximize.setCheckable(true);
    connect(window.get(), &ZoFramelessWindow::windowMaximized, &maximize, &QPushButton::setChecked);
    connect(&maximize, &QPushButton::toggled, window.get(), &ZoFramelessWindow::toggleMaximize);
    maximize.click();
    QVERIFY(window->isMaximized());
    window->showFullScreen();
    QVERIFY(!maximize.isChecked());
    QVERIFY(window->isFullScreen());
    maximize.click();
    QVERIFY(window->isMaximized());
    QVERIFY(!window->isFullScreen());
    maximize.click();
    QCOMPARE(window->windowState(), Qt::WindowStates(Qt::WindowNoState));
}

void tst_ZoFramelessWindow::maximisesBeforeItIsShown()
{
    FramelessExample hidden;
    QSignalSpy maximized(&hidden, &ZoFramelessWindow::windowMaximized);
    hidden.toggleMaximize(true);
    QVERIFY(!hidden.isVisible());
    QCOMPARE(maximized.count(), 1);
    hidden.show();
    QVERIFY(hidden.isMaximized());
}

void tst_ZoFramelessWindow::otherWindowsAreLeftAlone()
{
    QWidget other;
    other.setGeometry(600, 80, 200, 200);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    QTest::mouseMove(other.windowHandle(), QPoint(1, 100));
    QCoreApplication::processEvents();
    QCOMPARE(other.windowHandle()->cursor().shape(), Qt::ArrowCursor);
    QTest::mousePress(other.windowHandle(), Qt::LeftButton, {}, QPoint(1, 100));
    QTest::mouseMove(other.windowHandle(), QPoint(60, 100));
    QTest::mouseRelease(other.windowHandle(), Qt::LeftButton, {}, QPoint(60, 100));
    QCOMPARE(other.geometry(), QRect(600, 80, 200, 200));
    QCOMPARE(window->geometry(), QRect(100, 80, 400, 300));
}

void tst_ZoFramelessWindow::survivesTheEndOfItsTitleBar()
{
    delete window->titleBar;
    drag(QPoint(150, 16), QPoint(60, 40));
    QCOMPARE(window->pos(), QPoint(100, 80));
    drag(QPoint(1, 150), QPoint(20, 0));
    QCOMPARE(window->geometry(), QRect(120, 80, 380, 300));
}

QTEST_MAIN(tst_ZoFramelessWindow)
#include "tst_ZoFramelessWindow.moc"
