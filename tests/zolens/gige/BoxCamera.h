#pragma once

#include "FakeBox.h"
#include "zolens/FrameCollector.h"

#include "gige/Aravis.h"
#include "gige/VisionCamera.h"

#include <QtTest>

#include <memory>

/// A network box and the camera that is opened on it, whose pictures nobody takes. A base of tests
/// of what is set and read.
class BoxCamera
{
protected:
    void startBox(const QByteArray& description)
    {
        FakeBox::Options options;
        options.description = description;
        box = std::make_unique<FakeBox>(options);
        QVERIFY(box->start());
    }

    /// As another program does before.
    void set(const char* feature, int number) const
    {
        const auto other = anotherUser();
        QVERIFY(other);
        arv_camera_set_integer(other.get(), feature, number, nullptr);
    }
    void set(const char* feature, double number) const
    {
        const auto other = anotherUser();
        QVERIFY(other);
        arv_camera_set_float(other.get(), feature, number, nullptr);
    }

    void open()
    {
        const zolens::VisionAddress address = {CWDevice_NetworkBox, box->address(), 0};
        camera = std::make_unique<zolens::VisionCamera>(address, false);
        sink.refusing = true;
        QVERIFY(camera->start(&sink));
    }

    void open(const QByteArray& description)
    {
        startBox(description);
        open();
    }

    void close()
    {
        camera.reset();
        box.reset();
    }

    zolens::AravisPointer<ArvCamera> anotherUser() const
    {
        return zolens::AravisPointer<ArvCamera>(
            arv_camera_new(qPrintable(box->address()), nullptr));
    }

    FrameCollector sink;
    std::unique_ptr<FakeBox> box;
    std::unique_ptr<zolens::VisionCamera> camera;
};
