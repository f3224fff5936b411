#pragma once

#include <QLabel>

/// A label that works as a link: it shows the pointing hand, is underlined while the mouse is over
/// it, takes the keyboard focus and reacts to a click, Return or the space key.
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
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void setUnderlined(bool on);
};
