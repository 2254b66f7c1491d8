// The desktops that plays with virtual input take turns on.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

namespace desktops {

// A desktop, with the system's own processes for it, takes longer to set up than most plays last.
// With virtual input nothing of it outlives a play but its empty ground, so those that follow each
// other share it. It stands as long as the pool: a thread of the pool stays on it, because the
// system takes down what nobody is on.
class Pool {
public:
    Pool();
    ~Pool();
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;

    // The name of desktop number `slot`, which is made when it is first asked for and is ready for
    // windows then. Empty: it can not be made.
    const std::string& Name(size_t slot);

private:
    struct Ground;
    std::vector<std::unique_ptr<Ground>> grounds_;
};

}  // namespace desktops
