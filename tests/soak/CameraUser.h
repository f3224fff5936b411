#pragma once

#include "SoakLog.h"

#include <zolens/MyCamera.h>

#include <QImage>
#include <QRandomGenerator>

#include <functional>
#include <memory>
#include <set>

/// Uses one camera after the other as the program does, with a bound on the time of every
/// operation. What it does and with which values follows from the seed alone.
class CameraUser final : public QObject
{
    Q_OBJECT

public:
    using Opening = std::function<bool(MyCamera&)>;

    /// Records into the folder.
    CameraUser(SoakLog& soakLog, const QString& recordingFolder);

    void open(const Opening& opening);
    /// Sizes, formats, properties, turned pictures, stills, recordings and pauses, in changing
    /// order.
    void useAll();
    /// Records and does something meanwhile. The recording must play afterwards, as all others.
    void record(const std::function<void()>& meanwhile);
    /// Now and then while recording or paused.
    void close();
    /// While no frames come.
    void closeLost();

    /// In the time in which a device that was lost for a moment must be back.
    void awaitReturn();
    bool isOneIn(int number) { return random.bounded(number) == 0; }

private:
    void changeSize();
    void changeFormat();
    void useProperties();
    void useProperty(tagCMProperty id);
    void turn();
    void snap();
    void recordUse();
    void pause();
    void startRecording();
    void end(bool recording);
    void checkRecordings();
    void awaitFrames(const char* what, int count);
    bool seeFrames(int count, int limit) const;
    bool seeSize(const QSize& size) const;
    int choose(int count) { return random.bounded(count); }

    SoakLog& log;
    const QString folder;
    QRandomGenerator random{20210917};
    std::unique_ptr<MyCamera> camera;
    /// What arrived on this thread. The last one is held, as the canvas does.
    std::unique_ptr<QObject> viewer; ///< Takes with it what is still on its way.
    QImage shown;
    int frames = 0;
    std::set<QString> recordings;
};
