#pragma once

#include <max.h>

#include <actiontable.h>

class KarvelMax;

// Carries out the commands of the action table.
class aCallback : public ActionCallback {
public:
    explicit aCallback(KarvelMax* utility) : utility_(utility) {}
    BOOL ExecuteAction(int id) override;

private:
    KarvelMax* utility_;
};
