// Operators new and delete on the C heap of msvcrt.dll. Memory of the host never comes here: it
// crosses the border only through the host's own operators.

#include <cstdlib>
#include <new>

void* operator new(size_t size) {
    // There are no exceptions to report a failure with.
    void* block = malloc(size == 0 ? 1 : size);
    if (block == nullptr) abort();
    return block;
}

void* operator new[](size_t size) {
    return operator new(size);
}

void operator delete(void* block) noexcept {
    free(block);
}

void operator delete[](void* block) noexcept {
    free(block);
}

void operator delete(void* block, size_t) noexcept {
    free(block);
}

void operator delete[](void* block, size_t) noexcept {
    free(block);
}

// What the C++ headers call where they would throw; the names and forms are theirs.
// NOLINTBEGIN(cert-dcl58-cpp, cert-dcl50-cpp)
namespace std {

[[noreturn]] void __throw_bad_alloc() {
    abort();
}
[[noreturn]] void __throw_bad_array_new_length() {
    abort();
}
[[noreturn]] void __throw_bad_function_call() {
    abort();
}
[[noreturn]] void __throw_length_error(const char*) {
    abort();
}
[[noreturn]] void __throw_logic_error(const char*) {
    abort();
}
[[noreturn]] void __throw_out_of_range(const char*) {
    abort();
}
[[noreturn]] void __throw_out_of_range_fmt(const char*, ...) {
    abort();
}
[[noreturn]] void __throw_invalid_argument(const char*) {
    abort();
}

}  // namespace std
// NOLINTEND(cert-dcl58-cpp, cert-dcl50-cpp)
