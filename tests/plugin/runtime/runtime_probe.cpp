// Uses everything that the start code of the msvc build has to supply, and reports what it saw to
// the test that loads it.

#include <windows.h>

#include <string>
#include <vector>

namespace {

using Reporter = void (*)(const char* what);
Reporter g_reporter;
int g_constructed;

class Watched {
public:
    explicit Watched(const char* name) : name_(name) { order_ = ++g_constructed; }
    ~Watched() {
        if (g_reporter != nullptr) g_reporter(name_);
    }
    int Order() const { return order_; }

private:
    const char* name_;
    int order_;
};

Watched g_first("first");
Watched g_second("second");

class Base {
public:
    virtual ~Base() = default;
    virtual int Answer() { return 1; }
};

class Derived : public Base {
public:
    int Answer() override { return 2; }
};

}  // namespace

extern "C" {

__declspec(dllexport) void SetReporter(Reporter reporter) {
    g_reporter = reporter;
}

__declspec(dllexport) int ConstructionOrder() {
    return g_first.Order() * 10 + g_second.Order();
}

// More than a page of stack: the compiler calls the probe first.
__declspec(dllexport) int UseLargeFrame(int step) {
    volatile char frame[300000];
    int sum = 0;
    for (int at = 0; at < static_cast<int>(sizeof(frame)); at += step) {
        frame[at] = 1;
        sum += frame[at];
    }
    return sum;
}

__declspec(dllexport) int UseHeap(int count) {
    std::vector<std::string> texts;
    for (int index = 0; index < count; ++index)
        texts.push_back(std::string(100, 'x'));
    size_t length = 0;
    for (const std::string& text : texts)
        length += text.size();
    return static_cast<int>(length);
}

__declspec(dllexport) double UseFloatingPoint(double value) {
    return value * 1.5;
}

__declspec(dllexport) Base* MakeObject(int derived) {
    return derived != 0 ? new Derived : new Base;
}

__declspec(dllexport) void DestroyObject(Base* object) {
    delete object;
}

}  // extern "C"
