#pragma once

#include <max.h>

#include <iparamb2.h>

// The one class that the plug-in publishes.
class KarvelMaxClassDesc : public ClassDesc2 {
public:
    ~KarvelMaxClassDesc() override;
    int IsPublic() override;
    void* Create(BOOL loading = FALSE) override;
    const MCHAR* ClassName() override;
    SClass_ID SuperClassID() override;
    Class_ID ClassID() override;
    const MCHAR* Category() override;
    int NumActionTables() override;
    ActionTable* GetActionTable(int index) override;
    const MCHAR* InternalName() override;
#if MAX_RELEASE >= 24000
    const MCHAR* NonLocalizedClassName() override;
#endif
    HINSTANCE HInstance() override;
};

KarvelMaxClassDesc& KarvelMaxDescriptor();
