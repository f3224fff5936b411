#pragma once

#include "gige/Aravis.h"

#include <QByteArray>
#include <QTemporaryFile>

/// The camera that Aravis imitates within this process, with its own features or with those of the
/// description; empty when that is none.
inline zolens::AravisPointer<ArvCamera> imitatedCamera(const QByteArray& description = {})
{
    QTemporaryFile file;
    if (!description.isEmpty() && file.open()) {
        file.write(description);
        file.flush();
        arv_set_fake_camera_genicam_filename(qPrintable(file.fileName()));
    }
    const zolens::AravisPointer<ArvDevice> device(arv_fake_device_new("1", nullptr));
    arv_set_fake_camera_genicam_filename(nullptr);
    return zolens::AravisPointer<ArvCamera>(
        device ? arv_camera_new_with_device(device.get(), nullptr) : nullptr);
}
