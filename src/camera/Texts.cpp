#include "camera/Texts.h"

QString Texts::colorModeText(int mode)
{
    switch (mode) {
    case 0:
        return tr("Colorful");
    case 1:
        return tr("Monochrome");
    case 2:
        return tr("Negative");
    default:
        return tr("Unknown");
    }
}

QString Texts::videoFormatText(int format)
{
    switch (format) {
    case 0:
    case 1:
        return tr("RGB");
    case 5:
    case 7:
        return tr("YUV");
    case 19:
        return tr("MJPEG");
    case 20:
        return tr("H.264");
    default:
        return tr("Unknown");
    }
}

QString Texts::powerFrequencyText(int frequency)
{
    switch (frequency) {
    case 0:
        return tr("Disabled");
    case 1:
        return tr("50Hz");
    case 2:
        return tr("60Hz");
    case 3:
        return tr("Auto");
    case 4:
        return tr("DC");
    default:
        return tr("Unknown");
    }
}
