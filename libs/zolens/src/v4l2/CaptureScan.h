#pragma once

#include "CaptureNodes.h"

#include <chrono>
#include <memory>
#include <vector>

namespace zolens {

/// Asks the device nodes of a machine what they are, each on a thread of its own that ends with the
/// answer, so that one which hangs hides no other. Such a node is left out and not asked again
/// until it has answered. One for which the system has no thread left is left out once.
/// Thread-safe.
class CaptureScan final
{
public:
    CaptureScan();
    /// Waits for no node.
    ~CaptureScan();

    /// Those that give pictures and answer in time, by their numbers. A node that was late before
    /// is not waited for.
    std::vector<CaptureNode> nodes(const V4l2Host& host, std::chrono::milliseconds patience);

private:
    class Queries;
    const std::shared_ptr<Queries> queries;
};

} // namespace zolens
