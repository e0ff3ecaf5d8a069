#pragma once

namespace pg::ui {

// Shows the busy pointer for its lifetime (nested guards keep it until the outermost ends).
class WaitCursor
{
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;
};

} // namespace pg::ui
