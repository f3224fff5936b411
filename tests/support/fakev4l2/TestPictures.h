#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

/// What the fake cameras look at.
namespace pictures {

/// Four quarters: red, green / blue, white.
QImage quarters(const QSize& size);
/// The numbers from 0 on that have greys of their own.
constexpr int greySteps = 64;
/// One grey, another one with each number, in equal steps from black on.
int grey(int number);

QByteArray jpeg(const QImage& image);
/// Limited range, BT.601, as USB cameras send it.
QByteArray yuyv(const QImage& image);
QByteArray nv12(const QImage& image, int bytesPerLine);
QByteArray rgb24(const QImage& image);

/// The picture in the format of the fake camera; MJPEG and YUYV.
QByteArray quartersAs(quint32 fourcc, const QSize& size);
/// The grey picture of that number as MJPEG.
QByteArray greyJpeg(const QSize& size, int number);
/// Below greySteps.
int greyNumber(const QImage& picture);

/// Whether the quarters stand as in quarters(), turned so.
bool areQuarters(const QImage& image, bool flipped = false, bool mirrored = false);

} // namespace pictures
