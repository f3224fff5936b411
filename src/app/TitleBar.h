#pragma once

#include <QFrame>

class QLabel;
class QPixmap;
class QPushButton;

/// The caption strip of the frameless main window: icon, title and the window's buttons. Its parent
/// is the window that the buttons act on.
class TitleBar final : public QFrame
{
    Q_OBJECT

public:
    TitleBar(QWidget* parent, const QString& title, const QPixmap& icon);

    /// The button of the window's menu, which is the window's to show.
    QPushButton* menu() const { return menuButton; }
    /// The parts that the window counts as title bar.
    QWidget* icon() const;
    QWidget* title() const;

signals:
    void menuButtonClicked();

private:
    QPushButton* makeButton(const char* name, const QIcon& buttonIcon, const QString& accessible);
    void makeButtons();
    void layOut();
    void connectWindow(QWidget* window);

    QLabel* iconLabel = nullptr;
    QLabel* titleLabel = nullptr;
    QPushButton* menuButton = nullptr;
    QPushButton* minimizeButton = nullptr;
    QPushButton* maximizeButton = nullptr;
    QPushButton* closeButton = nullptr;
};
