#include "zowidgets/ZoSideBar.h"

#include <QAction>
#include <QButtonGroup>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int ButtonSize = 32;
constexpr int IconSize = 24;
constexpr int Margin = 4;

/// A text as it is read out: without the marks that menus put into it.
QString spoken(QString text)
{
    if (text.endsWith(QLatin1String("...")))
        text.chop(3);
    return text.remove(QLatin1Char('&'));
}

} // namespace

ZoSideBar::ZoSideBar(QWidget* parent)
    : QWidget(parent),
      topLayout(new QVBoxLayout),
      bottomLayout(new QVBoxLayout),
      pages(new QButtonGroup(this))
{
    setAttribute(Qt::WA_StyledBackground);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Margin, Margin, Margin, Margin);
    column->setSpacing(Margin);
    column->addLayout(topLayout);
    column->addStretch();
    column->addLayout(bottomLayout);
    topLayout->setSpacing(Margin);
    bottomLayout->setSpacing(Margin);

    connect(pages, &QButtonGroup::idToggled, this, &ZoSideBar::pageToggled);
}

int ZoSideBar::addTopAction(const QString& text, const QIcon& icon)
{
    const int index = pages->buttons().size();
    QToolButton* button = makeButton();
    button->setText(text);
    button->setIcon(icon);
    button->setToolTip(spoken(text));
    button->setAccessibleName(spoken(text));
    button->setCheckable(true);
    pages->addButton(button, index);
    topLayout->addWidget(button);
    return index;
}

QToolButton* ZoSideBar::addBottomAction(QAction* action)
{
    QToolButton* button = makeButton();
    button->setDefaultAction(action);
    const auto name = [button, action] { button->setAccessibleName(spoken(action->text())); };
    connect(action, &QAction::changed, button, name);
    name();
    bottomLayout->addWidget(button);
    return button;
}

int ZoSideBar::currentIndex() const
{
    return pages->checkedId();
}

QString ZoSideBar::currentText() const
{
    const QAbstractButton* page = pages->checkedButton();
    return page ? page->text() : QString();
}

void ZoSideBar::setCurrentIndex(int index)
{
    if (QAbstractButton* page = pages->button(index))
        page->setChecked(true);
}

QToolButton* ZoSideBar::makeButton()
{
    auto* button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setIconSize(QSize(IconSize, IconSize));
    button->setMinimumSize(ButtonSize, ButtonSize);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

void ZoSideBar::pageToggled(int index, bool checked)
{
    if (!checked || index == current)
        return;
    current = index;
    emit currentIndexChanged(index);
}
