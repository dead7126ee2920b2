#pragma once
// A replaceable pair of memory functions (allocate, release) and a standard-library allocator
// that goes through them. Each allocator remembers the pair it was made with, so memory is
// always handed back to the function that gave it out, even after the pair is replaced.

#include <cstddef>
#include <cstdlib>
#include <new>
#include <type_traits>

using GLMallocateFunc = void* (*)(std::size_t bytes);
using GLMreleaseFunc = void (*)(void* memory);

namespace glmdetail {

inline void* standardAllocate(std::size_t bytes) {
    return std::malloc(bytes == 0 ? 1 : bytes);
}
inline void standardRelease(void* memory) {
    std::free(memory);
}

// The pair new allocators start with.
struct AllocatorPair {
    GLMallocateFunc allocate = standardAllocate;
    GLMreleaseFunc release = standardRelease;
};
AllocatorPair& currentModelAllocator();

}  // namespace glmdetail

// A stateful allocator holding one (allocate, release) pair. A null return from the allocate
// function is reported as std::bad_alloc, which the owners turn into their own messages.
template <class T>
struct FnAllocator {
    using value_type = T;
    using propagate_on_container_copy_assignment = std::true_type;
    using propagate_on_container_move_assignment = std::true_type;
    using propagate_on_container_swap = std::true_type;

    GLMallocateFunc allocateFn;
    GLMreleaseFunc releaseFn;

    FnAllocator(GLMallocateFunc a, GLMreleaseFunc r) : allocateFn(a), releaseFn(r) {}
    template <class U>
    FnAllocator(const FnAllocator<U>& other)
        : allocateFn(other.allocateFn), releaseFn(other.releaseFn) {}

    T* allocate(std::size_t n) {
        if (n > static_cast<std::size_t>(-1) / sizeof(T)) throw std::bad_alloc();
        void* p = allocateFn(n * sizeof(T));
        if (p == nullptr) throw std::bad_alloc();
        return static_cast<T*>(p);
    }
    void deallocate(T* p, std::size_t) noexcept { releaseFn(p); }

    template <class U>
    bool operator==(const FnAllocator<U>& o) const {
        return allocateFn == o.allocateFn && releaseFn == o.releaseFn;
    }
    template <class U>
    bool operator!=(const FnAllocator<U>& o) const {
        return !(*this == o);
    }
};

// The model library's allocator: default-constructed ones take the pair in force at the time.
template <class T>
struct GlmAllocator : FnAllocator<T> {
    GlmAllocator()
        : FnAllocator<T>(glmdetail::currentModelAllocator().allocate,
                         glmdetail::currentModelAllocator().release) {}
    GlmAllocator(GLMallocateFunc a, GLMreleaseFunc r) : FnAllocator<T>(a, r) {}
    template <class U>
    GlmAllocator(const FnAllocator<U>& other) : FnAllocator<T>(other) {}
    template <class U>
    struct rebind {
        using other = GlmAllocator<U>;
    };
};
