#pragma once

#include <QColor>
#include <QLatin1String>

#include <array>
#include <cstddef>

namespace zostyle {

/// What a colour of the dark blue style is used for. Surfaces get lighter the nearer they are.
enum class Tone : std::size_t {
    Window,
    Panel,
    Alternate,
    Raised,
    RaisedHover,
    RaisedPressed,
    Line,
    Handle,
    HandleHover,
    Shadow,
    Text,
    Secondary,
    Disabled,
    Selection,
    SelectionHover,
    SelectionPressed,
    SelectionText,
    Well,
    WellHover,
    Accent,
    Focus,
    Link,
    Warning,
    Error,
    ErrorPressed,
};

struct Colour
{
    Tone tone;
    /// How the style sheet calls it, behind an @.
    QLatin1String name;
    QRgb rgb;
};

/// The one table of colours, in the order of Tone. Palette and style sheet are made from it.
inline const std::array<Colour, 25> Colours{{
    {Tone::Window, QLatin1String("window"), 0xff17212f},
    {Tone::Panel, QLatin1String("panel"), 0xff1e2b3d},
    {Tone::Alternate, QLatin1String("alternate"), 0xff223145},
    {Tone::Raised, QLatin1String("raised"), 0xff26364d},
    {Tone::RaisedHover, QLatin1String("raised-hover"), 0xff2f4361},
    {Tone::RaisedPressed, QLatin1String("raised-pressed"), 0xff1a2637},
    {Tone::Line, QLatin1String("line"), 0xff34486a},
    {Tone::Handle, QLatin1String("handle"), 0xff47618a},
    {Tone::HandleHover, QLatin1String("handle-hover"), 0xff5d7aa8},
    {Tone::Shadow, QLatin1String("shadow"), 0xff0e1520},
    {Tone::Text, QLatin1String("text"), 0xffe6edf7},
    {Tone::Secondary, QLatin1String("secondary"), 0xffa9b8ce},
    {Tone::Disabled, QLatin1String("disabled"), 0xff6f819b},
    {Tone::Selection, QLatin1String("selection"), 0xff1873ae},
    {Tone::SelectionHover, QLatin1String("selection-hover"), 0xff1b7ab8},
    {Tone::SelectionPressed, QLatin1String("selection-pressed"), 0xff135d8d},
    {Tone::SelectionText, QLatin1String("selection-text"), 0xffffffff},
    {Tone::Well, QLatin1String("well"), 0xff133050},
    {Tone::WellHover, QLatin1String("well-hover"), 0xff16365a},
    {Tone::Accent, QLatin1String("accent"), 0xff2b87cc},
    {Tone::Focus, QLatin1String("focus"), 0xff5cb8f0},
    {Tone::Link, QLatin1String("link"), 0xff7cc4f2},
    {Tone::Warning, QLatin1String("warning"), 0xffd98324},
    {Tone::Error, QLatin1String("error"), 0xffd9534f},
    {Tone::ErrorPressed, QLatin1String("error-pressed"), 0xffb33f3b},
}};

inline QRgb rgb(Tone tone)
{
    return Colours[static_cast<std::size_t>(tone)].rgb;
}

inline QColor colour(Tone tone)
{
    return QColor(rgb(tone));
}

} // namespace zostyle
