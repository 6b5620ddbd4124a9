// XConnection: not written yet
