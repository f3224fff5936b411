#pragma once

#include <QString>

class CWUVCFilter;

/// The cameras that the camera library shows. It lives as long as the process, since the library
/// keeps a pointer to it.
extern CWUVCFilter uvcFilter;

/// The program's start and end: prepares the process, shows the main window and runs the event
/// loop, whose result is given back.
int runOrvo(int& argc, char** argv);

// The steps of the start, in their order. The first one needs to run before the application object
// exists, all others need it.

void setApplicationAttributes();
/// Decides which settings store the program uses.
void setApplicationNames();
/// "darkblue", in any case, installs the program's style; any other theme leaves the platform's.
void installStyle(const QString& theme);
void installIconTheme();
void installFont();
/// Fills the filter and hands it to the camera library.
void installDeviceFilter();
