#pragma once

#include "UsbBench.h"

#include <QObject>

#include <memory>

/// What all tests of USB cameras on the kernel's driver begin and end with: each finds the camera
/// as after power-on, and leaves it unplugged.
class UsbTest : public QObject
{
    Q_OBJECT

protected:
    explicit UsbTest(const QSize& largestPicture) : largest(largestPicture) {}

    std::unique_ptr<UsbBench> bench;

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

private:
    const QSize largest;
};
