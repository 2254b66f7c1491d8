#pragma once

#include <baseinterface.h>

class ActionTable;
class FPInterface;
class FPInterfaceDesc;

typedef short FunctionID;
typedef int FPStatus;
#define FPS_FAIL 0
#define FPS_OK 1
#define FPS_NO_SUCH_FUNCTION -1

// The types of the values that an action table publishes.
enum ParamType2 {
    TYPE_INT = 1,
    TYPE_STRING = 8,
    TYPE_INTERFACE = 39,
    TYPE_DWORD = 45,
};

// A value of any published type: the type's number, then the value itself. The host makes them.
class FPValue {
public:
    FPValue() = delete;
    FPValue(const FPValue&) = delete;
    FPValue& operator=(const FPValue&) = delete;

    // Takes the value that stands in the 8 bytes at `arguments`, answers where the next one would.
    SDK_CORE_API char* Loadva(int type, char* arguments, bool byValue);

    int type;
    union {
        int i;
        DWORD dw;
        const MCHAR* s;
        FPInterface* fi;
    };
};

// The arguments of a call by number.
class FPParams {
public:
    Tab<FPValue> params;
};

// Function publishing: a host object lets MAXScript call its members by number. The plug-in never
// calls these members, but the table of its ActionTable repeats them, so every one is declared.
// Adjacent overloads are declared in the order that gives the host's slots under the Microsoft
// rule, which turns them round.
class FPInterface : public BaseInterface {
public:
    virtual FPStatus _dispatch_fn(FunctionID function, TimeValue time, FPValue& result,
                                  FPParams* parameters) = 0;
    virtual FPInterfaceDesc* GetDesc() = 0;
    SDK_CORE_API virtual FPStatus Invoke(FunctionID function, TimeValue time,
                                         FPParams* parameters = nullptr);
    virtual FPStatus Invoke(FunctionID function, FPParams* parameters = nullptr) {
        return Invoke(function, TimeValue(0), parameters);
    }
    SDK_CORE_API virtual FPStatus Invoke(FunctionID function, TimeValue time, FPValue& result,
                                         FPParams* parameters = nullptr);
    virtual FPStatus Invoke(FunctionID function, FPValue& result, FPParams* parameters = nullptr) {
        return Invoke(function, TimeValue(0), result, parameters);
    }
    SDK_CORE_API virtual FunctionID FindFn(MCHAR* name);
    SDK_CORE_API virtual BOOL IsEnabled(FunctionID action);
    SDK_CORE_API virtual BOOL IsChecked(FunctionID action);
    SDK_CORE_API virtual BOOL IsVisible(FunctionID action);
    SDK_CORE_API virtual FunctionID GetIsEnabled(FunctionID action);
    SDK_CORE_API virtual FunctionID GetIsChecked(FunctionID action);
    SDK_CORE_API virtual FunctionID GetIsVisible(FunctionID action);
    virtual ActionTable* GetActionTable() { return nullptr; }
    virtual void EnableActions(BOOL) {}
};

// Function publishing of an object that can exist more than once.
class FPMixinInterface : public FPInterface {
public:
    LifetimeType LifetimeControl() override { return serverControlled; }
    SDK_CORE_API bool RegisterNotifyCallback(InterfaceNotifyCallback* callback) override;
    void UnRegisterNotifyCallback(InterfaceNotifyCallback* callback) override {
        for (int index = callbacks == nullptr ? 0 : callbacks->Count(); index-- > 0;) {
            if ((*callbacks)[index] == callback) {
                callbacks->Delete(index, 1);
            }
        }
    }
    virtual FPInterfaceDesc* GetDescByID(Interface_ID) { return nullptr; }

protected:
    // Owned by the host alone; it makes the table when the first callback comes.
    void* hostData = nullptr;
    Tab<InterfaceNotifyCallback*>* callbacks = nullptr;
};

// Function publishing of an object that exists once. The data of the real class is not declared:
// these objects belong to the host and are only called.
class FPInterfaceDesc : public FPInterface {
public:
    SDK_SLOTS_3(FPInterfaceDesc, 25, 26, 27)
};

class FPStaticInterface : public FPInterfaceDesc {};
