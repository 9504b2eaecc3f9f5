// The drawing half of Render: from a checked outline block to the finished buffer, Shadow first, then
// the Outline with the Face laid over it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lx {

class RenderProcess;

// Decodes `block` (size bytes, already checked readable) into the process's path and draws its Shadow,
// Outline and Face onto `buffer` (width x height pixels, already checked readable and writable).
// Returns false, leaving the buffer untouched, when the outline has no area or no vertex. A pass whose
// work image cannot be had (too large, or out of memory) draws nothing and the call goes on.
bool RenderOutlineBlock(RenderProcess& process, const void* block, size_t size, void* buffer, int32_t width,
                        int32_t height);

}  // namespace lx
