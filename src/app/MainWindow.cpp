#include "app/MainWindow.h"

#include "app/BuildInfo.h"
#include "app/ExitQuestion.h"
#include "app/Keys.h"
#include "app/MainActions.h"
#include "app/Placeholder.h"
#include "app/StatusBar.h"
#include "app/StoragePath.h"
#include "app/StoredShortcut.h"
#include "app/TitleBar.h"
#include "app/forms/FormMeasure.h"
#include "app/forms/FormSidebar.h"
#include "camera/FormCameraControl.h"
#include "camera/SelectDeviceDialog.h"
#include "camera/panels/PanelCamDevices.h"
#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "measure/PrimitiveManager.h"
#include "results/FormOutputbar.h"

#include <zolens/MyCamera.h>
#include <zowidgets/ZoAboutDialog.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QSlider>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>

namespace {

constexpr int resizeBorder = 4;
constexpr int fpsInterval = 1500;
constexpr int placeholderDelay = 1000;
constexpr double zoomStep = 10.0;
constexpr int pictureQuality = 90;
constexpr QSize startSize(1280, 800);

/// Shows the wait cursor while it lives.
class WaitCursor final
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY(WaitCursor)
};

bool capturePopup()
{
    return QSettings().value(Keys::capturePopup(), Keys::capturePopupDefault).toBool();
}

} // namespace

MainWindow::MainWindow(QWidget* parent) : ZoFramelessWindow(parent)
{
    layOut();
    fpsTimer = new QTimer(this);
    connect(fpsTimer, &QTimer::timeout, this, &MainWindow::updateFPS);
    makeActions();
    connectSidebar();
    connectStatusBar();
    if (auto* measurePage = sidebar->findChild<FormMeasure*>(QStringLiteral("FormMeasure")))
        measurePage->setView(view);
    outputbar->setManager(view->manager());
    connectCanvas();
    preferencesApplied();
}

// The canvas goes after the side bar, and its tools report to the end.
MainWindow::~MainWindow()
{
    // Before the view, which its frames are for.
    delete camera;
    camera = nullptr;
    outputbar->setManager(nullptr);
    view->manager()->setAttributesWidget(nullptr);
}

void MainWindow::layOut()
{
    setWindowTitle(QStringLiteral("Orvo"));
    setWindowIcon(QIcon(QStringLiteral(":/oem/logo.ico")));
    resize(startSize.boundedTo(screen()->availableSize()));
    auto* titleBar = makeTitleBar();

    rightSplitter = new QSplitter(Qt::Vertical);
    rightSplitter->addWidget(makeCanvas());
    outputbar = new FormOutputbar(rightSplitter);
    rightSplitter->setStretchFactor(0, 1);
    rightSplitter->setChildrenCollapsible(true);
    outputbar->hide();

    mainSplitter = new QSplitter(Qt::Horizontal, this);
    sidebar = new FormSidebar(mainSplitter);
    mainSplitter->addWidget(rightSplitter);
    mainSplitter->setStretchFactor(1, 1);
    mainSplitter->setChildrenCollapsible(false);

    auto* central = new QWidget;
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(titleBar);
    layout->addWidget(mainSplitter, 1);
    setCentralWidget(central);
    setStatusBar(new QStatusBar);

    setResizeableAreaWidth(resizeBorder);
    setTitleBar(titleBar);
    addIgnoreWidget(titleBar->title());
    addIgnoreWidget(titleBar->icon());
}

TitleBar* MainWindow::makeTitleBar()
{
    const QIcon logo(QStringLiteral(":/res/logo.ico"));
    auto* titleBar = new TitleBar(this, windowTitle(), logo.pixmap(16, 16));
    connect(titleBar->menu(), &QPushButton::clicked, this, &MainWindow::titlebarMenuClicked);
    return titleBar;
}

QWidget* MainWindow::makeCanvas()
{
    auto* canvas = new QWidget;
    auto* layout = new QHBoxLayout(canvas);
    layout->setContentsMargins(0, 0, 0, 0);
    view = new GraphicsView;
    layout->addWidget(view);
    showPlaceholder();
    return canvas;
}

