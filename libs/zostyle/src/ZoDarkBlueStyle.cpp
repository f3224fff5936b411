#include "ZoDarkBlueStyle.h"

#include "Colours.h"
#include "MessageIcons.h"
#include "StyleSheet.h"

#include <QApplication>
#include <QCursor>
#include <QHoverEvent>
#include <QPainter>
#include <QStyleOption>
#include <QToolButton>

namespace zostyle {

namespace {

constexpr int ToolIconSize = 24;
constexpr int SmallIconSize = 16;
constexpr int RowHeight = 24;
constexpr int SplitterWidth = 4;

QPalette darkBluePalette()
{
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, Tone tone) {
        palette.setColor(role, colour(tone));
    };
    set(QPalette::Window, Tone::Window);
    set(QPalette::WindowText, Tone::Text);
    set(QPalette::Base, Tone::Panel);
    set(QPalette::AlternateBase, Tone::Alternate);
    set(QPalette::Text, Tone::Text);
    set(QPalette::PlaceholderText, Tone::Secondary);
    set(QPalette::ToolTipBase, Tone::Raised);
    set(QPalette::ToolTipText, Tone::Text);
    set(QPalette::Button, Tone::Raised);
    set(QPalette::ButtonText, Tone::Text);
    set(QPalette::BrightText, Tone::SelectionText);
    set(QPalette::Light, Tone::Handle);
    set(QPalette::Midlight, Tone::Line);
    set(QPalette::Mid, Tone::Panel);
    set(QPalette::Dark, Tone::Line);
    set(QPalette::Shadow, Tone::Shadow);
    set(QPalette::Highlight, Tone::Selection);
    set(QPalette::HighlightedText, Tone::SelectionText);
    set(QPalette::Link, Tone::Link);
    set(QPalette::LinkVisited, Tone::Secondary);

    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::PlaceholderText, QPalette::Link, QPalette::LinkVisited})
        palette.setColor(QPalette::Disabled, role, colour(Tone::Disabled));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colour(Tone::Line));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, colour(Tone::Secondary));
    return palette;
}

bool isListOfCombo(const QWidget* widget)
{
    return widget->inherits("QComboBoxPrivateContainer");
}

/// A combo box does not hear of a mouse that leaves it through its open list, and would stay lit.
void endHover(QWidget* combo)
{
    if (combo->rect().contains(combo->mapFromGlobal(QCursor::pos())))
        return;
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(combo, &leave);
    QHoverEvent hoverLeave(QEvent::HoverLeave, QPoint(-1, -1), QPoint());
    QCoreApplication::sendEvent(combo, &hoverLeave);
}

} // namespace

ZoDarkBlueStyle::ZoDarkBlueStyle(const QString& styleSheetPath)
    : QProxyStyle(QStringLiteral("fusion")),
      sheet(loadStyleSheet(styleSheetPath))
{
}

/// The application drops a style only after the next one is in place. Only then can the sheet go:
/// taking it away makes the application set its style anew, which must already be the next one.
ZoDarkBlueStyle::~ZoDarkBlueStyle()
{
    if (broughtSheet && !QCoreApplication::closingDown() && qApp->styleSheet() == sheet)
        qApp->setStyleSheet(replacedSheet);
}

void ZoDarkBlueStyle::polish(QPalette& palette)
{
    palette = darkBluePalette();
}

/// Giving the application a sheet makes it polish once more, hence the comparison.
void ZoDarkBlueStyle::polish(QApplication* application)
{
    QProxyStyle::polish(application);
    if (sheet.isEmpty())
        return;
    broughtSheet = true;
    if (application->styleSheet() == sheet)
        return;
    replacedSheet = application->styleSheet();
    application->setStyleSheet(sheet);
}

void ZoDarkBlueStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (isListOfCombo(widget))
        widget->installEventFilter(this);
}

void ZoDarkBlueStyle::unpolish(QWidget* widget)
{
    if (isListOfCombo(widget))
        widget->removeEventFilter(this);
    QProxyStyle::unpolish(widget);
}

bool ZoDarkBlueStyle::eventFilter(QObject* watched, QEvent* event)
{
    const auto* list = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::Hide && list && list->parentWidget())
        endHover(list->parentWidget());
    return QProxyStyle::eventFilter(watched, event);
}

QPalette ZoDarkBlueStyle::standardPalette() const
{
    return darkBluePalette();
}

int ZoDarkBlueStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                                 const QWidget* widget) const
{
    switch (metric) {
    case PM_ButtonIconSize:
        return qobject_cast<const QToolButton*>(widget) ? ToolIconSize : SmallIconSize;
    case PM_SmallIconSize:
    case PM_TabBarIconSize:
    case PM_ListViewIconSize:
        return SmallIconSize;
    case PM_ToolBarIconSize:
        return ToolIconSize;
    case PM_HeaderDefaultSectionSizeVertical:
        return RowHeight;
    case PM_SplitterWidth:
        return SplitterWidth;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int ZoDarkBlueStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                               QStyleHintReturn* returnData) const
{
    switch (hint) {
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

QIcon ZoDarkBlueStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                                    const QWidget* widget) const
{
    const QIcon own = messageIcon(icon);
    return own.isNull() ? QProxyStyle::standardIcon(icon, option, widget) : own;
}

void ZoDarkBlueStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                    QPainter* painter, const QWidget* widget) const
{
    if (element != PE_FrameFocusRect) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    painter->save();
    painter->setPen(colour(Tone::Focus));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

} // namespace zostyle
