#pragma once

#include <zowidgets/ZoFramelessWindow.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

/// A frameless window as a program builds it: a title bar with a label and a button, and a body
/// that fills the rest and has a cursor of its own. 400 x 300, the title bar 32 high.
class FramelessExample final : public ZoFramelessWindow
{
public:
    FramelessExample()
    {
        auto* centre = new QWidget;
        auto* column = new QVBoxLayout(centre);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(0);
        column->addWidget(titleBar);
        column->addWidget(body, 1);
        auto* row = new QHBoxLayout(titleBar);
        row->setContentsMargins(0, 0, 0, 0);
        row->addWidget(titleLabel);
        row->addStretch(1);
        row->addWidget(plainLabel);
        row->addWidget(button);
        titleBar->setFixedHeight(32);
        body->setCursor(Qt::CrossCursor);
        setCentralWidget(centre);
        setTitleBar(titleBar);
        addIgnoreWidget(titleLabel);
        setResizeableAreaWidth(4);
        setMinimumSize(200, 150);
        resize(400, 300);
    }

    /// In the window's coordinates.
    QPoint centreOf(const QWidget* child) const
    {
        return child->mapTo(this, child->rect().center());
    }

    Qt::CursorShape cursorShape() const { return windowHandle()->cursor().shape(); }

    QWidget* titleBar = new QWidget;
    QLabel* titleLabel = new QLabel(QStringLiteral("Title"));
    /// Not declared as a part of the title bar.
    QLabel* plainLabel = new QLabel(QStringLiteral("Plain"));
    QPushButton* button = new QPushButton(QStringLiteral("Button"));
    QWidget* body = new QWidget;
};
