#include "app/StatusBar.h"

#include <QAction>
#include <QAnimationDriver>
#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QStatusBar>
#include <QToolButton>
#include <QtTest>

namespace {

/// While it lives, animations run by the time that a test sets.
class AnimationClock final : public QAnimationDriver
{
public:
    AnimationClock() { install(); }
    ~AnimationClock() override { uninstall(); }

    void advanceTo(qint64 milliseconds)
    {
        now = milliseconds;
        advance();
    }
    qint64 elapsed() const override { return now; }

private:
    qint64 now = 0;
};

} // namespace

class tst_StatusBar : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        bar = std::make_unique<QStatusBar>();
        fullscreen = new QAction(QStringLiteral("Fullscreen"), bar.get());
        list = new QAction(QStringLiteral("List"), bar.get());
        zoomIn = new QAction(QStringLiteral("Zoom In"), bar.get());
        zoomOut = new QAction(QStringLiteral("Zoom Out"), bar.get());
        status = new StatusBar(bar.get(), fullscreen, list);
        status->setZoomActions(zoomIn, zoomOut);
        status->setZoomText(1.0);
        status->setFps(30.0);
        bar->resize(1000, 30);
        bar->show();
        QVERIFY(QTest::qWaitForWindowExposed(bar.get()));
    }

    void cleanup() { bar.reset(); }

    void itemsStandInTheirOrder()
    {
        const QList<QWidget*> items{
            buttonOf(list),    buttonOf(fullscreen),  status->zoomTextButton(),
            buttonOf(zoomOut), status->levelSlider(), buttonOf(zoomIn),
            fpsLabel()};
        for (int i = 1; i < items.size(); ++i)
            QVERIFY2(items[i - 1]->x() < items[i]->x(), qPrintable(QString::number(i)));
    }

    void buttonsShowTheirActions()
    {
        QCOMPARE(buttonOf(list)->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
        QCOMPARE(buttonOf(list)->iconSize(), QSize(16, 16));
        QCOMPARE(buttonOf(fullscreen)->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
        QCOMPARE(buttonOf(zoomIn)->iconSize(), QSize(16, 16));
        QSignalSpy triggered(zoomOut, &QAction::triggered);
        QTest::mouseClick(buttonOf(zoomOut), Qt::LeftButton);
        QCOMPARE(triggered.count(), 1);
    }

    void zoomReadsInPercentWithTwoDecimals_data()
    {
        QTest::addColumn<double>("scale");
        QTest::addColumn<QString>("text");
        QTest::newRow("actual size") << 1.0 << QStringLiteral("100.00%");
        QTest::newRow("half") << 0.5 << QStringLiteral("50.00%");
        QTest::newRow("smallest") << 0.03125 << QStringLiteral("3.13%");
        QTest::newRow("largest") << 32.0 << QStringLiteral("3200.00%");
    }

    void zoomReadsInPercentWithTwoDecimals()
    {
        QFETCH(double, scale);
        QFETCH(QString, text);
        status->setZoomText(scale);
        QCOMPARE(status->zoomTextButton()->text(), text);
        QCOMPARE(status->zoomTextButton()->accessibleDescription(), text);
    }

    void theSliderCoversAllLevels()
    {
        QCOMPARE(status->levelSlider()->minimum(), 0);
        QCOMPARE(status->levelSlider()->maximum(), 500);
        QCOMPARE(status->levelSlider()->maximumWidth(), 120);
    }

    void aLevelFromTheViewMovesTheSliderSilently()
    {
        QSignalSpy changed(status->levelSlider(), &QSlider::valueChanged);
        status->setZoomLevel(312);
        QCOMPARE(status->levelSlider()->sliderPosition(), 312);
        QCOMPARE(changed.count(), 0);
        QVERIFY(status->levelSlider()->hasTracking());
    }

    void theUsersMoveReportsAtOnce()
    {
        QSignalSpy changed(status->levelSlider(), &QSlider::valueChanged);
        QTest::keyClick(status->levelSlider(), Qt::Key_End);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][0].toInt(), 500);
    }

    void frameRateHasTwoDecimals()
    {
        status->setFps(29.967);
        QCOMPARE(fpsLabel()->text(), QStringLiteral("29.97 fps"));
    }

    void changingTextsMoveNothing()
    {
        const QList<QWidget*> items{buttonOf(list), status->zoomTextButton(), status->levelSlider(),
                                    fpsLabel()};
        const auto places = [&items] {
            QList<QRect> rects;
            for (const QWidget* item : items)
                rects << item->geometry();
            return rects;
        };
        const QList<QRect> before = places();
        status->setZoomText(0.03125);
        status->setFps(9.5);
        QTest::qWait(20);
        QCOMPARE(places(), before);
        status->setZoomText(32.0);
        status->setFps(120.25);
        QTest::qWait(20);
        QCOMPARE(places(), before);
        status->showRecordIndicator(true);
        QTest::qWait(20);
        QCOMPARE(places(), before);
        status->showRecordIndicator(false);
        QTest::qWait(20);
        QCOMPARE(places(), before);
    }

    void recordingShowsABlinkingIndicatorAtTheRightEnd()
    {
        status->showRecordIndicator(true);
        QTest::qWait(20);
        QLabel* label = recordLabel();
        QVERIFY(label);
        QCOMPARE(label->textFormat(), Qt::RichText);
        QCOMPARE(label->text(), QStringLiteral("<img src=\":/images/record_indicator.png\">"
                                               " 00:00:00"));
        QVERIFY(label->x() > fpsLabel()->x());
    }

    // A quarter of the way the curve, a fourth power, is at 8 / 4 ^ 4 = 0.03125 of its height.
    void theIndicatorFadesInAgainAndAgain_data()
    {
        QTest::addColumn<qint64>("milliseconds");
        QTest::addColumn<double>("opacity");
        QTest::newRow("start") << qint64(0) << 0.1;
        QTest::newRow("a quarter") << qint64(500) << 0.1 + 0.9 * 0.03125;
        QTest::newRow("half") << qint64(1000) << 0.55;
        QTest::newRow("three quarters") << qint64(1500) << 1.0 - 0.9 * 0.03125;
        QTest::newRow("over again") << qint64(2000) << 0.1;
        QTest::newRow("half again") << qint64(203000) << 0.55;
    }

    void theIndicatorFadesInAgainAndAgain()
    {
        QFETCH(qint64, milliseconds);
        QFETCH(double, opacity);
        AnimationClock clock;
        QTRY_VERIFY(!clock.isRunning());
        status->showRecordIndicator(true);
        QTRY_VERIFY(clock.isRunning());
        clock.advanceTo(milliseconds);
        const auto* effect =
            qobject_cast<const QGraphicsOpacityEffect*>(recordLabel()->graphicsEffect());
        QVERIFY(effect);
        QVERIFY(qAbs(effect->opacity() - opacity) < 1e-9);
    }

    // It stops by itself when the indicator is gone.
    void theFadingHasNoParent()
    {
        AnimationClock clock;
        QTRY_VERIFY(!clock.isRunning());
        status->showRecordIndicator(true);
        QTRY_VERIFY(clock.isRunning());
        QVERIFY(!bar->findChild<QAbstractAnimation*>());
        status->showRecordIndicator(false);
        clock.advanceTo(1);
        QTRY_VERIFY(!clock.isRunning());
    }

    void aSecondStartKeepsTheIndicator()
    {
        status->showRecordIndicator(true);
        QLabel* label = recordLabel();
        status->showRecordIndicator(true);
        QCOMPARE(recordLabel(), label);
        QCOMPARE(status->findChildren<QTimer*>().size(), 1);
    }

    void theRunningTimeTicksWithOneMoreBlank()
    {
        status->showRecordIndicator(true);
        QTRY_VERIFY(recordLabel()->text().contains(QStringLiteral(">  00:00:0")));
    }

    // A tick that came early would show the second before once more, and leave out the next.
    void noTickIsEarly()
    {
        constexpr int bars = 20;
        constexpr int pause = 27;
        QStringList firstTicks;
        std::vector<std::unique_ptr<QStatusBar>> started;
        for (int i = 0; i < bars; ++i) {
            auto& other = started.emplace_back(std::make_unique<QStatusBar>());
            auto* indicator = new StatusBar(other.get(), fullscreen, list);
            indicator->showRecordIndicator(true);
            auto* timer = indicator->findChild<QTimer*>();
            connect(timer, &QTimer::timeout, timer, [&firstTicks, timer, shown = other.get()] {
                timer->stop();
                firstTicks << recordLabel(shown)->text().right(8);
            });
            QTest::qWait(pause);
        }
        QTRY_COMPARE(firstTicks.size(), bars);
        QVERIFY2(!firstTicks.contains(QStringLiteral("00:00:00")),
                 qPrintable(firstTicks.join(QLatin1Char(' '))));
    }

    void stoppingRemovesTheIndicatorAtOnceAndLeavesTheTimer()
    {
        status->showRecordIndicator(true);
        status->showRecordIndicator(false);
        QVERIFY(!recordLabel());
        const auto timers = status->findChildren<QTimer*>();
        QCOMPARE(timers.size(), 1);
        QVERIFY(timers[0]->isActive());
        QCOMPARE(timers[0]->interval(), 1000);
        status->showRecordIndicator(true);
        QCOMPARE(status->findChildren<QTimer*>().size(), 2);
    }

    void runningTimesAreHoursMinutesSeconds_data()
    {
        QTest::addColumn<qint64>("milliseconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("start") << qint64(999) << QStringLiteral("00:00:00");
        QTest::newRow("a minute") << qint64(61000) << QStringLiteral("00:01:01");
        QTest::newRow("an hour") << qint64(3600000) << QStringLiteral("01:00:00");
        QTest::newRow("a long one") << qint64(100) * 3600000 + 59999 << QStringLiteral("100:00:59");
    }

    void runningTimesAreHoursMinutesSeconds()
    {
        QFETCH(qint64, milliseconds);
        QFETCH(QString, text);
        QCOMPARE(StatusBar::recordTimeText(milliseconds), text);
    }

    void messagesWithoutTimeoutStay()
    {
        status->showMessage(QStringLiteral("Ready"), 0);
        QCOMPARE(bar->currentMessage(), QStringLiteral("Ready"));
    }

    void aRecordNoticeStaysUntilRecordIsPressedAndComesBackAfterHints()
    {
        const QString notice = QStringLiteral("Recording ended: The disk is full.");
        status->showRecordIndicator(true);
        status->showRecordNotice(notice);
        QCOMPARE(bar->currentMessage(), notice);
        bar->showMessage(QStringLiteral("Take a picture"));
        QCOMPARE(bar->currentMessage(), QStringLiteral("Take a picture"));
        bar->clearMessage();
        QCOMPARE(bar->currentMessage(), notice);
        status->showRecordIndicator(false);
        QCOMPARE(bar->currentMessage(), QString());
        bar->showMessage(QStringLiteral("Take a picture"));
        bar->clearMessage();
        QCOMPARE(bar->currentMessage(), QString());
    }

    void endingARecordNoticeLeavesTheHintThatCoversIt()
    {
        status->showRecordIndicator(true);
        status->showRecordNotice(QStringLiteral("Recording ended: The disk is full."));
        bar->showMessage(QStringLiteral("Start/Stop video recording"));
        status->showRecordIndicator(false);
        QCOMPARE(bar->currentMessage(), QStringLiteral("Start/Stop video recording"));
    }

    void controlsWithoutTextHaveAccessibleNames()
    {
        QCOMPARE(status->zoomTextButton()->accessibleName(), QStringLiteral("Zoom"));
        QVERIFY(!status->levelSlider()->accessibleName().isEmpty());
    }

private:
    QToolButton* buttonOf(QAction* action) const
    {
        for (QToolButton* button : bar->findChildren<QToolButton*>()) {
            if (button->defaultAction() == action)
                return button;
        }
        return nullptr;
    }
    static QLabel* labelWith(const QStatusBar* bar, const QString& part)
    {
        for (QLabel* label : bar->findChildren<QLabel*>()) {
            if (label->text().contains(part))
                return label;
        }
        return nullptr;
    }
    static QLabel* recordLabel(const QStatusBar* bar)
    {
        return labelWith(bar, QStringLiteral("record_indicator"));
    }
    QLabel* fpsLabel() const { return labelWith(bar.get(), QStringLiteral(" fps")); }
    QLabel* recordLabel() const { return recordLabel(bar.get()); }

    std::unique_ptr<QStatusBar> bar;
    StatusBar* status = nullptr;
    QAction* fullscreen = nullptr;
    QAction* list = nullptr;
    QAction* zoomIn = nullptr;
    QAction* zoomOut = nullptr;
};

QTEST_MAIN(tst_StatusBar)
#include "tst_StatusBar.moc"
