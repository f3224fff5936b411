#pragma once

#include <QByteArrayList>
#include <QSize>
#include <QString>

#include <array>
#include <vector>

/// A video file, decoded whole.
struct RecordedVideo
{
    struct Frame
    {
        int number = 0; ///< Of the counter picture.
        double seconds = 0.0;
        double duration = 0.0;
        bool key = false;
        QSize size;
        /// Luma and both chroma values, four pixels from the right and lower edges.
        std::array<int, 3> corner{};
    };

    static RecordedVideo read(const QString& path);
    /// Of the boxes at the file's top level.
    static QByteArrayList boxes(const QString& path);
    static bool isFragmented(const QString& path) { return boxes(path).contains("moof"); }

    /// A picture that is repeated counts once.
    std::vector<int> numbers() const;

    bool readable = false; ///< Every packet of it was decoded.
    QByteArray codec;
    int colorSpace = 0;
    int colorRange = 0;
    double seconds = 0.0; ///< As the container states it.
    std::vector<Frame> frames;
};
