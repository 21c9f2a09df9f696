#include "browse/Ownership.h"

#include "platform/Text.h"

#include <optional>

bool isOwner(const Event &event, const std::optional<QString> &currentUserId)
{
    if (!event.user_id || !currentUserId)
        return !event.user_id && !currentUserId;
    return sameText(*event.user_id, *currentUserId);
}
