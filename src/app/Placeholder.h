#pragma once

#include <QImage>

/// The picture that stands on the canvas while no camera is open.
QImage placeholderImage();
