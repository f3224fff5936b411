#include "app/MainActions.h"

#include "app/MainWindow.h"

#include <QAction>
#include <QIcon>

namespace {

constexpr int recordIconSize = 24;

QIcon themeIcon(const char* name)
{
    return QIcon::fromTheme(QLatin1String(name));
}

QIcon themeIcon(const char* name, const char* fallbackPath)
{
    return QIcon::fromTheme(QLatin1String(name), QIcon(QLatin1String(fallbackPath)));
}

QAction* makeAction(QObject* parent, const QIcon& icon, const QString& text,
                    const QString& statusTip)
{
    auto* action = new QAction(icon, text, parent);
    action->setStatusTip(statusTip);
    return action;
}

QIcon recordIcon()
{
    QIcon icon;
    icon.addPixmap(themeIcon("record-stop").pixmap(recordIconSize), QIcon::Normal, QIcon::On);
    icon.addPixmap(themeIcon("record-start").pixmap(recordIconSize), QIcon::Normal, QIcon::Off);
    return icon;
}

} // namespace

QAction* MainActions::save(QObject* parent)
{
    auto* action =
        makeAction(parent, themeIcon("document-save", ":/images/save.png"),
                   MainWindow::tr("&Save..."), MainWindow::tr("Save the current form letter"));
    action->setShortcuts(QKeySequence::Save);
    return action;
}

QAction* MainActions::print(QObject* parent)
{
    auto* action =
        makeAction(parent, themeIcon("document-print", ":/images/print.png"),
                   MainWindow::tr("&Print..."), MainWindow::tr("Print the current form letter"));
    action->setShortcuts(QKeySequence::Print);
    return action;
}

QAction* MainActions::quit(QObject* parent)
{
    auto* action = makeAction(parent, themeIcon("file-quit", ":/images/close_btn_icon.png"),
                              MainWindow::tr("&Quit"), MainWindow::tr("Quit the application"));
    action->setShortcuts(QKeySequence::Quit);
    return action;
}

QAction* MainActions::undo(QObject* parent)
{
    auto* action =
        makeAction(parent, themeIcon("edit-undo", ":/images/undo.png"), MainWindow::tr("&Undo"),
                   MainWindow::tr("Undo the last editing action"));
    action->setShortcuts(QKeySequence::Undo);
    return action;
}

QAction* MainActions::zoomIn(QObject* parent)
{
    return makeAction(parent, themeIcon("zoom-in"), MainWindow::tr("Zoom In"),
                      MainWindow::tr("Increase the zoom level"));
}

QAction* MainActions::zoomOut(QObject* parent)
{
    return makeAction(parent, themeIcon("zoom-out"), MainWindow::tr("Zoom Out"),
                      MainWindow::tr("Decrease the zoom level"));
}

QAction* MainActions::settings(QObject* parent)
{
    auto* action = makeAction(parent, themeIcon("settings"), MainWindow::tr("Settings..."),
                              MainWindow::tr("Show preferences dialog."));
    action->setToolTip(MainWindow::tr("Preferences"));
    action->setShortcuts(QKeySequence::Preferences);
    return action;
}

QAction* MainActions::about(QObject* parent)
{
    return makeAction(parent, themeIcon("about"), MainWindow::tr("About..."),
                      MainWindow::tr("Open about dialog"));
}

QAction* MainActions::snap(QObject* parent)
{
    auto* action = makeAction(parent, themeIcon("snap"), MainWindow::tr("Snap"),
                              MainWindow::tr("Take a picture"));
    action->setToolTip(MainWindow::tr("Take a picture"));
    action->setEnabled(false);
    return action;
}

QAction* MainActions::record(QObject* parent)
{
    auto* action = makeAction(parent, recordIcon(), MainWindow::tr("Record"),
                              MainWindow::tr("Start/Stop video recording"));
    action->setToolTip(MainWindow::tr("Start/Stop video recording"));
    action->setCheckable(true);
    action->setEnabled(false);
    return action;
}

QAction* MainActions::gallery(QObject* parent)
{
    auto* action = makeAction(parent, themeIcon("gallery"), MainWindow::tr("Gallery"),
                              MainWindow::tr("Open image and video folder"));
    action->setToolTip(MainWindow::tr("Open image and video folder"));
    return action;
}

QAction* MainActions::fullscreen(QObject* parent)
{
    return makeAction(parent, themeIcon("fullscreen"), MainWindow::tr("Fullscreen"), QString());
}

QAction* MainActions::list(QObject* parent)
{
    auto* action = makeAction(parent, themeIcon("tableview"), MainWindow::tr("List"), QString());
    action->setCheckable(true);
    return action;
}
