// StderrLog: not written yet
