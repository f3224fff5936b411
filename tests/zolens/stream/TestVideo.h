#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

/// Writes short videos for tests: a white bar on grey that steps to the right with every frame.
struct TestVideo
{
    /// Of the codec library, as "libx264".
    QByteArray encoder = "libx264";
    QSize size = QSize(320, 240);
    int frames = 25;
    int framesPerSecond = 25;
    int keyFrameDistance = 10;
    int pauseSeconds = 0; ///< Before the second half.

    /// The container follows the name's suffix.
    bool write(const QString& path) const;

    /// Where the bar stands in a picture, in pixels from the left; -1 when there is none.
    static int barPosition(const QImage& picture);
};
