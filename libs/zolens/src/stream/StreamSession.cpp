#include "StreamSession.h"

namespace zolens {

void StreamSession::setPictureSize(const QSize& newSize)
{
    size = quint64(quint32(newSize.width())) << 32 | quint32(newSize.height());
}

QSize StreamSession::pictureSize() const
{
    const quint64 lengths = size;
    return QSize(int(lengths >> 32), int(quint32(lengths)));
}

} // namespace zolens
