#pragma once

#include <baseinterface.h>
#include <strclass.h>

class MaxIcon : public InterfaceServer {
public:
    SDK_SLOTS_4(MaxIcon, 2, 3, 4, 5)
};

// An icon out of a row of pictures in the host's icon folder: PREFIX_16i.bmp, PREFIX_16a.bmp,
// PREFIX_24i.bmp, PREFIX_24a.bmp.
class MaxBmpFileIcon : public MaxIcon {
public:
    SDK_CORE_API MaxBmpFileIcon(const MCHAR* pFilePrefix, int index);

protected:
    int mIndex;
    MSTR mFilePrefix;
    bool mIsStandard;
};
