// X11WindowAccess: not written yet
