#pragma once

#include <maxheap.h>

#include <windows.h>

// The head of a table's storage; the elements follow it.
struct TabHdr {
    int n;
    int nalloc;
};

SDK_MAXUTIL_API int TBInsertAt(TabHdr** table, int at, int num, void* elements, int elementSize,
                               int allocExtra);
SDK_MAXUTIL_API int TBDelete(TabHdr** table, int start, int num, int elementSize);
SDK_MAXUTIL_API void zfree(void** memory);

// A table of plain memory: elements are copied as bytes, no constructor or destructor runs. The
// storage belongs to the host's heap, so everything that changes its size happens in the host.
template <class T>
class Tab : public MaxHeapOperators {
public:
    Tab() : head(nullptr) {}
    Tab(const Tab&) = delete;
    Tab& operator=(const Tab&) = delete;
    ~Tab() { zfree(reinterpret_cast<void**>(&head)); }

    int Count() const { return head == nullptr ? 0 : head->n; }
    int Append(int num, T* elements, int allocExtra = 0) {
        return TBInsertAt(&head, Count(), num, elements, static_cast<int>(sizeof(T)), allocExtra);
    }
    int Insert(int at, int num, T* elements) {
        return TBInsertAt(&head, at, num, elements, static_cast<int>(sizeof(T)), 0);
    }
    int Delete(int start, int num) {
        return TBDelete(&head, start, num, static_cast<int>(sizeof(T)));
    }
    // Empties the table and keeps its storage.
    void ZeroCount() {
        if (head != nullptr) head->n = 0;
    }
    T* Addr(INT_PTR index) const { return reinterpret_cast<T*>(head + 1) + index; }
    T& operator[](INT_PTR index) const { return *Addr(index); }

private:
    TabHdr* head;
};
