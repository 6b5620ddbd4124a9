// X11Trust: not written yet
