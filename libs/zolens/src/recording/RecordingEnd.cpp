#include "RecordingEnd.h"

namespace zolens {

QString RecordingEndText::text(RecordingEnd reason)
{
    switch (reason) {
    case RecordingEnd::DiskFull:
        return tr("The disk is full.");
    case RecordingEnd::WriteFailed:
        return tr("The file cannot be written.");
    case RecordingEnd::EncodingFailed:
        return tr("The pictures cannot be encoded.");
    case RecordingEnd::None:
        break;
    }
    return QString();
}

} // namespace zolens
