#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "canvas/QtRuleBar.h"

#include <QHBoxLayout>
#include <QScreen>
#include <QtTest>

/// The canvas in full screen, on a real window system.
class tst_FullScreen : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        window = std::make_unique<QWidget>();
        window->resize(800, 600);
        window->move(100, 80);
        place = new QWidget(window.get());
        auto* outer = new QHBoxLayout(window.get());
        outer->addWidget(place);
        view = new GraphicsView;
        auto* layout = new QHBoxLayout(place);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(view);
        view->fullscreenKey = QKeySequence(Qt::Key_F11);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QImage image(1920, 1080, QImage::Format_RGB32);
        image.fill(Qt::gray);
        view->setImage(image);
        view->zoomActualSize();
        view->fullScreen();
        QVERIFY(QTest::qWaitForWindowActive(view));
    }

    void cleanup()
    {
        if (!view->parentWidget())
            delete view;
        window.reset();
    }

    void fillsTheScreenOfItsWindowWithoutRulers()
    {
        QVERIFY(view->isInFullScreen());
        QTRY_COMPARE(view->geometry(), window->screen()->geometry());
        QCOMPARE(view->viewport()->size(), view->size());
        for (const QtRuleBar* ruler : view->findChildren<QtRuleBar*>())
            QVERIFY(!ruler->isVisible());
        QVERIFY(view->isBestFit());
        QCOMPARE(view->imageScene()->backgroundBrush().color(), QColor(Qt::black));
    }

    void comesBackByKey_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("the full screen key") << int(Qt::Key_F11);
        QTest::newRow("Escape") << int(Qt::Key_Escape);
    }

    void comesBackByKey()
    {
        QFETCH(int, key);
        QTest::keyClick(view, static_cast<Qt::Key>(key));
        verifyInWindow();
    }

    void comesBackByDoubleClick()
    {
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, QPoint(300, 300));
        verifyInWindow();
    }

    void comesBackWhenClosed()
    {
        view->close();
        verifyInWindow();
    }

    void otherKeysStay()
    {
        QTest::keyClick(view, Qt::Key_A);
        QVERIFY(view->isInFullScreen());
    }

private:
    void verifyInWindow()
    {
        QVERIFY(!view->isInFullScreen());
        QCOMPARE(view->parentWidget(), place);
        QVERIFY(!view->isWindow());
        QTRY_VERIFY(view->isVisible());
        QTRY_COMPARE(view->size(), place->size());
        QCOMPARE(view->frameShape(), QFrame::StyledPanel);
        QCOMPARE(view->imageScene()->backgroundBrush().color(), QColor(16, 16, 16));
        QVERIFY(view->isBestFit());
        for (const QtRuleBar* ruler : view->findChildren<QtRuleBar*>())
            QVERIFY(ruler->isVisible());
    }

    std::unique_ptr<QWidget> window;
    QWidget* place = nullptr;
    GraphicsView* view = nullptr;
};

QTEST_MAIN(tst_FullScreen)
#include "tst_FullScreen.moc"
