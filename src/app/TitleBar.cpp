#include "app/TitleBar.h"

#include <zowidgets/ZoFramelessWindow.h>

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>

namespace {

constexpr int gap = 5;

QIcon maximizeIcon()
{
    QIcon icon;
    icon.addFile(QStringLiteral(":/res/images/restore_btn_icon.png"), {}, QIcon::Normal, QIcon::On);
    icon.addFile(QStringLiteral(":/res/images/max_btn_icon.png"), {}, QIcon::Normal, QIcon::Off);
    return icon;
}

} // namespace

TitleBar::TitleBar(QWidget* parent, const QString& title, const QPixmap& icon)
    : QFrame(parent),
      iconLabel(new QLabel(this)),
      titleLabel(new QLabel(title, this))
{
    setObjectName(QStringLiteral("titlebar"));
    makeButtons();
    layOut();
    iconLabel->setPixmap(icon);
    iconLabel->setVisible(true);
    connectWindow(parent);
}

QWidget* TitleBar::icon() const
{
    return iconLabel;
}

QWidget* TitleBar::title() const
{
    return titleLabel;
}

QPushButton* TitleBar::makeButton(const char* name, const QIcon& buttonIcon,
                                  const QString& accessible)
{
    auto* button = new QPushButton(buttonIcon, QString(), this);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(accessible);
    return button;
}

void TitleBar::makeButtons()
{
    menuButton = makeButton("menuButton", QIcon(QStringLiteral(":/res/images/menu_btn_icon.png")),
                            tr("Menu"));
    minimizeButton = makeButton(
        "minimizeButton", QIcon(QStringLiteral(":/res/images/min_btn_icon.png")), tr("Minimize"));
    maximizeButton = makeButton("maximizeButton", maximizeIcon(), tr("Maximize"));
    maximizeButton->setCheckable(true);
    closeButton = makeButton("closeButton",
                             QIcon(QStringLiteral(":/res/images/close_btn_icon.png")), tr("Close"));
}

void TitleBar::layOut()
{
    iconLabel->hide();
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addSpacing(gap);
    layout->addWidget(iconLabel);
    layout->addSpacing(gap);
    layout->addWidget(titleLabel);
    layout->addItem(new QSpacerItem(20, 0, QSizePolicy::Expanding, QSizePolicy::Minimum));
    for (QPushButton* button : {menuButton, minimizeButton, maximizeButton, closeButton})
        layout->addWidget(button);
}

void TitleBar::connectWindow(QWidget* window)
{
    connect(minimizeButton, &QPushButton::clicked, window, &QWidget::showMinimized);
    connect(closeButton, &QPushButton::clicked, window, &QWidget::close);
    if (auto* frameless = qobject_cast<ZoFramelessWindow*>(window)) {
        connect(frameless, &ZoFramelessWindow::windowMaximized, maximizeButton,
                &QPushButton::setChecked);
        connect(maximizeButton, &QPushButton::toggled, frameless,
                &ZoFramelessWindow::toggleMaximize);
    }
}
