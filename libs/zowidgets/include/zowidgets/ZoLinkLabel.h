#pragma once

#include <QLabel>

/// A label that works as a link: it shows the pointing hand, takes the keyboard focus, is
/// underlined while it has that or the mouse is over it, and reacts to a click, Return or the space
/// key.
class ZoLinkLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ZoLinkLabel(QWidget* parent = nullptr);
    explicit ZoLinkLabel(const QString& text, QWidget* parent = nullptr);

signals:
    void clicked();

protected:
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void updateUnderline();
};
