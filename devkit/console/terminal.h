#ifndef VESK_DEVKIT_CONSOLE_TERMINAL_H
#define VESK_DEVKIT_CONSOLE_TERMINAL_H

#include <memory>

/// What standard error is connected with. As long as the object lives, a Windows console takes
/// UTF-8 and colour sequences; afterwards it is as before.
class Terminal {
public:
    Terminal();

    bool isTerminal() const { return mIsTerminal; }
    bool hasColours() const { return mHasColours; }

private:
    bool mIsTerminal = false;
    bool mHasColours = false;
    std::shared_ptr<void> mRestore; ///< its end undoes what was switched
};

#endif
