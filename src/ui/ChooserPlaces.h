#pragma once

#include <QFuture>
#include <QVariantList>

namespace ChooserPlaces {

/// The user's own folders that exist, the drives that are mounted where desktops mount them, and the root:
/// maps with "name", "path" and "symbol". Looked up on a background task.
QFuture<QVariantList> find();

} // namespace ChooserPlaces
