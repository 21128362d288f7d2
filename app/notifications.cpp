#include "app/notifications.h"

int n_notify = 0;
bool new_notify = false;
