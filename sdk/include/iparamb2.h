#pragma once

#include <plugapi.h>

// The descriptor that the host expects of present-day plug-ins: it adds the parameter-block group.
class ClassDesc2 : public ClassDesc {
public:
    SDK_PARAMBLK2_API ClassDesc2();
    SDK_PARAMBLK2_API ~ClassDesc2() override;
    ClassDesc2(const ClassDesc2&) = delete;
    ClassDesc2& operator=(const ClassDesc2&) = delete;

    SDK_PARAMBLK2_API void ResetClassParams(BOOL fileReset = FALSE) override;
    SDK_PARAMBLK2_API int NumParamBlockDescs() override;
    SDK_PARAMBLK2_API ParamBlockDesc2* GetParamBlockDesc(int index) override;
    SDK_PARAMBLK2_API ParamBlockDesc2* GetParamBlockDescByID(BlockID id) override;
    SDK_PARAMBLK2_API void AddParamBlockDesc(ParamBlockDesc2* description) override;
    SDK_PARAMBLK2_API void BeginEditParams(IObjParam* parameters, ReferenceMaker* edited,
                                           ULONG flags, Animatable* previous) override;
    SDK_PARAMBLK2_API void EndEditParams(IObjParam* parameters, ReferenceMaker* edited, ULONG flags,
                                         Animatable* next) override;
    SDK_PARAMBLK2_API void InvalidateUI(ParamBlockDesc2* description) override;
    SDK_PARAMBLK2_API void MakeAutoParamBlocks(ReferenceMaker* owner) override;
    SDK_PARAMBLK2_API int NumParamMaps() override;
    using ClassDesc::GetParamMap;
    SDK_PARAMBLK2_API IParamMap2* GetParamMap(int index) override;
    SDK_PARAMBLK2_API void SetUserDlgProc(ParamBlockDesc2* description, MapID map,
                                          ParamMap2UserDlgProc* procedure = nullptr);
    void SetUserDlgProc(ParamBlockDesc2* description,
                        ParamMap2UserDlgProc* procedure = nullptr) override {
        SetUserDlgProc(description, 0, procedure);
    }

private:
    // Owned and used by the host alone.
    Tab<ParamBlockDesc2*> pbDescs;
    Tab<IParamMap2*> paramMaps;
    void* hostData[2] = {nullptr, nullptr};
};
