#pragma once

#include <QList>

/// Shares `room` among items that wish for `wishes` each: an item never gets more than its wish,
/// and what one does not need goes to the others in equal parts. Gives every wish when there is
/// room.
QList<int> fairShare(QList<int> wishes, int room);
