#include "NotificationCentre.h"

NotificationCentre &NotificationCentre::defaultCentre() {
    static NotificationCentre centre;
    return centre;
}
