// X11Workspace: not written yet
