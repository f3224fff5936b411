#pragma once

#include <QPushButton>

namespace zowidgets {

/// The title of a category, with an arrow that tells whether it is open: checked means open.
class CategoryTitle final : public QPushButton
{
    Q_OBJECT

public:
    explicit CategoryTitle(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace zowidgets
