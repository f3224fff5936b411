#pragma once

#include <QImage>
#include <QVector>

class QIODevice;

/// Writes the images as one Windows icon, each entry a PNG. False when an image is null or larger
/// than 256 pixels, or when the device takes less than all of it.
bool writeIconFile(const QVector<QImage>& images, QIODevice& device);
