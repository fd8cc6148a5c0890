#ifndef ZEL_TESTS_ENGINE_KM_HEAP_H_
#define ZEL_TESTS_ENGINE_KM_HEAP_H_

#include <cstddef>
#include <functional>

/**
 * @file
 * The C++ heap of a test program, which can be made to fail and tells how much of it is in use. The
 * library's allocations come here too, whether it is linked as objects or shared. Each thread has
 * its own account.
 */

namespace zel::km::heap {

/**
 * Runs the body with one allocation more that succeeds each time, until none fails, and answers how
 * many there are.
 */
int failEachAllocationOf(const std::function<void()>& body);

/** Whether the next allocation fails, and no other. */
void failNext(bool fails);

/** The most bytes that the body had allocated at a time, beyond what there were before. */
std::size_t peakOf(const std::function<void()>& body);

}  // namespace zel::km::heap

#endif  // ZEL_TESTS_ENGINE_KM_HEAP_H_
