// The desktops that plays run on.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

namespace desktops {

// A desktop, with the system's own processes for it, takes longer to set up than most plays last,
// so those that follow each other share it. With virtual input nothing of it outlives a play but
// the empty desktop. Real input leaves keys and cursor behind: where they could not be put back,
// the next play gets a fresh one. A desktop stands until the pool ends or replaces it: a thread of
// the pool stays on it, because the system takes down what nobody is on.
//
// Desktops are handed out when they have settled: the system's process for them answers, and, for
// real input, the cursor goes where it is put.
class Pool {
public:
    Pool();
    ~Pool();
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;

    // For virtual input: the name of desktop number `slot`, which is made when it is first asked
    // for and is ready for windows then. Empty: it can not be made.
    const std::string& Shared(size_t slot);
    // For real input, or a screen of another size: the same for a desktop that nobody has been on,
    // in place of the one that this slot had before, unless that one may be used `again`.
    const std::string& Real(size_t slot, bool again);

private:
    struct Desktop;
    using Desktops = std::vector<std::unique_ptr<Desktop>>;
    static const std::string& Name(Desktops* desktops, size_t slot, bool real);
    Desktops shared_;
    Desktops fresh_;
};

}  // namespace desktops
