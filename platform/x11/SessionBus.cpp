// SessionBus: not written yet
