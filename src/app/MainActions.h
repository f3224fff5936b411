#pragma once

class QAction;
class QObject;

/// Makes the actions of the main window: texts, icons, fixed keys and states. What they trigger is
/// the window's. Each call makes a new action, owned by `parent`.
namespace MainActions {

QAction* save(QObject* parent);
QAction* print(QObject* parent);
QAction* quit(QObject* parent);
QAction* undo(QObject* parent);
QAction* zoomIn(QObject* parent);
QAction* zoomOut(QObject* parent);
QAction* settings(QObject* parent);
QAction* about(QObject* parent);
QAction* snap(QObject* parent);
QAction* record(QObject* parent);
QAction* gallery(QObject* parent);
QAction* fullscreen(QObject* parent);
QAction* list(QObject* parent);

} // namespace MainActions
