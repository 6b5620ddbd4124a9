// XdgDefaults: not written yet
