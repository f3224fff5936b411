#include "app/Application.h"

#include "app/MainWindow.h"

#include <QApplication>
#include <QIcon>
#include <QSettings>
#include <QTimer>
#include <QtTest>

namespace {

/// What the running program looked like when its window was first painted.
struct Observation
{
    bool painted = false;
    bool maximized = false;
    bool dark = false;
    QString title;
    QString iconTheme;
    int fontSize = 0;
};
Observation seen;

/// Waits for the first paint of the main window, notes what there is, and ends the program.
class Observer final : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* window = qobject_cast<MainWindow*>(watched);
        if (window && event->type() == QEvent::Paint && !seen.painted)
            note(window);
        return false;
    }

private:
    static void note(MainWindow* window)
    {
        seen.painted = true;
        seen.maximized = window->isMaximized();
        seen.dark = window->palette().color(QPalette::Window).lightness() < 64;
        seen.title = window->windowTitle();
        seen.iconTheme = QIcon::themeName();
        seen.fontSize = QApplication::font().pointSize();
        QTimer::singleShot(0, window, &QWidget::close);
    }
};

void observe()
{
    qApp->installEventFilter(new Observer(qApp));
}

/// Runs the program as a whole; it makes the application object itself.
int run()
{
    seen = Observation();
    char name[] = "orvo";
    char* arguments[] = {name, nullptr};
    int count = 1;
    return runOrvo(count, arguments);
}

} // namespace

class tst_Start : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qAddPreRoutine(observe); }

    void aFirstStartIsDarkAndNotMaximized()
    {
        store().setValue(QStringLiteral("gui/confirmExit"), false);
        QCOMPARE(run(), 0);
        QVERIFY(seen.painted);
        QVERIFY(!seen.maximized);
        QVERIFY(seen.dark);
        QCOMPARE(seen.title, QStringLiteral("Orvo"));
        QCOMPARE(seen.iconTheme, QStringLiteral("light-blue"));
        QCOMPARE(seen.fontSize, 9);
        QVERIFY(!QCoreApplication::instance());
    }

    void aStoredMaximizeShowsFromTheFirstPaint()
    {
        store().setValue(QStringLiteral("gui/maximizeWhenLanuch"), true);
        QCOMPARE(run(), 0);
        QVERIFY(seen.painted);
        QVERIFY(seen.maximized);
        QVERIFY(store().value(QStringLiteral("gui/maximizeWhenLanuch")).toBool());
    }

private:
    /// The program's store, also while there is no application.
    static QSettings& store()
    {
        static QSettings settings(QStringLiteral("Orvo"), QStringLiteral("Orvo"));
        return settings;
    }
};

QTEST_APPLESS_MAIN(tst_Start)
#include "tst_Start.moc"