void MainWindow::makeActions()
{
    connect(MainActions::save(this), &QAction::triggered, this, &MainWindow::save);
    connect(MainActions::print(this), &QAction::triggered, this, &MainWindow::print);
    connect(MainActions::quit(this), &QAction::triggered, this, &MainWindow::close);
    connect(MainActions::undo(this), &QAction::triggered, this, &MainWindow::undo);
    actionZoomIn = MainActions::zoomIn(this);
    connect(actionZoomIn, &QAction::triggered, this, &MainWindow::zoomIn);
    actionZoomOut = MainActions::zoomOut(this);
    connect(actionZoomOut, &QAction::triggered, this, &MainWindow::zoomOut);
    actionSettings = MainActions::settings(this);
    actionSettings->setEnabled(false);
    actionAbout = MainActions::about(this);
    connect(actionAbout, &QAction::triggered, this, &MainWindow::about);
    actionSnap = MainActions::snap(this);
    connect(actionSnap, &QAction::triggered, this, &MainWindow::snap);
    actionRecord = MainActions::record(this);
    connect(actionRecord, &QAction::toggled, this, &MainWindow::toggleRecord);
    connect(actionRecord, &QAction::toggled, actionSnap, &QAction::setDisabled);
    actionGallery = MainActions::gallery(this);
    connect(actionGallery, &QAction::triggered, this, &MainWindow::openGallery);
    makeZoomActions();
    actionFullscreen = MainActions::fullscreen(this);
    connect(actionFullscreen, &QAction::triggered, this, &MainWindow::toggleFullscreen);
    actionList = MainActions::list(this);
    connect(actionList, &QAction::triggered, this, &MainWindow::toggleOutputbar);
}

void MainWindow::makeZoomActions()
{
    const QString texts[] = {tr("200%"), tr("100%"), tr("75%"),
                             tr("50%"),  tr("25%"),  tr("Fit in view")};
    std::transform(std::begin(texts), std::end(texts), std::begin(zoomActions),
                   [this](const QString& text) { return new QAction(text, this); });
    for (const QAction* action : zoomActions)
        connect(action, &QAction::triggered, this, &MainWindow::zoom);
}

void MainWindow::connectSidebar()
{
    for (QAction* action : {actionSnap, actionRecord, actionGallery, actionSettings})
        sidebar->addBottomAction(action);
    const FormCameraControl* page = sidebar->cameraControl();
    connect(page, &FormCameraControl::openSelectDeviceDialog, this,
            &MainWindow::openSelectDeviceDialog);
    connect(page, &FormCameraControl::closeCamera, this, &MainWindow::closeCamera);
    connect(page, &FormCameraControl::pauseCamera, this, &MainWindow::pausePreview);
    if (auto* devices = page->findChild<PanelCamDevices*>())
        connect(actionRecord, &QAction::toggled, devices, &QWidget::setDisabled);
}

void MainWindow::connectStatusBar()
{
    statusBar = new StatusBar(QMainWindow::statusBar(), actionFullscreen, actionList);
    statusBar->showMessage(tr("Ready"), 0);
    statusBar->setZoomActions(actionZoomIn, actionZoomOut);
    connect(actionRecord, &QAction::toggled, statusBar, &StatusBar::showRecordIndicator);
    connect(statusBar->zoomTextButton(), &QToolButton::clicked, this,
            &MainWindow::matrixIndicationClicked);
    connect(statusBar->levelSlider(), &QSlider::valueChanged, view,
            [this](int level) { view->zoom(static_cast<double>(level)); });
}

void MainWindow::connectCanvas()
{
    connect(view, &GraphicsView::matrixChanged, this, &MainWindow::matrixChanged);
    connect(this, &MainWindow::getImage, view, &GraphicsView::setImage);
}

void MainWindow::pausePreview(bool pause)
{
    if (hasOpenDevice())
        camera->pause = pause;
}

