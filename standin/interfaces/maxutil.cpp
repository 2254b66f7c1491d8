// maxutil.dll: the host's heap, texts and tables, and the interface servers' shared members.

#include "standin/interfaces/text_class.h"

#include <maxheapdirect.h>

#include <baseinterface.h>
#include <tab.h>
#if SDK_GENERATION >= 2026
#include <MaxGuid.h>
#endif

#include <cstring>

// The host's own objects are made all the same: the fault is the plug-in's.
void* MaxHeapOperators::operator new(std::size_t size) {
    const bool of_plugin = eng_is_of_plugin(__builtin_return_address(0)) != 0;
    return of_plugin && eng_fails("MAX_new") != 0 ? nullptr : eng_alloc(size);
}
void MaxHeapOperators::operator delete(void* memory) {
    eng_free(memory);
}

#if SDK_GENERATION < 2016
void* MAX_new(std::size_t size) {
    return eng_fails("MAX_new") != 0 ? nullptr : eng_alloc(size);
}
void MAX_delete(void* memory) {
    eng_free(memory);
}
using Inserted = void*;
#else
using Inserted = const void*;
#endif

// The elements follow the head.
static char* ElementAt(TabHdr* head, int index, int elementSize) {
    return reinterpret_cast<char*>(head + 1) + static_cast<std::size_t>(index) * elementSize;
}

int TBInsertAt(TabHdr** table, int at, int num, Inserted elements, int elementSize,
               int allocExtra) {
    TabHdr* head = *table;
    const int count = head == nullptr ? 0 : head->n;
    if (num <= 0) return count;
    if (at < 0 || at > count) at = count;
    if (head == nullptr || head->nalloc < count + num) {
        // What a host without memory answers is not documented; nothing can have been added.
        if (eng_fails("MAX_new") != 0) return count;
        const int allocated = count + num + (allocExtra > 0 ? allocExtra : 0);
        const std::size_t bytes =
            sizeof(TabHdr) + static_cast<std::size_t>(allocated) * elementSize;
        TabHdr* grown = static_cast<TabHdr*>(eng_alloc(bytes));
        grown->n = count;
        grown->nalloc = allocated;
        if (head != nullptr) {
            std::memcpy(ElementAt(grown, 0, elementSize), ElementAt(head, 0, elementSize),
                        static_cast<std::size_t>(count) * elementSize);
            eng_free(head);
        }
        *table = head = grown;
    }
    std::memmove(ElementAt(head, at + num, elementSize), ElementAt(head, at, elementSize),
                 static_cast<std::size_t>(count - at) * elementSize);
    std::memcpy(ElementAt(head, at, elementSize), elements,
                static_cast<std::size_t>(num) * elementSize);
    head->n = count + num;
    return at;
}

int TBDelete(TabHdr** table, int start, int num, int elementSize) {
    TabHdr* head = *table;
    const int count = head == nullptr ? 0 : head->n;
    if (start < 0 || num <= 0 || start >= count) return count;
    if (num > count - start) num = count - start;
    std::memmove(ElementAt(head, start, elementSize), ElementAt(head, start + num, elementSize),
                 static_cast<std::size_t>(count - start - num) * elementSize);
    head->n = count - num;
    return head->n;
}

void zfree(void** memory) {
    eng_free(*memory);
    *memory = nullptr;
}

#if SDK_GENERATION >= 2026
// "{8 digits-4-4-4-12}", each part the number that it reads.
MaxSDK::MaxGuid::MaxGuid(const char* text) : data1(0), data2(0), data3(0), data4{} {
    int digit = 0;
    for (; *text != '\0' && digit < 32; ++text) {
        const char c = *text;
        const bool decimal = c >= '0' && c <= '9';
        if (!decimal && (c < 'a' || c > 'f')) continue;
        const int value = decimal ? c - '0' : c - 'a' + 10;
        if (digit < 8) {
            data1 = data1 * 16 + static_cast<unsigned long>(value);
        } else if (digit < 12) {
            data2 = static_cast<unsigned short>(data2 * 16 + value);
        } else if (digit < 16) {
            data3 = static_cast<unsigned short>(data3 * 16 + value);
        } else {
            unsigned char& byte = data4[(digit - 16) / 2];
            byte = static_cast<unsigned char>(byte * 16 + value);
        }
        ++digit;
    }
}
#endif

BaseInterface* InterfaceServer::GetInterface(Interface_ID) {
    return nullptr;
}

BaseInterface* BaseInterfaceServer::GetInterface(Interface_ID id) {
    return EntryWithId(interfaces, id);
}
int BaseInterfaceServer::NumInterfaces() const {
    return interfaces.Count();
}
BaseInterface* BaseInterfaceServer::GetInterfaceAt(int index) const {
    return EntryAt(interfaces, index);
}

EXPORT_TABLE_OF("19BaseInterfaceServer")
