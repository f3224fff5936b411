#pragma once

#include <zowidgets/ZoFramelessWindow.h>

#include <QImage>
#include <QList>
#include <QPair>

class FormOutputbar;
class FormSidebar;
class GraphicsView;
class MyCamera;
class QAction;
class QSplitter;
class QTimer;
class QWidget;
class StatusBar;
class TitleBar;

/// The one top-level window: puts the parts together, owns the actions of the application and the
/// one open camera, and ties the camera to the canvas. Made and owned by the program's start; GUI
/// thread.
class MainWindow final : public ZoFramelessWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

signals:
    void getImage(QImage image);

protected slots:
    void pausePreview(bool pause);
    void openUsbDevice(int type, int index);
    void openNetworkDevice(int type, QString url);
    void openSelectDeviceDialog();
    void closeCamera();
    void toggleFullscreen();
    void toggleOutputbar(bool checked);
    void about();
    void titlebarMenuClicked();
    void matrixIndicationClicked();

protected:
    void closeEvent(QCloseEvent* event) override;

private slots:
    void save();
    void print();
    void undo();
    void snap();
    void toggleRecord(bool start);
    void recordingEnded(const QString& reason);
    void openGallery();
    void matrixChanged(double scale, int rotate);
    void updateFPS();
    void zoomIn();
    void zoomOut();
    void zoom();
    void preferencesApplied();

private:
    void layOut();
    TitleBar* makeTitleBar();
    QWidget* makeCanvas();
    void makeActions();
    void makeZoomActions();
    void connectSidebar();
    void connectStatusBar();
    void connectCanvas();
    void applyShortcuts();
    void createCamera();
    void cameraOpened();
    void cameraFailed();
    QList<QPair<int, int>> openedDevices() const;
    bool hasOpenDevice() const;
    QImage takePicture();
    void showPlaceholder();

    QAction* actionSnap = nullptr;
    QAction* actionRecord = nullptr;
    QAction* actionGallery = nullptr;
    QAction* actionSettings = nullptr;
    QAction* actionZoomIn = nullptr;
    QAction* actionZoomOut = nullptr;
    QAction* zoomActions[6] = {};
    QAction* actionFullscreen = nullptr;
    QAction* actionList = nullptr;
    QAction* actionAbout = nullptr;
    GraphicsView* view = nullptr;
    FormSidebar* sidebar = nullptr;
    FormOutputbar* outputbar = nullptr;
    StatusBar* statusBar = nullptr;
    MyCamera* camera = nullptr; ///< Null when none is open.
    QTimer* fpsTimer = nullptr;
    int cameraType = -1; ///< The open USB camera; -1 and -1 when there is none.
    int cameraIndex = -1;
    QSplitter* mainSplitter = nullptr;
    QSplitter* rightSplitter = nullptr;
};
