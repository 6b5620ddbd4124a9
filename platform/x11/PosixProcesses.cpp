// PosixProcesses: not written yet
