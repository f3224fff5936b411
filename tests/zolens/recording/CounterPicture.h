#pragma once

#include <QImage>

struct AVFrame;

/// Pictures that carry a number as black and white squares, which survives encoding and scaling.
namespace counterpicture {

/// Numbers from 0 to 65535. With a background of grey, or of noise that no encoder makes small.
QImage draw(const QSize& size, int number, bool noisy = false);
/// The number in a decoded picture.
int read(const AVFrame& picture);

} // namespace counterpicture
