#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <turbojpeg.h>

#include <vector>

namespace bench {

/// Pictures of the simulated microscope, with its noise and all that drifts through it. Each bears
/// its number, which any coding keeps.
std::vector<QImage> microscopePictures(const QSize& size, int count);
int numberOf(const QImage& picture);

/// As cameras send it, of quality 85.
QByteArray jpeg(const QImage& picture, TJSAMP sampling);
QByteArray yuyv(const QImage& picture);

} // namespace bench
