#pragma once

/// What assistive technology is told of the items of the scene.
namespace AccessibleItem {

/// Makes disabled items say that they are, and offer nothing to do: Qt 6.4 tells the accessibility bus that
/// every item is enabled. The rows of a list come in the order in which they are shown. Main thread, before
/// the items exist; may be called again.
void install();

} // namespace AccessibleItem
