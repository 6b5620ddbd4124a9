// X11Screens: not written yet
