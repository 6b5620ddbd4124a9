// CanberraAudio: not written yet
