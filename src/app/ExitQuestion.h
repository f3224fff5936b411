#pragma once

class QWidget;

/// Asks whether the program may end, unless the user has switched the question off. Only an Ok
/// stores whether it is to be asked again.
bool confirmExit(QWidget* parent);
