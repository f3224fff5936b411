#pragma once

/// The virtual machine computes some ten times as slowly as a real one, and much more slowly where
/// that is busy: streams may take longer than the camera classes wait for them, and restart.
namespace vm {
constexpr int patience = 120000; ///< Milliseconds in which anything should have happened.
} // namespace vm