// Closing an open camera forgets the device: after a direct change from one camera to another the
// remembered device is -1, -1.
void MainWindow::openUsbDevice(int type, int index)
{
    const bool tryStillCapture =
        QSettings().value(Keys::tryStillCapture(), Keys::tryStillCaptureDefault).toBool();
    cameraType = type;
    cameraIndex = index;
    closeCamera();
    createCamera();
    if (camera->open(type, index, tryStillCapture)) {
        cameraOpened();
    } else {
        cameraType = cameraIndex = -1;
        cameraFailed();
    }
    qDebug("MainWindow::openCamera end.");
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the slot takes its text by value
void MainWindow::openNetworkDevice(int type, QString url)
{
    closeCamera();
    createCamera();
    if (camera->open(type, url))
        cameraOpened();
    else
        cameraFailed();
    qDebug("MainWindow::openNetworkDevice end.");
}

void MainWindow::openSelectDeviceDialog()
{
    SelectDeviceDialog dialog(openedDevices(), nullptr);
    dialog.askForOpenedDevices([this] { return openedDevices(); });
    connect(&dialog, &SelectDeviceDialog::openUsbDevice, this, &MainWindow::openUsbDevice);
    connect(&dialog, &SelectDeviceDialog::openNetworkDevice, this, &MainWindow::openNetworkDevice);
    dialog.exec();
}

// The placeholder comes in any case, also when another camera has been opened in the meantime: the
// next frame then replaces it and takes the view back to best fit.
void MainWindow::closeCamera()
{
    if (fpsTimer->isActive())
        fpsTimer->stop();
    if (camera) {
        if (camera->camera)
            camera->close();
        delete camera;
        camera = nullptr;
        cameraType = cameraIndex = -1;
    }
    actionSnap->setEnabled(false);
    actionRecord->setEnabled(false);
    sidebar->cameraControl()->onCameraClosed();
    QTimer::singleShot(placeholderDelay, this, &MainWindow::showPlaceholder);
}

void MainWindow::toggleFullscreen()
{
    view->fullScreen();
}

void MainWindow::toggleOutputbar(bool checked)
{
    rightSplitter->widget(1)->setVisible(checked);
}

void MainWindow::about()
{
    ZoAboutDialog dialog(this);
    dialog.setInformation(QStringLiteral("Orvo"), BuildInfo::version(), BuildInfo::time(),
                          QIcon(QStringLiteral(":/oem/logo.ico")), tr("Copyright © Orvo"),
                          QString());
    dialog.exec();
}

void MainWindow::titlebarMenuClicked()
{
    auto* menu = new QMenu(this);
    menu->addActions({actionSettings, actionAbout});
    menu->popup(QCursor::pos());
}

void MainWindow::matrixIndicationClicked()
{
    auto* menu = new QMenu(this);
    for (QAction* action : zoomActions)
        menu->addAction(action);
    menu->popup(QCursor::pos());
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!confirmExit(this)) {
        event->ignore();
        return;
    }
    // A canvas in full screen is a window of its own, which would keep the program running.
    if (view->isInFullScreen())
        view->fullScreen();
    closeCamera();
}

void MainWindow::save() {}

void MainWindow::print() {}

void MainWindow::undo() {}

void MainWindow::snap()
{
    const WaitCursor cursor;
    if (!hasOpenDevice())
        return;
    const QImage image = takePicture();
    if (image.isNull())
        return;
    const QString path = StoragePath::imageFileName(capturePopup(), this);
    if (!path.isEmpty())
        image.save(path, nullptr, pictureQuality);
}

void MainWindow::toggleRecord(bool start)
{
    if (!hasOpenDevice())
        return;
    if (!start) {
        camera->stopRecording();
        return;
    }
    const QString path = StoragePath::videoFileName(capturePopup(), this);
    if (!camera->startRecording(path))
        QMessageBox::information(this, tr("Error"), tr("Failed to start recording."),
                                 QMessageBox::Ok);
}

