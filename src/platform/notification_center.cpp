#include "platform/notification_center.h"
