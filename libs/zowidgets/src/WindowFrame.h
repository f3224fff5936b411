#pragma once

#include "WindowEdges.h"

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QVector>
#include <QWidget>
#include <QWindow>

#include <optional>

class QMouseEvent;

namespace zowidgets {

/// Does for a window what the system's frame would do: moves and resizes it by the mouse. It reads
/// the mouse as an application event filter, since the border lies over the window's children,
/// which need not track the mouse. Positions are global unless they are said to be the window's.
class WindowFrame final : public QObject
{
    Q_OBJECT

public:
    /// The window outlives its frame.
    explicit WindowFrame(QWidget& framedWindow);

    void setTitleBar(QWidget* widget);
    void addTitleBarChild(QWidget* widget);
    void setBorderWidth(int pixels);

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void titleBarDoubleClicked();

private:
    /// A move (no edges) or resize that the window system did not take over.
    struct Drag
    {
        Qt::Edges edges;
        QPoint from;
        QRect geometry;
    };

    bool handleMouse(QWidget& receiver, QMouseEvent& event);
    bool press(const QMouseEvent& event);
    bool move(QWidget& receiver, const QMouseEvent& event);
    bool release(const QMouseEvent& event);
    bool doubleClick(const QMouseEvent& event);
    bool hover(QWidget& receiver, const QPoint& pos);

    bool isFilling() const;
    bool isTitleBar(const QPoint& pos) const;
    Qt::Edges edgesAt(const QPoint& pos) const;
    SizeLimits sizeLimits() const;
    void startDrag(Qt::Edges edges, const QPoint& from);
    void showResizeCursor(const QWidget& receiver, Qt::CursorShape shape);
    void restoreCursor(const QWidget& receiver);

    QWidget& window;
    QPointer<QWidget> titleBar;
    QVector<QPointer<QWidget>> titleBarChildren;
    int borderWidth = 0;
    std::optional<QPoint> titlePress;
    std::optional<Drag> drag;
    /// The window, or native child, that shows the resize cursor now.
    QPointer<QWindow> cursorWindow;
};

} // namespace zowidgets
