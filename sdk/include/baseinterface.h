#pragma once

#include <maxheap.h>
#include <maxtypes.h>
#include <tab.h>

class BaseInterface;
class InterfaceNotifyCallback;

// The first base of nearly everything that the host hands out.
class InterfaceServer : public MaxHeapOperators {
public:
    virtual ~InterfaceServer() {}
    SDK_MAXUTIL_API virtual BaseInterface* GetInterface(Interface_ID id);
};

class BaseInterface : public InterfaceServer {
public:
    // Who ends an interface object.
    enum LifetimeType {
        noRelease,
        immediateRelease,
        wantsRelease,
        serverControlled,
    };

    virtual Interface_ID GetID() = 0;
    virtual LifetimeType LifetimeControl() { return noRelease; }
    virtual bool RegisterNotifyCallback(InterfaceNotifyCallback*) { return false; }
    virtual void UnRegisterNotifyCallback(InterfaceNotifyCallback*) {}
    virtual BaseInterface* AcquireInterface() { return this; }
    virtual void ReleaseInterface() {}
    virtual void DeleteInterface() {}
    virtual BaseInterface* CloneInterface(void* = nullptr) { return nullptr; }
};

// A server that keeps a table of interfaces.
class BaseInterfaceServer : public InterfaceServer {
public:
    SDK_MAXUTIL_API BaseInterface* GetInterface(Interface_ID id) override;
    SDK_MAXUTIL_API virtual int NumInterfaces() const;
    SDK_MAXUTIL_API virtual BaseInterface* GetInterfaceAt(int index) const;

protected:
    Tab<BaseInterface*> interfaces;
};
