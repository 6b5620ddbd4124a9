// DesktopEntries: not written yet
