// QtDispatch: not written yet
