#include "app/forms/FormSidebar.h"

#include "app/forms/FormMeasure.h"
#include "camera/FormCameraControl.h"

#include <zowidgets/ZoSideBar.h>

#include <QFrame>
#include <QLabel>
#include <QPixmap>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

void addExpandingSpace(QBoxLayout* row)
{
    row->addItem(new QSpacerItem(20, 0, QSizePolicy::Expanding, QSizePolicy::Minimum));
}

} // namespace

FormSidebar::FormSidebar(QWidget* parent)
    : QWidget(parent),
      sideBar(new ZoSideBar(this)),
      captionLabel(new QLabel(tr("Caption"), this)),
      stackedWidget(new QStackedWidget(this)),
      cameraPage(new FormCameraControl(true, false, this)),
      measurePage(new FormMeasure(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    addBanner(layout);

    auto* column = new QVBoxLayout;
    column->addLayout(makeCaptionRow());
    column->addWidget(stackedWidget, 1);
    auto* row = new QHBoxLayout;
    row->addWidget(sideBar);
    row->addLayout(column, 1);
    layout->addLayout(row, 1);
    addPages();
}

void FormSidebar::addBottomAction(QAction* action)
{
    sideBar->addBottomAction(action);
}

void FormSidebar::setCurrentStackedWidget(int index)
{
    stackedWidget->setCurrentIndex(index);
    captionLabel->setText(sideBar->currentText());
}

void FormSidebar::addBanner(QBoxLayout* layout)
{
    QPixmap picture;
    if (!picture.load(QStringLiteral(":/oem/banner.png")))
        return;
    auto* banner = new QLabel(this);
    banner->setObjectName(QStringLiteral("Banner"));
    banner->setPixmap(picture);
    auto* row = new QHBoxLayout;
    row->setContentsMargins(5, 5, 5, 5);
    row->addSpacing(10);
    row->addWidget(banner);
    addExpandingSpace(row);
    layout->addLayout(row);
    auto* line = new QFrame(this);
    line->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    layout->addWidget(line);
}

QBoxLayout* FormSidebar::makeCaptionRow()
{
    captionLabel->setObjectName(QStringLiteral("sidebarCaption"));
    QFont font = captionLabel->font();
    font.setPointSize(10);
    font.setWeight(QFont::Bold);
    captionLabel->setFont(font);
    auto* row = new QHBoxLayout;
    row->addSpacing(5);
    row->addWidget(captionLabel);
    addExpandingSpace(row);
    return row;
}

void FormSidebar::addPages()
{
    stackedWidget->addWidget(cameraPage);
    sideBar->addTopAction(tr("Camera"), QIcon::fromTheme(QStringLiteral("view-camera")));
    stackedWidget->addWidget(measurePage);
    sideBar->addTopAction(tr("Measure"), QIcon::fromTheme(QStringLiteral("view-measure")));
    connect(sideBar, &ZoSideBar::currentIndexChanged, this, &FormSidebar::setCurrentStackedWidget);
    sideBar->setCurrentIndex(0);
}
