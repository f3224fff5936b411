#pragma once

/// In how many milliseconds something must be over: what is promised, and time for a machine that
/// is busy with other tests.
namespace timelimits {

constexpr int slack = 1500;

/// Of what waits for nobody.
constexpr int atOnce = 500 + slack;
/// Of the opening of a camera, which may fail.
constexpr int start = 5000 + slack;
/// Of the end of a camera, whatever its device does.
constexpr int stop = 500 + slack;
/// Of any other operation of a camera, whatever its device does.
constexpr int deviceCall = 500 + slack;
/// Until it is noticed that frames stay away.
constexpr int stall = 2000 + slack;
/// Of the start of a recording and of its end, whatever the disk does.
constexpr int recording = 4000 + slack;
/// Of the end of a camera whose recordings are being made plain files.
constexpr int rewriting = 2000 + slack;

} // namespace timelimits
