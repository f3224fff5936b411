#pragma once

#include "CameraTypes.h"

#include <QImage>
#include <QSize>

#include <vector>

namespace zolens {
class FrameSink;
}

/// An open device: its sizes, formats and properties. Owned by MyCamera. All operations are called
/// on the GUI thread and take effect on the frames that follow; each device does the locking
/// against its own frame thread. An output list is replaced, not appended to. Operations with an
/// `int` result give 0 on success.
class CWCamera
{
public:
    virtual ~CWCamera();

    virtual void previewSizes(std::vector<QSize>* sizes) = 0;
    virtual void previewSize(QSize* size) = 0;
    /// Values for the format texts of the program: 0 and 1 RGB, 5 and 7 YUV, 19 MJPEG, 20 H.264.
    virtual void previewFormats(std::vector<int>* formats) = 0;
    virtual int previewFormat() = 0;
    /// Selects a format by its position in the list of previewFormats.
    virtual int setPreviewFormat(int index) = 0;
    virtual bool hasStillCapture() = 0;
    virtual void stillSizes(std::vector<QSize>* sizes) = 0;
    virtual void stillSize(QSize* size) = 0;
    /// Turns the picture upside down.
    virtual void setFlip(bool on) = 0;
    virtual bool flip() = 0;
    /// Mirrors the picture left to right.
    virtual void setMirror(bool on) = 0;
    virtual bool mirror() = 0;
    virtual void setAutoExposure(bool on) = 0;
    /// The modes on offer, of CWWhiteBalanceMode.
    virtual void whiteBalanceModes(std::vector<int>* modes) = 0;
    /// Mode 2 runs one balancing.
    virtual void setWhiteBalanceMode(int mode) = 0;
    virtual int whiteBalanceMode() = 0;
    virtual bool isPropertySupported(tagCMProperty id) = 0;
    /// Lowest and highest value and the step.
    virtual void propertyRange(tagCMProperty id, double* min, double* max, double* step) = 0;
    /// The legal values of an enumerated property.
    virtual void propertyValues(std::vector<int>* values, tagCMProperty id) = 0;
    /// 0 on success, and only then `*value` is written.
    virtual int getProperty(tagCMProperty id, double* value) = 0;
    /// Values outside of the range are held at its ends.
    virtual int setProperty(tagCMProperty id, double value) = 0;
    virtual void powerFrequencies(std::vector<int>* values) = 0;
    virtual int powerFrequency() = 0;
    virtual void setPowerFrequency(int value) = 0;

    /// Selects a preview size by its position in the list of previewSizes.
    int setPreviewSize(int index);
    /// Selects a still size by its position in the list of stillSizes.
    int setStillCaptureSize(int index);
    /// Sets the property to its default and returns that default; 0.0 when it is unsupported.
    double resetProperty(tagCMProperty id);

    // What MyCamera needs beyond that, for every device class alike.

    /// Starts the device, which then delivers frames into `sink` from its own thread until stop().
    /// Blocks for at most 5 seconds. False when the device cannot be opened.
    virtual bool start(zolens::FrameSink* sink) = 0;
    /// Ends the frames; after it returns the sink is not touched again. Returns within half a
    /// second whatever the device does. Harmless when not started.
    virtual void stop() = 0;
    /// Takes one still picture in the still size; null on failure. Blocks until it has one.
    virtual QImage captureStill() = 0;
    virtual _tag_VideoDeviceInfo deviceInfo() const = 0;
    /// Whether the device was lost while it was started, as by being unplugged: no frames come, and
    /// properties are not supported. Most stay lost; some are looked for and come back by
    /// themselves. A stream that pauses is not lost.
    virtual bool isGone() const;
    /// False for a property whose unit the device does not tell: its values are numbers of the
    /// device instead.
    virtual bool hasUnit(tagCMProperty id);

protected:
    virtual int selectPreviewSize(int index) = 0;
    virtual int selectStillSize(int index) = 0;
    virtual double defaultValue(tagCMProperty id) = 0;
};
