#pragma once

#include <QMainWindow>

#include <memory>

namespace zowidgets {
class WindowFrame;
}

/// A main window without a system frame. Its border of a few pixels resizes it on all sides and
/// corners, its title bar moves it, and a double click in the title bar maximises it. Moving and
/// resizing are left to the window system where it offers that, so that snapping works.
class ZoFramelessWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit ZoFramelessWindow(QWidget* parent = nullptr);
    ~ZoFramelessWindow() override;

    /// The widget that moves the window and takes the double click. Not owned.
    void setTitleBar(QWidget* titleBar);
    /// A child of the title bar that counts as title bar (a label, say). Other children keep their
    /// mouse events to themselves.
    void addIgnoreWidget(QWidget* widget);
    /// The width in pixels of the border that resizes the window; 0 for none.
    void setResizeableAreaWidth(int width);

public slots:
    /// Maximises the window or ends that; full screen is left only for maximised.
    void toggleMaximize(bool maximize);

signals:
    /// When the window has become maximised or normal, by whatever way.
    void windowMaximized(bool maximized);

protected:
    void changeEvent(QEvent* event) override;

private:
    std::unique_ptr<zowidgets::WindowFrame> frame;
    /// As it was told last.
    bool maximized = false;
};
