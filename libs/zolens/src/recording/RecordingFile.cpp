#include "RecordingFile.h"

#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace zolens {
namespace {

constexpr int fragmentsPerSecond = 2;

} // namespace

qint64 freeBytes(const QString& path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    std::error_code problem;
    const auto space = std::filesystem::space(folder.toStdString(), problem);
    return problem ? -1 : static_cast<qint64>(space.available);
}

RecordingFile::RecordingFile(const QString& path) : file(path) {}

// Whatever is no file, as a pipe, could block for ever.
bool RecordingFile::open()
{
    const QFileInfo info(file.fileName());
    const bool usable = !info.exists() || info.isFile();
    return usable && hasSpace() && file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

bool RecordingFile::begin(const AVCodecParameters& parameters, AVRational packetTimeBase)
{
    timeBase = packetTimeBase;
    begun = muxer.begin(parameters, timeBase);
    note(begun);
    return begun;
}

void RecordingFile::write(AVPacket* packet)
{
    if (problem != RecordingEnd::None)
        return;
    const int64_t time = packet->pts;
    note(muxer.write(packet));
    pictures = pictures || problem == RecordingEnd::None;
    if (time - fragmentStart >= timeBase.den / fragmentsPerSecond)
        endFragment(time);
}

void RecordingFile::endFragment(int64_t time)
{
    note(problem == RecordingEnd::None && muxer.endFragment());
    if (problem != RecordingEnd::None)
        return;
    fragmentStart = time;
    soundBytes = file.pos();
    if (!hasSpace())
        problem = RecordingEnd::DiskFull;
}

void RecordingFile::finish()
{
    if (begun && problem == RecordingEnd::None)
        note(muxer.finish());
    file.close();
    const bool failed = problem != RecordingEnd::None;
    if (failed && soundBytes > 0)
        file.resize(soundBytes);
    else if (failed || !pictures)
        file.remove();
}

RecordingEnd RecordingFile::failure() const
{
    return problem;
}

bool RecordingFile::hasPictures() const
{
    return pictures;
}

QString RecordingFile::path() const
{
    return file.fileName();
}

void RecordingFile::note(bool success)
{
    if (success || problem != RecordingEnd::None)
        return;
    const bool full = file.error() == QFileDevice::ResourceError || !hasSpace();
    problem = full ? RecordingEnd::DiskFull : RecordingEnd::WriteFailed;
}

bool RecordingFile::hasSpace() const
{
    const qint64 available = freeBytes(file.fileName());
    return available < 0 || available >= reservedBytes;
}

} // namespace zolens
