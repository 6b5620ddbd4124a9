// LogSurfaces: not written yet
