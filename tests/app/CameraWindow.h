#pragma once

#include "app/MainWindow.h"

#include <zolens/MyCamera.h>

#include <QAction>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QSettings>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

#include <memory>

/// Counts the frames that arrive on the test's own thread; they are sent from another one.
struct FrameCounter
{
    explicit FrameCounter(MyCamera* camera)
    {
        QObject::connect(camera, &MyCamera::getImage, &receiver, [this] { ++count; });
    }

    QObject receiver;
    int count = 0;
};

/// The main window on the screen, its widgets, the simulated microscope that it opens, and a folder
/// for its pictures and videos. A base of its tests.
class CameraWindow
{
protected:
    static constexpr int frameTime = 5000;
    static inline const QString popup = QStringLiteral("preferences/capture/popup");
    static inline const QString filePath = QStringLiteral("preferences/capture/filepath");

    /// The settings are those of a first start, except that closing asks nothing.
    void makeWindow()
    {
        QSettings().clear();
        QSettings().setValue(QStringLiteral("gui/confirmExit"), false);
        pictures = std::make_unique<QTemporaryDir>();
        QSettings().setValue(filePath, QString(pictures->path() + QLatin1Char('/')));
        window = std::make_unique<MainWindow>();
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }
    void open()
    {
        QMetaObject::invokeMethod(window.get(), "openUsbDevice", Q_ARG(int, CWDevice_Simulated),
                                  Q_ARG(int, 0));
        QVERIFY(camera());
    }
    void call(const char* slot) { QVERIFY(QMetaObject::invokeMethod(window.get(), slot)); }
    /// Files are to go below a file.
    void refuseFiles()
    {
        QFile blocker(pictures->filePath(QStringLiteral("file")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        QSettings().setValue(filePath, QString(blocker.fileName() + QStringLiteral("/below/")));
    }
    QStringList saved() const { return QDir(pictures->path()).entryList(QDir::Files); }
    MyCamera* camera() const { return window->findChild<MyCamera*>(); }
    QToolButton* button(const char* name) const
    {
        return window->findChild<QToolButton*>(QString::fromLatin1(name));
    }
    QAction* action(const char* text) const
    {
        for (QAction* candidate : window->findChildren<QAction*>()) {
            if (candidate->text() == QLatin1String(text))
                return candidate;
        }
        return nullptr;
    }
    /// The first whose text contains `part`.
    QLabel* label(const QString& part) const
    {
        for (QLabel* candidate : window->findChildren<QLabel*>()) {
            if (candidate->text().contains(part))
                return candidate;
        }
        return nullptr;
    }

    std::unique_ptr<MainWindow> window;
    std::unique_ptr<QTemporaryDir> pictures;
};
