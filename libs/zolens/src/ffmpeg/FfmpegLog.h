#pragma once

namespace zolens {

/// The libraries' own messages may quote URLs with their passwords, so none is printed.
void silenceFfmpeg();

} // namespace zolens
