#pragma once

/// How the C library keeps memory that has been freed.
namespace HeapPolicy {

/// Pictures come and go by the megabyte, in many threads. By default the library would soon keep such blocks
/// for later, in a heap for each thread, until a session of photos holds twice of what it shows. First thing
/// in main(), before other threads.
void returnLargeBlocks();

} // namespace HeapPolicy
