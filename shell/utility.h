#pragma once

#include <max.h>

#include <gup.h>

// The plug-in's utility object: the host makes one at its start and keeps it to its end.
class KarvelMax : public GUP {
public:
    KarvelMax();
    ~KarvelMax() override;
    DWORD Start() override;
    void Stop() override;
    DWORD_PTR Control(DWORD parameter) override;
    IOResult Save(ISave* save) override;
    IOResult Load(ILoad* load) override;
#if MAX_RELEASE >= 17000
    void DeleteThis() override;
#endif
};
