#include "CategoryTitle.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOption>

namespace zowidgets {

namespace {

constexpr int arrowSize = 12;
constexpr int arrowMargin = 6;

} // namespace

CategoryTitle::CategoryTitle(const QString& text) : QPushButton(text)
{
    setObjectName(QStringLiteral("categoryTitle"));
    setCheckable(true);
    setAutoDefault(false);
}

void CategoryTitle::paintEvent(QPaintEvent* event)
{
    QPushButton::paintEvent(event);
    QStyleOption arrow;
    arrow.initFrom(this);
    const QRect place(arrowMargin, (height() - arrowSize) / 2, arrowSize, arrowSize);
    arrow.rect = QStyle::visualRect(layoutDirection(), rect(), place);
    const bool leftward = layoutDirection() == Qt::RightToLeft;
    const auto folded = leftward ? QStyle::PE_IndicatorArrowLeft : QStyle::PE_IndicatorArrowRight;
    QPainter painter(this);
    style()->drawPrimitive(isChecked() ? QStyle::PE_IndicatorArrowDown : folded, &arrow, &painter,
                           this);
}

void CategoryTitle::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Right || event->key() == Qt::Key_Left)
        setChecked(event->key() == Qt::Key_Right);
    else
        QPushButton::keyPressEvent(event);
}

} // namespace zowidgets
