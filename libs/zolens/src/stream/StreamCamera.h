#pragma once

#include "zolens/CWCamera.h"

#include "StreamUrl.h"

#include <QString>

#include <memory>

namespace zolens {

struct StreamSession;
class StreamWorker;

/// A network stream or a local video file as a camera. It has the one size and format of the
/// stream, no properties, and turns its pictures as they are converted. A still picture is the next
/// frame. A stream that stalls or ends is taken up again without a word; a file starts over.
class StreamCamera final : public CWCamera
{
public:
    explicit StreamCamera(const QString& text);
    ~StreamCamera() override;

    /// True as soon as there is a picture, or when video data come but no key frame yet.
    bool start(FrameSink* sink) override;
    void stop() override;
    QImage captureStill() override;
    /// Name and address are the URL without credentials.
    _tag_VideoDeviceInfo deviceInfo() const override;

    void previewSizes(std::vector<QSize>* sizes) override;
    void previewSize(QSize* size) override;
    void previewFormats(std::vector<int>* formats) override;
    int previewFormat() override;
    int setPreviewFormat(int index) override;
    bool hasStillCapture() override;
    void stillSizes(std::vector<QSize>* sizes) override;
    void stillSize(QSize* size) override;
    void setFlip(bool on) override;
    bool flip() override;
    void setMirror(bool on) override;
    bool mirror() override;

    void setAutoExposure(bool on) override;
    void whiteBalanceModes(std::vector<int>* modes) override;
    void setWhiteBalanceMode(int mode) override;
    int whiteBalanceMode() override;
    bool isPropertySupported(tagCMProperty id) override;
    void propertyRange(tagCMProperty id, double* min, double* max, double* step) override;
    void propertyValues(std::vector<int>* values, tagCMProperty id) override;
    int getProperty(tagCMProperty id, double* value) override;
    int setProperty(tagCMProperty id, double value) override;
    void powerFrequencies(std::vector<int>* values) override;
    int powerFrequency() override;
    void setPowerFrequency(int value) override;

protected:
    int selectPreviewSize(int index) override;
    int selectStillSize(int index) override;
    double defaultValue(tagCMProperty id) override;

private:
    const StreamUrl url;
    bool flipped = false;
    bool mirrored = false;
    /// Both null while stopped.
    std::shared_ptr<StreamSession> session;
    std::unique_ptr<StreamWorker> worker;
};

} // namespace zolens
