// XdgLoginItems: not written yet
