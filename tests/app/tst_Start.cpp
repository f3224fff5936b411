#include "app/Application.h"
#include "app/MainWindow.h"

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QPointer>
#include <QSettings>
#include <QTimer>
#include <QtTest>

namespace {

/// What the running program looked like when its window was first painted.
struct Observation
{
    bool painted = false;
    bool maximized = false;
    QString title;
    QString iconTheme;
    int fontSize = 0;
};
Observation seen;

/// Waits for the first paint of the main window, notes what there is, and closes the window.
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

} // namespace

/// Runs the program as a whole; the application object is made by it.
class tst_Start : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qAddPreRoutine(observe);
        QSettings store(QStringLiteral("Orvo"), QStringLiteral("Orvo"));
        store.setValue(QStringLiteral("gui/maximizeWhenLanuch"), true);
        store.setValue(QStringLiteral("gui/confirmExit"), false);
    }

    void aStoredMaximizeShowsFromTheFirstPaintAndClosingEndsTheProgram()
    {
        char name[] = "orvo";
        char* arguments[] = {name, nullptr};
        int count = 1;
        QCOMPARE(runOrvo(count, arguments), 0);
        QVERIFY(seen.painted);
        QVERIFY(seen.maximized);
        QCOMPARE(seen.title, QStringLiteral("Orvo"));
        QCOMPARE(seen.iconTheme, QStringLiteral("light-blue"));
        QCOMPARE(seen.fontSize, 9);
        QVERIFY(!QCoreApplication::instance());
    }
};

QTEST_APPLESS_MAIN(tst_Start)
#include "tst_Start.moc"
