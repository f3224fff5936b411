#include "FileOutput.h"

#include <QFileDevice>

namespace zolens {
namespace {

constexpr int bufferBytes = 1 << 16;

int writeToFile(void* opaque, uint8_t* data, int size)
{
    auto* file = static_cast<QFileDevice*>(opaque);
    return file->write(reinterpret_cast<const char*>(data), size) == size ? size : AVERROR(EIO);
}

int64_t seekInFile(void* opaque, int64_t offset, int whence)
{
    auto* file = static_cast<QFileDevice*>(opaque);
    if (whence & AVSEEK_SIZE)
        return file->size();
    const qint64 base = whence == SEEK_CUR ? file->pos() : whence == SEEK_END ? file->size() : 0;
    return file->seek(base + offset) ? file->pos() : AVERROR(EIO);
}

} // namespace

FileOutput::FileOutput(QFileDevice& file)
{
    auto* buffer = static_cast<uchar*>(av_malloc(bufferBytes));
    output =
        buffer ? avio_alloc_context(buffer, bufferBytes, 1, &file, nullptr, writeToFile, seekInFile)
               : nullptr;
    if (!output)
        av_free(buffer);
}

FileOutput::~FileOutput()
{
    if (output)
        av_freep(&output->buffer);
    avio_context_free(&output);
}

AVIOContext* FileOutput::context() const
{
    return output;
}

bool FileOutput::flush()
{
    avio_flush(output);
    return output->error >= 0;
}

} // namespace zolens
