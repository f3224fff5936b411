#pragma once

#include <QWidget>

/// The box where the two rulers meet. A child of the view.
class QtCornerBox final : public QWidget
{
    Q_OBJECT

public:
    explicit QtCornerBox(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};
