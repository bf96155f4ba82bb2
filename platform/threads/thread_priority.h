// yieldToOthers: the priority of background threads.
#pragma once

namespace zephyra {

/// The calling thread's work waits for whoever else wants the processor, from now on: hours of
/// sound that are read and scaled must not delay the thread that moves controls. No effect where
/// the system does not allow it. WORKER.
void yieldToOthers() noexcept;

} // namespace zephyra
