// SPDX-License-Identifier: MIT
#include "allocations.h"

#include <atomic>

#include <malloc.h>

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
void __libc_free(void *memory);
}

namespace {

std::atomic<std::size_t> currentBytes{0};
std::atomic<std::size_t> peakBytes{0};

void *added(void *memory)
{
    if (memory != nullptr) {
        const std::size_t now = currentBytes += malloc_usable_size(memory);
        if (now > peakBytes)
            peakBytes = now;
    }
    return memory;
}

void removed(void *memory)
{
    if (memory != nullptr)
        currentBytes -= malloc_usable_size(memory);
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) void *malloc(std::size_t size)
{
    return added(__libc_malloc(size));
}

__attribute__((visibility("default"))) void *calloc(std::size_t count, std::size_t size)
{
    return added(__libc_calloc(count, size));
}

__attribute__((visibility("default"))) void *realloc(void *memory, std::size_t size)
{
    removed(memory);
    return added(__libc_realloc(memory, size));
}

__attribute__((visibility("default"))) void free(void *memory)
{
    removed(memory);
    __libc_free(memory);
}
}

namespace Allocations {

std::size_t current()
{
    return currentBytes;
}

void resetPeak()
{
    peakBytes = currentBytes.load();
}

std::size_t peak()
{
    return peakBytes;
}

} // namespace Allocations
