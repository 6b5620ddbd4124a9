// PosixFiles: not written yet
