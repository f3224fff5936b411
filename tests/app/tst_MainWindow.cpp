#include "app/MainWindow.h"

#include "app/Application.h"
#include "app/ModalDialog.h"
#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "results/FormOutputbar.h"

#include <zowidgets/ZoAboutDialog.h>

#include <QAction>
#include <QCheckBox>
#include <QDesktopServices>
#include <QGraphicsItem>
#include <QLabel>
#include <QMenu>
#include <QSettings>
#include <QSlider>
#include <QSplitter>
#include <QStatusBar>
#include <QToolButton>
#include <QtTest>

namespace {

const QString confirmExit = QStringLiteral("gui/confirmExit");

QString shortcutKey(const char* name)
{
    return QStringLiteral("preferences/environment/keyboard/shortcuts_") +
           QString::fromLatin1(name);
}

} // namespace

class tst_MainWindow : public QObject
{
    Q_OBJECT

public slots:
    void urlOpened(const QUrl& url) { openedUrl = url; }

private slots:
    void initTestCase() { setApplicationNames(); }

    void init()
    {
        QSettings().clear();
        QSettings().setValue(confirmExit, false);
        makeWindow();
    }

    void cleanup() { window.reset(); }

    void thePlaceholderShowsAtFirst()
    {
        const QImage& image = view()->imageScene()->currentImage();
        QCOMPARE(image.size(), QSize(1920, 1080));
        QCOMPARE(image.format(), QImage::Format_RGB32);
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::lightGray));
        QVERIFY(contains(image, Qt::darkGray));
        QCOMPARE(view()->sceneRect(), QRectF(0, 0, 1920, 1080));
        QVERIFY(view()->isBestFit());
    }

    void theTaskBarShowsNameAndIcon()
    {
        QCOMPARE(window->windowTitle(), QStringLiteral("Orvo"));
        QVERIFY(!window->windowIcon().pixmap(16, 16).isNull());
    }

    void theStatusBarIsReady()
    {
        QCOMPARE(window->findChild<QStatusBar*>()->currentMessage(), QStringLiteral("Ready"));
    }

    void actionsHaveTheirTextsAndTips_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("statusTip");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("checkable");
        const auto row = [](const char* text, const char* tip, bool enabled, bool checkable) {
            QTest::newRow(text) << QString::fromLatin1(text) << QString::fromLatin1(tip) << enabled
                                << checkable;
        };
        row("&Save...", "Save the current form letter", true, false);
        row("&Print...", "Print the current form letter", true, false);
        row("&Quit", "Quit the application", true, false);
        row("&Undo", "Undo the last editing action", true, false);
        row("Zoom In", "Increase the zoom level", true, false);
        row("Zoom Out", "Decrease the zoom level", true, false);
        row("Settings...", "Show preferences dialog.", false, false);
        row("About...", "Open about dialog", true, false);
        row("Snap", "Take a picture", false, false);
        row("Record", "Start/Stop video recording", false, true);
        row("Gallery", "Open image and video folder", true, false);
        row("200%", "", true, false);
        row("Fit in view", "", true, false);
        row("Fullscreen", "", true, false);
        row("List", "", true, true);
    }

    void actionsHaveTheirTextsAndTips()
    {
        QFETCH(QString, text);
        QFETCH(QString, statusTip);
        QFETCH(bool, enabled);
        QFETCH(bool, checkable);
        const QAction* found = action(text);
        QVERIFY(found);
        QCOMPARE(found->statusTip(), statusTip);
        QCOMPARE(found->isEnabled(), enabled);
        QCOMPARE(found->isCheckable(), checkable);
        QVERIFY(!found->isChecked());
    }

    void defaultShortcutsApplyWhereNothingIsStored()
    {
        QCOMPARE(action("Snap")->shortcut(), QKeySequence(Qt::Key_Return));
        QCOMPARE(action("Fullscreen")->shortcut(), QKeySequence(Qt::Key_F11));
        QCOMPARE(action("Zoom In")->shortcut(), QKeySequence(Qt::CTRL + Qt::Key_Plus));
        QCOMPARE(action("Zoom Out")->shortcut(), QKeySequence(Qt::CTRL + Qt::Key_Minus));
        QCOMPARE(view()->fullscreenKey, QKeySequence(Qt::Key_F11));
    }

    void storedShortcutsAreInForceBeforeTheWindowShows()
    {
        QSettings settings;
        settings.setValue(shortcutKey("snap"), QStringLiteral("Ctrl+T"));
        settings.setValue(shortcutKey("fullscreen"), QString());
        settings.setValue(shortcutKey("zoomin"), QKeySequence(Qt::Key_F5));
        makeWindow();
        QCOMPARE(action("Snap")->shortcut(), QKeySequence(Qt::CTRL + Qt::Key_T));
        QVERIFY(action("Fullscreen")->shortcut().isEmpty());
        QVERIFY(view()->fullscreenKey.isEmpty());
        QCOMPARE(action("Zoom In")->shortcut(), QKeySequence(Qt::Key_F5));
        QCOMPARE(action("Zoom Out")->shortcut(), QKeySequence(Qt::CTRL + Qt::Key_Minus));
    }

    void zoomKeysChangeTenLevels()
    {
        view()->zoom(300.0);
        show();
        QTest::keyClick(window.get(), Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(view()->level(), 310.0);
        QTest::keyClick(window.get(), Qt::Key_Minus, Qt::ControlModifier);
        QTest::keyClick(window.get(), Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(view()->level(), 290.0);
    }

    void actionsOfNoWidgetHaveNoKeys()
    {
        show();
        QSignalSpy triggered(action("&Quit"), &QAction::triggered);
        QTest::keySequence(window.get(), action("&Quit")->shortcut());
        QCOMPARE(triggered.count(), 0);
        QVERIFY(window->isVisible());
    }

    void theZoomPopupOffersTheFixedZooms()
    {
        show();
        QMenu* menu = openMenu(zoomButton());
        QStringList texts;
        for (const QAction* entry : menu->actions())
            texts << entry->text();
        QCOMPARE(texts, QStringList({QStringLiteral("200%"), QStringLiteral("100%"),
                                     QStringLiteral("75%"), QStringLiteral("50%"),
                                     QStringLiteral("25%"), QStringLiteral("Fit in view")}));
        menu->close();
        QPointer<QMenu> first(menu);
        openMenu(zoomButton())->close();
        QVERIFY(first);
        QCOMPARE(first->parent(), window.get());
    }

    void zoomActionsSetTheirScale_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("scale");
        QTest::newRow("200") << QStringLiteral("200%") << 2.0;
        QTest::newRow("100") << QStringLiteral("100%") << 1.0;
        QTest::newRow("75") << QStringLiteral("75%") << 0.75;
        QTest::newRow("50") << QStringLiteral("50%") << 0.5;
        QTest::newRow("25") << QStringLiteral("25%") << 0.25;
    }

    void zoomActionsSetTheirScale()
    {
        QFETCH(QString, text);
        QFETCH(double, scale);
        action(text)->trigger();
        QVERIFY(qAbs(view()->transform().m11() - scale) < 1e-12);
        QVERIFY(!view()->isBestFit());
        QCOMPARE(zoomButton()->text(), QString::number(scale * 100, 'f', 2) + QLatin1Char('%'));
    }

    void fitInViewFits()
    {
        action("200%")->trigger();
        action("Fit in view")->trigger();
        QVERIFY(view()->isBestFit());
    }

    void theSliderZoomsTheViewAndDoesNotHearItsEcho()
    {
        show();
        auto* slider = window->findChild<QStatusBar*>()->findChild<QSlider*>();
        QSignalSpy changed(slider, &QSlider::valueChanged);
        slider->setValue(300);
        QCOMPARE(view()->level(), 300.0);
        QCOMPARE(changed.count(), 1);
        view()->zoom(217.0);
        QCOMPARE(slider->sliderPosition(), 217);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(view()->level(), 217.0);
    }

    void listShowsAndHidesTheTable()
    {
        show();
        auto* table = window->findChild<FormOutputbar*>();
        QVERIFY(!table->isVisible());
        action("List")->trigger();
        QVERIFY(table->isVisible());
        action("List")->trigger();
        QVERIFY(!table->isVisible());
    }

    void theSidebarStandsLeftOfTheCanvas()
    {
        show();
        QCOMPARE(window->findChildren<QSplitter*>().size(), 2);
        QCOMPARE(sidebar()->width(), 300);
        QVERIFY(view()->mapTo(window.get(), QPoint()).x() >= 300);
        QVERIFY(view()->width() > window->width() / 2);
    }

    void aDoubleClickInTheCaptionMaximisesAndTurnsTheButtonOn_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("on the bare caption") << QString();
        QTest::newRow("on the title") << QStringLiteral("Orvo");
    }

    void aDoubleClickInTheCaptionMaximisesAndTurnsTheButtonOn()
    {
        QFETCH(QString, text);
        show();
        auto* caption = window->findChild<QWidget*>(QStringLiteral("titlebar"));
        QWidget* clicked = text.isEmpty() ? caption : labelWith(caption, text);
        const auto* maximize =
            caption->findChild<QAbstractButton*>(QStringLiteral("maximizeButton"));
        QVERIFY(!maximize->isChecked());
        QTest::mouseDClick(clicked, Qt::LeftButton, {}, clicked->rect().center());
        QTRY_VERIFY(window->isMaximized());
        QTRY_VERIFY(maximize->isChecked());
        QTest::mouseDClick(clicked, Qt::LeftButton, {}, clicked->rect().center());
        QTRY_VERIFY(!window->isMaximized());
        QTRY_VERIFY(!maximize->isChecked());
    }

    void theTitleBarMenuOffersSettingsAndAbout()
    {
        show();
        auto* button = window->findChild<QAbstractButton*>(QStringLiteral("menuButton"));
        QMenu* menu = openMenu(button);
        QCOMPARE(menu->actions(), QList<QAction*>({action("Settings..."), action("About...")}));
        menu->close();
    }

    void aboutTellsNameAndVersion()
    {
        QStringList texts;
        DialogAnswer<ZoAboutDialog> answer([&texts](ZoAboutDialog* dialog) {
            for (const QLabel* label : dialog->findChildren<QLabel*>())
                texts << label->text();
            dialog->close();
        });
        action("About...")->trigger();
        QVERIFY(answer.wasAsked());
        const QString all = texts.join(QLatin1Char('\n'));
        QVERIFY2(all.contains(QStringLiteral("Orvo")), qPrintable(all));
        QVERIFY2(all.contains(QStringLiteral("1.0.6.825")), qPrintable(all));
        QVERIFY2(all.contains(QRegularExpression(QStringLiteral("20\\d\\d \\d\\d:\\d\\d:\\d\\d"))),
                 qPrintable(all));
    }

    void galleryMakesAndOpensTheImageDirectory()
    {
        QTemporaryDir root;
        const QString directory = root.path() + QStringLiteral("/new pictures/");
        QSettings().setValue(QStringLiteral("preferences/capture/filepath"), directory);
        QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "urlOpened");
        action("Gallery")->trigger();
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
        QVERIFY(QDir(directory).exists());
        QCOMPARE(openedUrl, QUrl(QStringLiteral("file:///") + directory));
    }

    void theCrossOptionIsApplied()
    {
        QSettings().setValue(QStringLiteral("measurement/showcross"), true);
        makeWindow();
        show();
        view()->setPrimitiveDragMode(PrimitiveManager::Draw, 65637);
        action("100%")->trigger();
        QTest::mouseMove(view()->viewport(), QPoint(200, 150));
        const QImage picture = view()->imageScene()->renderVisible();
        QVERIFY(contains(picture, Qt::darkGray));
    }

    void closingAsksAndCancelKeepsEverything()
    {
        QSettings().remove(confirmExit);
        show();
        QString text;
        QMessageBox::StandardButtons buttons;
        DialogAnswer<QMessageBox> answer([&](QMessageBox* box) {
            text = box->text();
            buttons = box->standardButtons();
            box->checkBox()->setChecked(true);
            clickButton(box, QMessageBox::Cancel);
        });
        window->close();
        QVERIFY(answer.wasAsked());
        QCOMPARE(text, QStringLiteral("Do you want to exit Orvo ?"));
        QCOMPARE(buttons, QMessageBox::Ok | QMessageBox::Cancel);
        QVERIFY(window->isVisible());
        QVERIFY(!QSettings().contains(confirmExit));
    }

    void closingAfterOkStoresTheCheckBox_data()
    {
        QTest::addColumn<bool>("never");
        QTest::newRow("ask again") << false;
        QTest::newRow("never again") << true;
    }

    void closingAfterOkStoresTheCheckBox()
    {
        QFETCH(bool, never);
        QSettings().remove(confirmExit);
        show();
        DialogAnswer<QMessageBox> answer([never](QMessageBox* box) {
            QCOMPARE(box->checkBox()->text(), QStringLiteral("Do not show this dialog again."));
            box->checkBox()->setChecked(never);
            clickButton(box, QMessageBox::Ok);
        });
        window->close();
        QVERIFY(answer.wasAsked());
        QVERIFY(!window->isVisible());
        QCOMPARE(QSettings().value(confirmExit).toBool(), !never);
    }

    void closingWithoutQuestionCloses()
    {
        show();
        window->close();
        QVERIFY(!window->isVisible());
        QCOMPARE(QSettings().value(confirmExit).toBool(), false);
    }

    void closingInFullScreenLeavesNoWindowBehind()
    {
        show();
        const GraphicsView* canvas = view();
        action("Fullscreen")->trigger();
        QVERIFY(canvas->isInFullScreen());
        window->close();
        for (const QWidget* each : QApplication::topLevelWidgets())
            QVERIFY2(!each->isVisible(), each->metaObject()->className());
    }

    void aWindowWithASelectedToolGoesCleanly()
    {
        QGraphicsItem* tool = view()->manager()->addTool(PrimitiveManager::createTool(
            65637, view()->manager(), view()->imageScene(), QPointF(10, 10)));
        QVERIFY(tool->isSelected());
        window.reset();
    }

    void framesOfTheWindowsOwnSignalReachTheView()
    {
        QImage image(640, 480, QImage::Format_RGB32);
        image.fill(Qt::blue);
        emit window->getImage(image);
        QCOMPARE(view()->sceneRect(), QRectF(0, 0, 640, 480));
    }