// The action stays checked, as after a recording that did not start: Record is the user's to press.
void MainWindow::recordingEnded(const QString& reason)
{
    statusBar->showRecordNotice(tr("Recording ended: %1").arg(reason));
}

void MainWindow::openGallery()
{
    QDesktopServices::openUrl(QUrl(QLatin1String("file:///") + StoragePath::imagePath()));
}

void MainWindow::matrixChanged(double scale, int)
{
    statusBar->setZoomText(scale);
    statusBar->setZoomLevel(static_cast<int>(view->level()));
}

void MainWindow::updateFPS()
{
    if (hasOpenDevice())
        statusBar->setFps(static_cast<double>(camera->frameRate()));
}

void MainWindow::zoomIn()
{
    view->zoomIn(zoomStep);
}

void MainWindow::zoomOut()
{
    view->zoomOut(zoomStep);
}

void MainWindow::zoom()
{
    const auto* const chosen = std::find(std::begin(zoomActions), std::end(zoomActions), sender());
    switch (chosen - std::begin(zoomActions)) {
    case 0:
        view->zoomByScale(2.0);
        break;
    case 1:
        view->zoomActualSize();
        break;
    case 2:
        view->zoomByScale(0.75);
        break;
    case 3:
        view->zoomByScale(0.5);
        break;
    case 4:
        view->zoomByScale(0.25);
        break;
    case 5:
        view->zoomBestFit();
        break;
    default:
        break;
    }
}

void MainWindow::preferencesApplied()
{
    applyShortcuts();
    const QSettings settings;
    view->manager()->setScalebarVisible(
        settings.value(Keys::showScalebar(), Keys::showScalebarDefault).toBool());
    view->showCross(settings.value(Keys::showCross(), Keys::showCrossDefault).toBool());
}

void MainWindow::applyShortcuts()
{
    actionSnap->setShortcut(storedShortcut(Keys::shortcutsSnap(), Keys::shortcutsSnapDefault()));
    const QKeySequence fullscreen =
        storedShortcut(Keys::shortcutsFullscreen(), Keys::shortcutsFullscreenDefault());
    actionFullscreen->setShortcut(fullscreen);
    view->fullscreenKey = fullscreen;
    actionZoomIn->setShortcut(
        storedShortcut(Keys::shortcutsZoomIn(), Keys::shortcutsZoomInDefault()));
    actionZoomOut->setShortcut(
        storedShortcut(Keys::shortcutsZoomOut(), Keys::shortcutsZoomOutDefault()));
}

// The frames are connected before the device opens, so that none is lost.
void MainWindow::createCamera()
{
    camera = new MyCamera(this);
    connect(camera, &MyCamera::getImage, view, &GraphicsView::setImage);
    connect(camera, &MyCamera::recordingEnded, this, &MainWindow::recordingEnded);
}

void MainWindow::cameraOpened()
{
    actionSnap->setEnabled(true);
    actionRecord->setEnabled(true);
    sidebar->cameraControl()->onCameraOpened(camera);
    fpsTimer->start(fpsInterval);
}

void MainWindow::cameraFailed()
{
    closeCamera();
    QMessageBox::critical(this, tr("Error"), tr("Failed to open camera"), QMessageBox::Ok);
}

// A device that is gone keeps nobody from choosing it again, or another one in its place.
QList<QPair<int, int>> MainWindow::openedDevices() const
{
    if (camera && camera->isGone())
        return {};
    return {{cameraType, cameraIndex}};
}

bool MainWindow::hasOpenDevice() const
{
    return camera && camera->camera;
}

// The camera's still picture where it takes one, else the visible part of the canvas with tools.
QImage MainWindow::takePicture()
{
    const bool disableStill = QSettings().value(Keys::disableStill(), false).toBool();
    if (!camera->camera->hasStillCapture() || disableStill)
        return view->imageScene()->renderVisible();
    return camera->snap();
}

void MainWindow::showPlaceholder()
{
    view->setImage(placeholderImage());
}
