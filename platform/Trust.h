#pragma once

namespace tarnwick {

// Whether the user approved this program to drive other applications' windows.
class Trust {
  public:
    virtual ~Trust() = default;
    virtual bool isProcessTrusted() = 0;
};

} // namespace tarnwick