private:
    void makeWindow() { window = std::make_unique<MainWindow>(); }
    void show()
    {
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }
    GraphicsView* view() const { return window->findChild<GraphicsView*>(); }
    QWidget* sidebar() const { return window->findChild<QSplitter*>()->widget(0); }
    QToolButton* zoomButton() const
    {
        for (QToolButton* button : window->findChildren<QToolButton*>()) {
            if (button->accessibleName() == QStringLiteral("Zoom"))
                return button;
        }
        return nullptr;
    }
    QAction* action(const QString& text) const
    {
        for (QAction* candidate : window->findChildren<QAction*>()) {
            if (candidate->text() == text)
                return candidate;
        }
        return nullptr;
    }
    QAction* action(const char* text) const { return action(QString::fromLatin1(text)); }
    static QLabel* labelWith(const QWidget* parent, const QString& text)
    {
        for (QLabel* label : parent->findChildren<QLabel*>()) {
            if (label->text() == text)
                return label;
        }
        return nullptr;
    }
    static QMenu* openMenu(QWidget* button)
    {
        QTest::mouseClick(button, Qt::LeftButton);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
    static bool contains(const QImage& image, const QColor& colour)
    {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == colour)
                    return true;
            }
        }
        return false;
    }

    std::unique_ptr<MainWindow> window;
    QUrl openedUrl;
};

QTEST_MAIN(tst_MainWindow)
#include "tst_MainWindow.moc"
